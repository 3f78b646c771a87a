#include "catalogue/modCarInfo.h"

#include "app/Program.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <vector>

#include "app/Messages.h"
#include "app/PublicationNumber.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/modMDB.h"
#include "catalogue/modModelOrder.h"
#include "app/modFolderCopy.h"
#include "app/modPdf.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr wchar_t CatalogueFile[] = L"car_info.ci";
constexpr wchar_t CatalogueSection[] = L"CAR_INFO";

std::wstring RecordFolder(const Program& program, const std::wstring& folderName) {
    return JoinPath(program.Paths.DiscRootPath, folderName);
}

std::wstring CatalogueFilePath(const Program& program, const std::wstring& folderName) {
    return JoinPath(RecordFolder(program, folderName), CatalogueFile);
}

/// What is wrong with a record's data: the field and its value, as the user gets to read it.
class RecordError : public std::runtime_error {
  public:
    explicit RecordError(const std::wstring& field) : std::runtime_error(ToUtf8(field)), field_(field) {}

    const std::wstring& Field() const { return field_; }

  private:
    std::wstring field_;
};

void StopScan(DiscCatalogue& catalogue, const std::wstring& caption, const std::wstring& text) {
    catalogue.CatalogueErrorCaption = caption;
    catalogue.CatalogueErrorText = text;
    catalogue.CatalogueErrorFlag = true;
}

void StopForDatabase(Program& program) {
    StopScan(program.DiscCatalogue, GetMessageText(program, messages::DatabaseNotOpened),
             GetMessageText(program, messages::WhatNow));
}

/// The profile services take a file that cannot be read for an empty one. Throws RecordError for it.
void CheckReadable(Platform& platform, const std::wstring& file) {
    try {
        (void)platform.Files.Read(file);
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("reading car_info.ci", error);
        throw RecordError(L"car_info.ci cannot be read");
    }
}

/// Throws RecordError when the file cannot be read; what it lacks is empty.
void ReadCatalogueFile(const Program& program, const std::wstring& folderName, DiscCatalogueRecord& record) {
    const std::wstring file = CatalogueFilePath(program, folderName);
    CheckReadable(program.Platform, file);
    const auto value = [&](const wchar_t* key) {
        return GetProfileValue(program.Platform, file, CatalogueSection, key);
    };
    record.Pub_No = value(L"Pub_No");
    record.Version = value(L"Version");
    record.Model_desc = value(L"Model_desc");
    record.Model_ID = value(L"Model_ID");
    record.Lang = value(L"Lang");
    record.Ldup = value(L"Ldup");
    record.Year = value(L"Year");
    record.Kubun = value(L"Kubun");
    record.Country = value(L"Country");
}

/// Whether the folder holds a PDF or an archive, and where its content lies.
void LocateContent(const Program& program, const std::wstring& folderName, DiscCatalogueRecord& record) {
    const std::wstring folder = RecordFolder(program, folderName);
    if (RootedManualPdfExists(program, folderName, record.Pub_No)) {
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
           CopyFolderWithProgress(platform, CopyMode::CountOnly, 0, record.ComparePath, installed.INSPath) > 0;
}

std::int16_t VersionNumber(const wchar_t* field, const std::wstring& version) {
    try {
        return TextToInt16(version);
    } catch (const std::exception&) {
        throw RecordError(field + (L" = " + version));
    }
}

/// How many versions the disc is ahead. Throws RecordError when a version, or the difference, is no 16-bit number.
std::int16_t VersionsAhead(const std::wstring& onDisc, const std::wstring& installed) {
    const std::int16_t discVersion = VersionNumber(L"Version", onDisc);
    const std::int16_t installedVersion = VersionNumber(L"installed Version", installed);
    try {
        return Subtract16(discVersion, installedVersion);
    } catch (const OverflowError&) {
        throw RecordError(L"Version = " + onDisc + L", installed Version = " + installed);
    }
}

/// Compares with a usable installed copy. False when that is as new or newer. Throws RecordError.
bool ClassifyUpdate(Platform& platform, const InstalledRecord& installed, DiscCatalogueRecord& record) {
    const std::int16_t difference = VersionsAhead(record.Version, installed.Version);
    if (difference <= 0) {
        record.InstallFlag = Selection::UpToDate;
        return false;
    }
    const bool differential = difference == 1 && HasDifferences(platform, record, installed);
    record.InstallKind = differential ? InstallKind::Differential : InstallKind::Full;
    record.InstallState = InstallState::Update;
    return true;
}

/// Decides whether and how a valid record is installed, by what is installed of it.
void Classify(Program& program, const std::wstring& folderName, const Lookup& edition, DiscCatalogueRecord& record) {
    record.DoneFlag = false;
    record.InstallFlag = Selection::Candidate;
    record.InstallState = InstallState::Nothing;
    const InstalledRecord& installed = edition.Record;
    if (!edition.Found()) {
        record.InstallKind = InstallKind::Full;
        record.InstallState = InstallState::New;
    } else if (!IsUsable(program.Platform, installed)) {
        record.InstallKind = InstallKind::Full;
        record.InstallState = InstallState::Update;
    } else if (!ClassifyUpdate(program.Platform, installed, record)) {
        return;
    }
    record.InstalledPath = installed.INSPath;
    record.FolderName = folderName;
}

/// Names of the disc's folders that hold a catalogue file. Throws PlatformError.
std::vector<std::wstring> ListManualFolders(const Program& program) {
    std::vector<std::wstring> folders;
    for (const std::wstring& name : program.Platform.Folders.List(program.Paths.DiscRootPath).Subfolders) {
        if (HasCatalogueFile(program, name)) {
            folders.push_back(name);
        }
    }
    return folders;
}

void StopForData(DiscCatalogue& catalogue, const std::wstring& detail) {
    StopScan(catalogue, L"car_info.ci data Error program abort",
             L"PubNo = " + catalogue.Records.back().Pub_No + L" [ " + detail + L" ]");
}

/// Reads one folder. False when the scan must stop there; the log then names the folder, which not every text does.
bool ScanFolder(Program& program, const std::wstring& folder) {
    DiscCatalogue& catalogue = program.DiscCatalogue;
    try {
        ReadCatalogueRecord(program, folder);
    } catch (const RecordError& error) {
        StopForData(catalogue, folder + L": " + error.Field());
    } catch (const std::exception& error) {
        program.Platform.FaultLog.Trapped("classifying a manual of the disc", error);
        StopForData(catalogue, folder);
    }
    if (!catalogue.CatalogueErrorFlag) {
        return true;
    }
    program.Log.Write(L"disc", catalogue.Records.back().Pub_No, folder + L": " + catalogue.CatalogueErrorText);
    return false;
}

}  // namespace

bool ScanDiscCatalogue(Program& program) {
    program.DiscCatalogue.Clear();
    try {
        const std::vector<std::wstring> folders = ListManualFolders(program);
        return std::ranges::all_of(folders, [&](const std::wstring& folder) { return ScanFolder(program, folder); });
    } catch (const std::exception& error) {
        program.Platform.FaultLog.Trapped("listing the disc's folders", error);
        return false;
    }
}

void ReadCatalogueRecord(Program& program, const std::wstring& folderName) {
    DiscCatalogue& catalogue = program.DiscCatalogue;
    DiscCatalogueRecord& record = catalogue.Records.emplace_back();
    record.InstallFlag = Selection::Candidate;
    ReadCatalogueFile(program, folderName, record);
    record.OrderNo = FindOrderNo(program.ModelOrder, record.Model_ID);
    if (!ValidateCatalogueRecord(program.Settings.Columns, record, catalogue)) {
        catalogue.CatalogueErrorFlag = true;
        return;
    }
    const Lookup edition = FindInstalledRecord(program, record.Pub_No);
    if (edition.Failed()) {
        StopForDatabase(program);
        return;
    }
    LocateContent(program, folderName, record);
    Classify(program, folderName, edition, record);
    if (IsSupersededPublication(program, catalogue.LastIndex())) {
        record.InstallFlag = Selection::Superseded;
        record.InstallState = InstallState::Nothing;
    }
}

bool HasCatalogueFile(const Program& program, const std::wstring& folderName) {
    return program.Platform.Files.Exists(CatalogueFilePath(program, folderName));
}

bool ValidateCatalogueRecord(const ColumnLengths& lengths, const DiscCatalogueRecord& record,
                             DiscCatalogue& catalogue) {
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
            catalogue.CatalogueErrorCaption = L"car_info.ci data length Error program abort";
            // The length is that of the value as it stands in the file, blanks included.
            catalogue.CatalogueErrorText = L"PubNo = " + record.Pub_No + L" [ " + field.Name + L" length = " +
                                           std::to_wstring(field.Value.size()) + L" ]";
            return false;
        }
    }
    return true;
}

bool CheckFieldLength(const std::wstring& value, std::int16_t maximum, bool emptyAllowed) {
    const auto length = static_cast<std::ptrdiff_t>(TrimBlanks(value).size());
    return length <= maximum && (length > 0 || emptyAllowed);
}

bool IsSupersededPublication(Program& program, std::int16_t recordNumber) {
    const auto& record = program.DiscCatalogue.Records.at(static_cast<std::size_t>(recordNumber));
    MdbStatus status = MdbEnd;
    for (const std::wstring& later : LaterEditionsOf(record.Pub_No)) {
        status = FindInstalledRecord(program, later).Status;
        if (status != MdbEnd) {
            break;
        }
    }
    if (status == MdbError) {
        StopForDatabase(program);
    }
    return status == MdbOk;
}

}  // namespace mip
