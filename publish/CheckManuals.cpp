#include <algorithm>
#include <exception>
#include <map>
#include <set>

#include "app/PublicationNumber.h"
#include "app/TextFile.h"
#include "app/modFile.h"
#include "app/modPdf.h"
#include "catalogue/modCarInfo.h"
#include "manualinfo/ManualInfoFile.h"
#include "platform/Files.h"
#include "publish/CheckDisc.h"
#include "publish/DiscDescription.h"
#include "publish/Progress.h"
#include "text/Checked.h"

namespace mip {
namespace {

/// Checks one manual folder after another.
class ManualChecker {
  public:
    ManualChecker(DiscProgram& disc, Findings& findings) : disc_(disc), program_(disc.Program), findings_(findings) {}

    /// Reads the folder as the program's scan does, and goes on where that would stop.
    void Check(const std::wstring& folder) {
        file_ = JoinPath(L"D:\\" + folder, L"car_info.ci");
        const std::size_t before = findings_.size();
        CheckEncoding(disc_, file_, false, findings_);
        const bool isRead = ReadCatalogueRecord(program_, folder);
        DiscCatalogueRecord& record = program_.DiscCatalogue.Records.back();
        record.FolderName = folder;
        CheckValues(record);
        if (!isRead && findings_.size() == before) {
            Add("data", ToUtf8(program_.DiscCatalogue.CatalogueErrorText), "correct the file");
        }
        CheckFolderName(folder);
        if (!isRead) {
            LocateForm(record);
        }
        record.PdfForm == ManualForm::Pdf ? CheckPdf(record) : CheckForm(record);
    }

    /// A folder that the program ignores.
    void CheckOther(const std::wstring& folder) {
        file_ = L"D:\\" + folder;
        for (const wchar_t* part : {L"contents", L"install"}) {
            if (program_.Platform.Folders.Exists(JoinPath(file_, part))) {
                return Add("ignored", "looks like a manual and has no car_info.ci",
                           "add that file, or remove the folder");
            }
        }
    }

    /// What only shows when all manuals are known.
    void CheckTogether() {
        std::map<std::wstring, std::wstring> folders;
        const auto& records = program_.DiscCatalogue.Records;
        for (auto record = records.begin() + 1; record != records.end(); ++record) {
            const auto [known, isNew] = folders.emplace(ToUpper(record->Pub_No), record->FolderName);
            file_ = JoinPath(L"D:\\" + record->FolderName, L"car_info.ci");
            if (!isNew) {
                Add("double", "Pub_No: " + ToUtf8(record->Pub_No) + " is also in " + ToUtf8(known->second),
                    "leave one edition on the disc");
            }
        }
        for (auto record = records.begin() + 1; record != records.end(); ++record) {
            for (const std::wstring& later : LaterRevisionsOf(record->Pub_No)) {
                if (folders.contains(ToUpper(later))) {
                    file_ = JoinPath(L"D:\\" + record->FolderName, L"car_info.ci");
                    Add("superseded", "Pub_No: the disc also has the later edition " + ToUtf8(later),
                        "leave the earlier edition out");
                }
            }
        }
    }

  private:
    void Add(const char* code, const std::string& text, const char* fix) {
        findings_.push_back({OnDisc(file_), code, text, fix});
    }

    void CheckValues(const DiscCatalogueRecord& record) {
        for (const CarInfoField& field : CarInfoFields) {
            const std::wstring& value = record.*field.Value;
            const std::int16_t longest = program_.Settings.Columns.*field.Length;
            if (!CheckFieldLength(value, longest, field.MayBeEmpty)) {
                Add("length",
                    ToUtf8(field.Key) +
                        (value.empty() ? ": is missing or empty"
                                       : ": has " + std::to_string(value.size()) +
                                             " characters where SysParameter.ini allows " + std::to_string(longest)),
                    "the program stops at it; give a value that fits");
            }
        }
        CheckNumbers(record);
    }

    void CheckNumbers(const DiscCatalogueRecord& record) {
        try {
            (void)TextToInt16(record.Version);
        } catch (const std::exception&) {
            AddUnlessEmpty("number", L"Version", record.Version, "is not a whole number up to 32767", "give a number");
        }
        try {
            (void)BaseEditionOf(record.Pub_No);
        } catch (const ConversionError&) {
            AddUnlessEmpty("publication", L"Pub_No", record.Pub_No, "does not have the edition's digit as its fifth",
                           "such a number cannot be installed; give another");
        }
        const ModelOrderList& order = program_.ModelOrder;
        const bool isKnown =
            std::ranges::find(order.Entries, record.Model_ID, &ModelOrderEntry::Model_ID) != order.Entries.end();
        if (order.ModelOrderCount > 0 && !isKnown) {
            AddUnlessEmpty("model", L"Model_ID", record.Model_ID, "is not in the model order of the new catalogue",
                           "add the model there, or the manual comes before all others");
        }
    }

    void AddUnlessEmpty(const char* code, const wchar_t* key, const std::wstring& value, const char* text,
                        const char* fix) {
        if (!value.empty()) {
            Add(code, ToUtf8(key) + ": '" + ToUtf8(value) + "' " + text, fix);
        }
    }

    void CheckFolderName(const std::wstring& folder) {
        if (folder.find(L' ') != std::wstring::npos) {
            file_ = L"D:\\" + folder;
            Add("blank", "the folder's name has a blank, which the archive library splits its command line at",
                "rename the folder, also in the archive and in the manual information");
        }
    }

    /// The form that the program would have gone on to ask for.
    void LocateForm(DiscCatalogueRecord& record) const {
        const bool isPdf = RootedManualPdfExists(program_.Platform, program_.Paths, record.FolderName, record.Pub_No);
        record.PdfForm = isPdf ? ManualForm::Pdf : ManualForm::Archive;
        record.SourcePath = JoinPath(L"D:\\" + record.FolderName, L"install\\condense\\manual.zip");
        record.ComparePath = JoinPath(L"D:\\" + record.FolderName, L"install\\compare");
    }

    void CheckPdf(const DiscCatalogueRecord& record) {
        const std::wstring folder = L"D:\\" + record.FolderName;
        file_ = GetManualPdfPath(folder, record.Pub_No);
        if (!program_.Platform.Files.Read(file_, 5).starts_with("%PDF-")) {
            Add("pdf", "is no PDF", "put the PDF manual there");
        }
        RequireFile(disc_, JoinPath(folder, L"contents\\index.html"),
                    "without this page the installed PDF counts as damaged; add one that opens it", findings_);
        if (program_.Platform.Folders.Exists(JoinPath(folder, L"install"))) {
            file_ = JoinPath(folder, L"install");
            Add("form", "is never used, as the folder also has the PDF of this publication",
                "leave the archive or the PDF out");
        }
    }

    void CheckForm(const DiscCatalogueRecord& record) {
        if (program_.Platform.Files.Exists(record.SourcePath)) {
            return CheckArchive(disc_, record, findings_);
        }
        file_ = record.SourcePath;
        const std::wstring contents = JoinPath(L"D:\\" + record.FolderName, L"contents");
        const auto files = program_.Platform.Folders.Exists(contents) ? program_.Platform.Folders.List(contents).Files
                                                                      : std::vector<std::wstring>();
        const auto isPdf = [](const std::wstring& name) { return ToUpper(name).ends_with(L".PDF"); };
        const auto pdf = std::ranges::find_if(files, isPdf);
        if (pdf == files.end()) {
            Add("missing", "is not there, and no PDF either", "pack the manual");
        } else {
            file_ = JoinPath(contents, *pdf);
            Add("pdf", "does not have the publication's name, so that the manual counts as an archive that is missing",
                "name it like the publication");
        }
    }

    DiscProgram& disc_;
    Program& program_;
    Findings& findings_;
    std::wstring file_;
};

/// Checks one manual information file.
class InfoChecker {
  public:
    InfoChecker(DiscProgram& disc, const wchar_t* name, Findings& findings)
        : disc_(disc), file_(JoinPath(disc.Program.Paths.ProgramFolder, name)), findings_(findings) {}

    /// Returns the folders that the file names.
    std::set<std::wstring> Check() {
        if (!RequireFile(disc_, file_, "it tells which edition of each manual the disc has", findings_)) {
            return {};
        }
        CheckEncoding(disc_, file_, true, findings_);
        std::size_t number = 0;
        for (const std::wstring& line : ReadTextLines(disc_.Program.Platform, file_)) {
            ++number;
            CheckLine(line, "line " + std::to_string(number) + ": ");
        }
        return std::move(keys_);
    }

  private:
    void CheckLine(const std::wstring& line, const std::string& place) {
        try {
            const ManualInfoEntry entry = ReadManualInfoEntry(line);
            keys_.insert(entry.Key);
            if (!HasCatalogueFile(disc_.Program.Platform, disc_.Program.Paths, entry.Key)) {
                Add(place + "the disc has no manual in a folder '" + ToUtf8(entry.Key) + "'", "correct field 4");
            }
        } catch (const ConversionError&) {
            Add(place + "is not six fields with a month like 2023/10 as the last",
                "correct it; the program compares none of the file's lines");
        }
    }

    void Add(const std::string& text, const char* fix) {
        findings_.push_back({OnDisc(file_), "manual-info", text, fix});
    }

    DiscProgram& disc_;
    std::wstring file_;
    Findings& findings_;
    std::set<std::wstring> keys_;
};

}  // namespace

void CheckManuals(DiscProgram& disc, Findings& findings) {
    Program& program = disc.Program;
    const std::vector<std::wstring> folders = program.Platform.Folders.List(program.Paths.DiscRootPath).Subfolders;
    ManualChecker checker(disc, findings);
    Progress progress("Checking folders", folders.size());
    for (const std::wstring& folder : folders) {
        if (HasCatalogueFile(program.Platform, program.Paths, folder)) {
            checker.Check(folder);
        } else {
            checker.CheckOther(folder);
        }
        progress.Step();
    }
    checker.CheckTogether();
    if (program.DiscCatalogue.Records.size() == 1) {
        findings.push_back({"", "empty", "has no manual", "put one folder with a car_info.ci for each manual"});
    }
}

void CheckManualInfo(DiscProgram& disc, Findings& findings) {
    const std::set<std::wstring> keys = InfoChecker(disc, L"man_info_do.ci", findings).Check();
    for (const DiscCatalogueRecord& record : disc.Program.DiscCatalogue.Records) {
        if (!keys.empty() && !record.FolderName.empty() && !keys.contains(record.FolderName)) {
            findings.push_back({OnDisc(JoinPath(disc.Program.Paths.ProgramFolder, L"man_info_do.ci")), "manual-info",
                                "has no line for the folder " + ToUtf8(record.FolderName), "add the line"});
        }
    }
    InfoChecker(disc, L"man_info_us.ci", findings).Check();
}

}  // namespace mip
