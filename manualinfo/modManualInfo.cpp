#include "manualinfo/modManualInfo.h"

#include <algorithm>

#include "app/Attempt.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "manualinfo/FileWithAccess.h"
#include "manualinfo/ManualInfoFile.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "platform/PlatformError.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr wchar_t LocalFolder[] = L"C:\\man_info";
constexpr wchar_t LocalManualInfoPath[] = L"C:\\man_info\\man_info_do.ci";
constexpr wchar_t InfoFile[] = L"man_info_do.ci";
constexpr wchar_t UserInfoFile[] = L"man_info_us.ci";

struct Comparison {
    bool Result = true;
    bool CopyNeeded = false;
    std::vector<std::wstring> OlderEntryLines{};
};

std::wstring OnDisc(const Paths& paths, const wchar_t* name) {
    return paths.DiscRootPath + L"programs\\setup\\" + name;
}

DateTime FindLocalDate(const std::vector<ManualInfoEntry>& localEntries, const std::wstring& key) {
    const auto found = std::find_if(localEntries.begin(), localEntries.end(),
                                    [&key](const ManualInfoEntry& entry) { return entry.Key == key; });
    return found == localEntries.end() ? ParseDateTime(L"1900/01/01") : found->Date;
}

std::wstring OlderEntryLine(const Program& program, const ManualInfoEntry& entry) {
    std::wstring line = GetMessageText(program, messages::OlderEntry);
    line = ReplaceAll(line, L"@1", entry.Field0);
    line = ReplaceAll(line, L"@2", entry.Field1);
    line = ReplaceAll(line, L"@3", entry.Key);
    line = ReplaceAll(line, L"@4", FormatMonthYear(entry.Date));
    return ReplaceAll(line, L"@5", entry.Field1) + L'|';
}

/// A file that cannot be read or holds a malformed line makes the comparison fail, without any line to show.
Comparison CompareManualInfo(const Program& program) try {
    const auto localEntries = ReadManualInfoEntries(program.Platform, LocalManualInfoPath);
    const auto discEntries = ReadManualInfoEntries(program.Platform, OnDisc(program.Paths, InfoFile));
    Comparison comparison;
    for (const ManualInfoEntry& entry : discEntries) {
        if (!program.Platform.Folders.Exists(program.Paths.DiscRootPath + entry.Key)) {
            continue;
        }
        const DateTime localDate = FindLocalDate(localEntries, entry.Key);
        if (entry.Date < localDate) {
            comparison.Result = false;
            comparison.OlderEntryLines.push_back(OlderEntryLine(program, entry));
        } else if (entry.Date > localDate) {
            comparison.CopyNeeded = true;
        }
    }
    return comparison;
} catch (const std::exception& error) {
    program.Platform.FaultLog.Trapped("comparing the manual information", error);
    return {.Result = false};
}

/// False, after a box, when the folder is not there and cannot be made.
bool HasLocalFolder(Platform& platform) {
    if (platform.Folders.Exists(LocalFolder) || MakeFolder(platform, LocalFolder)) {
        return true;
    }
    platform.MessageBoxes.Show(L"Vantos Service System Error", boxes::Ok, L"");
    return false;
}

/// A copy that fails is reported as a grant on it that fails.
void CopyToLocal(const Program& program) {
    try {
        CopyFileWithAccess(program.Platform, program.Identity, OnDisc(program.Paths, InfoFile), LocalManualInfoPath);
    } catch (const PlatformError& error) {
        program.Platform.FaultLog.Trapped("copying the manual information", error);
        ShowAccessError(program.Platform, LocalManualInfoPath);
    }
}

/// The manuals are complete without these files: an error goes no further than the log.
void CopyWhenNewer(Platform& platform, const std::wstring& source, const std::wstring& destination) {
    Files& files = platform.Files;
    (void)Attempt(platform.FaultLog, "copying the manual information", [&] {
        if (!files.Exists(destination) || files.Status(destination).Modified < files.Status(source).Modified) {
            CopyFileReplacing(platform, source, destination);
        }
    });
}

}  // namespace

std::optional<ManualInfoCheck> CheckLocalManualInfo(const Program& program) {
    if (!HasLocalFolder(program.Platform)) {
        return std::nullopt;
    }
    if (!program.Platform.Files.Exists(LocalManualInfoPath)) {
        CopyToLocal(program);
        return ManualInfoCheck{};
    }
    Comparison comparison = CompareManualInfo(program);
    if (comparison.Result && comparison.CopyNeeded) {
        CopyToLocal(program);
    }
    return ManualInfoCheck{comparison.Result, std::move(comparison.OlderEntryLines)};
}

int AskAboutManualInfo(const Program& program, const ManualInfoCheck& check) {
    std::wstring text;
    for (const std::wstring& line : check.OlderEntryLines) {
        text += ReplaceAll(line, L"|", L"\r") + L'\r';
    }
    text += GetMessageText(program, messages::OlderEntries) + L'\r' + GetMessageText(program, messages::GoOn);
    return program.Platform.MessageBoxes.Show(text, boxes::Exclamation | boxes::YesNo, L"Vantor Manual Information");
}

void PrepareManualInfo(Platform& platform, const Paths& paths) {
    if (!platform.Folders.Exists(LocalFolder)) {
        MakeFolder(platform, LocalFolder);
    }
    CopyWhenNewer(platform, OnDisc(paths, InfoFile), LocalManualInfoPath);
}

void PlaceManualInfo(Platform& platform, const Paths& paths) {
    for (const wchar_t* file : {InfoFile, UserInfoFile}) {
        CopyWhenNewer(platform, OnDisc(paths, file), JoinPath(paths.InstallDir, file));
    }
}

}  // namespace mip
