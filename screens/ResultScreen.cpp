#include "screens/ResultScreen.h"

#include <algorithm>
#include <exception>

#include "app/Messages.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "catalogue/ManualFolderAccess.h"
#include "install/modShortcut.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "text/Checked.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr wchar_t ColourHighlighted[] = L"0";
constexpr wchar_t ColourPlain[] = L"1";

std::wstring FiveDigits(std::int32_t number) {
    return PadWithZeros(number, 5);
}

/// A year that is not a number is compared as the text that it is.
std::wstring YearKey(const std::wstring& year) {
    try {
        return FiveDigits(TextToInt32(year));
    } catch (const std::exception&) {
        return year;
    }
}

std::wstring ManagerProgram(const Program& program) {
    return JoinPath(program.Paths.InstallDir, program.Settings.McpExeName);
}

}  // namespace

OutcomeTexts GetOutcomeTexts(const Program& program) {
    const Outcome& outcome = program.Outcome;
    if (!outcome.ResultMessage.empty() || !outcome.ResultSubMessage.empty()) {
        return {false, outcome.ResultMessage, outcome.ResultSubMessage};
    }
    return {true, GetMessageText(program, messages::Succeeded1), GetMessageText(program, messages::Succeeded2)};
}

std::vector<std::int16_t> BuildSortOrder(const DiscCatalogue& catalogue) {
    struct Item {
        std::wstring Key;
        std::int16_t Index;
    };
    std::vector<Item> sortListBox;
    for (std::int16_t index = 1; index <= catalogue.LastIndex(); index = Add16(index, 1)) {
        const DiscCatalogueRecord& manual = catalogue.Records[static_cast<std::size_t>(index)];
        sortListBox.push_back(
            {FiveDigits(manual.OrderNo) + YearKey(manual.Year) + manual.Kubun + FiveDigits(index), index});
    }
    std::ranges::sort(sortListBox, {}, &Item::Key);

    std::vector<std::int16_t> order;
    for (const Item& item : sortListBox) {
        order.push_back(item.Index);
    }
    return order;
}

void SortDiscCatalogue(DiscCatalogue& catalogue, const std::vector<std::int16_t>& order) {
    std::vector<DiscCatalogueRecord> sorted{catalogue.Records.front()};
    for (const std::int16_t index : order) {
        sorted.push_back(catalogue.Records.at(static_cast<std::size_t>(index)));
    }
    catalogue.Records = std::move(sorted);
}

StatusTexts::StatusTexts(const Program& program)
    : new_(GetMessageText(program, messages::StatusNew)),
      updated_(GetMessageText(program, messages::StatusUpdated)),
      unchanged_(GetMessageText(program, messages::StatusUnchanged)),
      notImported_(L"取込対象外") {}

const std::wstring& StatusTexts::Of(InstallState state, const std::wstring& previous) const {
    switch (state) {
        case InstallState::New:
            return new_;
        case InstallState::Update:
            return updated_;
        case InstallState::Nothing:
            return unchanged_;
        case InstallState::NotImported:
            return notImported_;
        case InstallState::None:
            break;
    }
    return previous;
}

const std::wstring& StatusTexts::StatusTextForDate(const Installation& run, DateTime date) const {
    const std::wstring text = FormatDateTime(date);
    return text == FormatDateTime(run.InstallTime1)   ? new_
           : text == FormatDateTime(run.InstallTime2) ? updated_
                                                      : unchanged_;
}

ResultList::ResultList(Program& program, SpreadForm& form, SpreadGrid& grid)
    : program_(program), form_(form), spread_(program.Log), grid_(spread_.SpdIni(grid)) {}

bool ResultList::Load() {
    SetGridHeaders();
    SortDiscCatalogue(program_.DiscCatalogue, BuildSortOrder(program_.DiscCatalogue));
    return FillGrid();
}

void ResultList::SetGridHeaders() {
    std::int32_t col = 0;
    for (const std::int16_t message : {messages::ColumnModel, messages::ColumnYear, messages::ColumnLanguage,
                                       messages::ColumnPublication, messages::ColumnVersion, messages::ColumnStatus}) {
        spread_.SpdItemSet(grid_, 0, ++col, ColourPlain, GetMessageText(program_, message));
    }
}

bool ResultList::FillGrid() {
    try {
        const StatusTexts statusTexts(program_);
        spread_.SpdClear(grid_, 0);
        spread_.SplListingStart(form_);
        std::int32_t row = 0;
        std::wstring status;
        for (const DiscCatalogueRecord& manual : program_.DiscCatalogue.Records) {
            if (manual.InstallFlag == Selection::Candidate) {
                status = statusTexts.Of(manual.InstallState, status);
                AddRow(++row, manual, status);
            }
        }
        spread_.SplListingEnd(form_);
        return true;
    } catch (const std::exception& error) {
        program_.Log.Trapped("listing the manuals", error);
        return false;
    }
}

void ResultList::AddRow(std::int32_t row, const DiscCatalogueRecord& manual, const std::wstring& status) {
    spread_.SpdMaxRowsChg(grid_, row);
    const bool japanese = program_.Identity.LanguageCode == L"11";
    const bool marked = IsInstalledInFailedRun(program_.Outcome, manual);
    spread_.SpdItemRowSet(
        grid_, row, marked ? ColourHighlighted : ColourPlain,
        {manual.Model_desc, japanese ? manual.Kubun : manual.Year, manual.Lang, manual.Pub_No, manual.Version,
         marked ? ReplaceAll(GetMessageText(program_, messages::MarkedStatus), L"@", status) : status});
}

bool IsInstalledInFailedRun(const Outcome& outcome, const DiscCatalogueRecord& manual) {
    return !outcome.ResultKind && manual.InstallFlag == Selection::Candidate && manual.DoneFlag;
}

std::wstring TextToCopy(const Program& program, const GridModel& list) {
    const OutcomeTexts outcome = GetOutcomeTexts(program);
    std::wstring text = outcome.Message + L"\r\n" + outcome.SubMessage + L"\r\n\r\n";
    if (list.Rows() > 0) {
        text += list.AllText() + L"\r\n";
    }
    return text + program.Log.Text();
}

bool MayOfferDesktopShortcut(const Program& program) {
    Files& files = program.Platform.Files;
    return program.Settings.ShortcutIconFlag != 0 && files.Exists(ManagerProgram(program)) &&
           !files.Exists(GetShortcutPath(program.Platform, specialFolders::CommonDesktop,
                                         GetMessageText(program, messages::ShortcutName)));
}

void MakeDesktopShortcut(const Program& program) {
    CreateDesktopShortcut(program.Platform, GetMessageText(program, messages::ShortcutName), ManagerProgram(program));
}

bool NothingWasInstalled(const Outcome& outcome) {
    return !outcome.ManagerInstalled && outcome.ManualsRecorded == 0;
}

void FinishRun(Program& program) {
    (void)RemoveFolder(program.Platform, program.Paths, program.Paths.UnZipTempPath);
    (void)SecureInstalledManualFolders(program, [&program] { program.Platform.Clock.YieldToMessages(); });
}

}  // namespace mip
