#include "catalogue/modCarInfo.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "app/Attempt.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/PublicationNumber.h"
#include "app/modFile.h"
#include "app/modFolderCopy.h"
#include "app/modPdf.h"
#include "app/modSysParameter.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/Transaction.h"
#include "catalogue/modMDB.h"
#include "catalogue/modModelOrder.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr wchar_t CatalogueFile[] = L"car_info.ci";
constexpr wchar_t CatalogueSection[] = L"CAR_INFO";

constexpr wchar_t DataErrorCaption[] = L"car_info.ci data Error program abort";
constexpr wchar_t LengthErrorCaption[] = L"car_info.ci data length Error program abort";

/// Why a record stops the scan: what the user gets to read.
struct RecordError : std::runtime_error {
    RecordError(const std::wstring& caption, const std::wstring& text)
        : std::runtime_error(ToUtf8(text)), Caption(caption), Text(text) {}

    std::wstring Caption;
    std::wstring Text;
};

/// What is wrong with a record's data: the field and its value.
struct DataError : std::runtime_error {
    explicit DataError(const std::wstring& field) : std::runtime_error(ToUtf8(field)), Field(field) {}

    std::wstring Field;
};

/// Whether and how a manual is installed.
struct Decision {
    Selection InstallFlag;
    mip::InstallKind InstallKind;
    mip::InstallState InstallState;
};

constexpr Decision NewManual{Selection::Candidate, InstallKind::Full, InstallState::New};
constexpr Decision FullUpdate{Selection::Candidate, InstallKind::Full, InstallState::Update};
constexpr Decision DifferentialUpdate{Selection::Candidate, InstallKind::Differential, InstallState::Update};
constexpr Decision UpToDate{Selection::UpToDate, InstallKind::Undecided, InstallState::Nothing};

std::wstring RecordFolder(const Paths& paths, const std::wstring& folderName) {
    return JoinPath(paths.DiscRootPath, folderName);
}

std::wstring CatalogueFilePath(const Paths& paths, const std::wstring& folderName) {
    return JoinPath(RecordFolder(paths, folderName), CatalogueFile);
}

std::wstring ErrorText(const std::wstring& pubNo, const std::wstring& detail) {
    return L"PubNo = " + pubNo + L" [ " + detail + L" ]";
}

/// The profile services take a file that cannot be read for an empty one. Throws DataError for it.
void CheckReadable(Platform& platform, const std::wstring& file) {
    try {
        (void)platform.Files.Read(file);
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("reading car_info.ci", error);
        throw DataError(L"car_info.ci cannot be read");
    }
}

/// Fills the file's nine values in; what the file lacks is empty. Throws DataError when it cannot be read.
void ReadCatalogueFile(Platform& platform, const std::wstring& file, DiscCatalogueRecord& record) {
    const std::pair<const wchar_t*, std::wstring&> fields[] = {
        {L"Pub_No", record.Pub_No},     {L"Version", record.Version}, {L"Model_desc", record.Model_desc},
        {L"Model_ID", record.Model_ID}, {L"Lang", record.Lang},       {L"Ldup", record.Ldup},
        {L"Year", record.Year},         {L"Kubun", record.Kubun},     {L"Country", record.Country}};
    std::vector<std::wstring> keys;
    for (const auto& [key, value] : fields) {
        keys.emplace_back(key);
    }
    std::vector<std::wstring> values = GetProfileValues(platform, file, CatalogueSection, keys);
    bool isEmpty = true;
    for (std::size_t index = 0; index < values.size(); ++index) {
        isEmpty = isEmpty && values[index].empty();
        fields[index].second = std::move(values[index]);
    }
    if (isEmpty) {
        CheckReadable(platform, file);
    }
}

/// Throws RecordError when the catalogue has not answered a look-up.
Lookup Answered(const Program& program, Lookup edition) {
    if (edition.Failed()) {
        throw RecordError(GetMessageText(program, messages::DatabaseNotOpened),
                          GetMessageText(program, messages::WhatNow));
    }
    return edition;
}

/// Whether the folder holds a PDF or an archive, and where its content lies.
void LocateContent(Platform& platform, const Paths& paths, const std::wstring& folderName,
                   DiscCatalogueRecord& record) {
    const std::wstring folder = RecordFolder(paths, folderName);
    if (RootedManualPdfExists(platform, paths, folderName, record.Pub_No)) {
        record.SourcePath = folder;
        record.PdfForm = ManualForm::Pdf;
    } else {
        record.SourcePath = JoinPath(folder, L"install\\condense\\manual.zip");
        record.ComparePath = JoinPath(folder, L"install\\compare");
        record.PdfForm = ManualForm::Archive;
    }
}

/// True when the installed copy is there and in order, so that its version says something.
bool IsUsable(Platform& platform, const InstalledRecord& installed) {
    const std::wstring contents = JoinPath(installed.INSPath, L"contents");
    return platform.Folders.Exists(installed.INSPath) && platform.Folders.Exists(contents) &&
           platform.Files.Exists(JoinPath(contents, L"index.html")) &&
           !IsMarkedForAdjustment(platform.FaultLog, installed);
}

/// A disc may bring, for the next version only, the files that differ. They fit when the manual kept its form.
bool HasDifferences(Platform& platform, const DiscCatalogueRecord& record, const InstalledRecord& installed) {
    return record.PdfForm == ManualForm::Archive && installed.InstalledPdfForm == ManualForm::Archive &&
           CountFiles(platform, record.ComparePath) > 0;
}

std::int16_t VersionNumber(const wchar_t* field, const std::wstring& version) {
    try {
        return TextToInt16(version);
    } catch (const std::exception&) {
        throw DataError(field + (L" = " + version));
    }
}

/// How many versions the disc is ahead. Throws DataError when a version, or the difference, is no 16-bit number.
std::int16_t VersionsAhead(const std::wstring& onDisc, const std::wstring& installed) {
    const std::int16_t discVersion = VersionNumber(L"Version", onDisc);
    const std::int16_t installedVersion = VersionNumber(L"installed Version", installed);
    try {
        return Subtract16(discVersion, installedVersion);
    } catch (const OverflowError&) {
        throw DataError(L"Version = " + onDisc + L", installed Version = " + installed);
    }
}

/// Decides by what is installed of a valid record's publication. Throws DataError.
Decision Classify(Platform& platform, const DiscCatalogueRecord& record, const Lookup& edition) {
    if (!edition.Found()) {
        return NewManual;
    }
    if (!IsUsable(platform, edition.Record)) {
        return FullUpdate;
    }
    const std::int16_t ahead = VersionsAhead(record.Version, edition.Record.Version);
    if (ahead <= 0) {
        return UpToDate;
    }
    return ahead == 1 && HasDifferences(platform, record, edition.Record) ? DifferentialUpdate : FullUpdate;
}

/// Fills a record of the catalogue; as far as it has come it stays there. Throws RecordError, DataError and others.
void FillRecord(Program& program, const std::wstring& folderName, DiscCatalogueRecord& record) {
    record.InstallFlag = Selection::Candidate;
    ReadCatalogueFile(program.Platform, CatalogueFilePath(program.Paths, folderName), record);
    record.OrderNo = FindOrderNo(program.ModelOrder, record.Model_ID);
    const std::wstring lengthError = ValidateCatalogueRecord(program.Settings.Columns, record);
    if (!lengthError.empty()) {
        throw RecordError(LengthErrorCaption, lengthError);
    }
    const Lookup edition = Answered(program, FindInstalledRecord(program, record.Pub_No));
    LocateContent(program.Platform, program.Paths, folderName, record);
    record.InstallState = InstallState::Nothing;
    const Decision decision = Classify(program.Platform, record, edition);
    record.InstallFlag = decision.InstallFlag;
    record.InstallKind = decision.InstallKind;
    record.InstallState = decision.InstallState;
    if (record.InstallFlag == Selection::Candidate) {
        record.InstalledPath = edition.Record.INSPath;
        record.FolderName = folderName;
    }
    if (IsSupersededPublication(program, record.Pub_No)) {
        record.InstallFlag = Selection::Superseded;
        record.InstallState = InstallState::Nothing;
    }
}

/// Names of the disc's folders that hold a catalogue file. Throws PlatformError.
std::vector<std::wstring> ListManualFolders(Platform& platform, const Paths& paths) {
    std::vector<std::wstring> folders;
    for (const std::wstring& name : platform.Folders.List(paths.DiscRootPath).Subfolders) {
        if (HasCatalogueFile(platform, paths, name)) {
            folders.push_back(name);
        }
    }
    return folders;
}

/// Stops the scan at the last record. The log names the folder, which not every text does.
void StopScan(Program& program, const std::wstring& folderName, const RecordError& error) {
    DiscCatalogue& catalogue = program.DiscCatalogue;
    catalogue.CatalogueErrorCaption = error.Caption;
    catalogue.CatalogueErrorText = error.Text;
    catalogue.CatalogueErrorFlag = true;
    program.Log.Write(L"disc", catalogue.Records.back().Pub_No, folderName + L": " + error.Text);
}

}  // namespace

bool ScanDiscCatalogue(Program& program) {
    program.DiscCatalogue.Clear();
    return Attempt(program.Log, "listing the disc's folders", [&] {
        // For each look-up of its own the engine would lock the file and read it anew.
        std::optional<Transaction> together;
        (void)Attempt(program.Log, "beginning the scan's look-ups", [&] { together.emplace(*program.CatalogDb); });
        return std::ranges::all_of(ListManualFolders(program.Platform, program.Paths),
                                   [&](const std::wstring& folder) { return ReadCatalogueRecord(program, folder); });
    });
}

bool ReadCatalogueRecord(Program& program, const std::wstring& folderName) {
    DiscCatalogueRecord& record = program.DiscCatalogue.Records.emplace_back();
    const auto dataError = [&](const std::wstring& detail) {
        return RecordError(DataErrorCaption, ErrorText(record.Pub_No, detail));
    };
    try {
        FillRecord(program, folderName, record);
        return true;
    } catch (const RecordError& error) {
        StopScan(program, folderName, error);
    } catch (const DataError& error) {
        StopScan(program, folderName, dataError(folderName + L": " + error.Field));
    } catch (const std::exception& error) {
        program.Log.Trapped("classifying a manual of the disc", error);
        StopScan(program, folderName, dataError(folderName));
    }
    return false;
}

bool HasCatalogueFile(Platform& platform, const Paths& paths, const std::wstring& folderName) {
    return platform.Files.Exists(CatalogueFilePath(paths, folderName));
}

std::wstring ValidateCatalogueRecord(const ColumnLengths& lengths, const DiscCatalogueRecord& record) {
    struct Field {
        const wchar_t* Name;
        const std::wstring& Value;
        std::int16_t Maximum;
        bool EmptyAllowed = false;
    };
    const Field fields[] = {{L"Pub_No", record.Pub_No, lengths.Pub_No},
                            {L"Model_desc", record.Model_desc, lengths.Model_desc},
                            {L"Model_ID", record.Model_ID, lengths.Model_ID},
                            {L"Version", record.Version, lengths.Version},
                            {L"Year", record.Year, lengths.Year},
                            {L"Kubun", record.Kubun, lengths.Kubun, true},
                            {L"Country", record.Country, lengths.Country},
                            {L"Lang", record.Lang, lengths.Lang},
                            {L"Ldup", record.Ldup, lengths.Ldup}};
    for (const Field& field : fields) {
        if (!CheckFieldLength(field.Value, field.Maximum, field.EmptyAllowed)) {
            // The length is that of the value as it stands in the file, blanks included.
            return ErrorText(record.Pub_No, field.Name + (L" length = " + std::to_wstring(field.Value.size())));
        }
    }
    return {};
}

bool CheckFieldLength(const std::wstring& value, std::int16_t maximum, bool emptyAllowed) {
    const auto length = static_cast<std::ptrdiff_t>(TrimBlanks(value).size());
    return length <= maximum && (length > 0 || emptyAllowed);
}

bool IsSupersededPublication(Program& program, const std::wstring& pubNo) {
    return Answered(program, FindFirstInstalled(program, LaterRevisionsOf(pubNo))).Found();
}

}  // namespace mip
