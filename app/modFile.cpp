#include "app/modFile.h"

#include <stdexcept>

#include "app/Attempt.h"
#include "app/Program.h"
#include "app/modShell.h"
#include "platform/Clock.h"
#include "platform/Computer.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// The attributes that can be cleared; others (compressed, not indexed) say how the file is stored.
constexpr std::uint32_t ClearableAttributes =
    attributes::ReadOnly | attributes::Hidden | attributes::System | attributes::Archive;

/// Deletes a file that is known to exist.
void RemoveForced(Platform& platform, const std::wstring& file) {
    if ((platform.Files.Status(file).Attributes & ClearableAttributes) != 0) {
        platform.Files.SetAttributes(file, attributes::Normal);
        PauseSeconds(platform.Clock, 1);
    }
    platform.Files.Remove(file);
}

/// False, and a line in the log, for a path with a quote, which would end the batch file's argument.
bool CanBeArgument(Platform& platform, const std::wstring& folder) {
    if (folder.find(L'"') == std::wstring::npos) {
        return true;
    }
    const std::invalid_argument error("a quote ends the batch file's argument: " + ToUtf8(folder));
    platform.FaultLog.Trapped("removing a folder", error);
    return false;
}

bool RunRemovalBatch(Platform& platform, const Paths& paths, const std::wstring& folder) {
    return RunAndWait(platform, paths.RmDirBatPath + L" \"" + folder + L"\"");
}

}  // namespace

std::wstring GetLoginUserName(Platform& platform) {
    try {
        return CutAtNul(platform.Computer.UserName());
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("asking for the user's name", error);
        return L"";
    }
}

std::wstring GetParentFolder(const std::wstring& path) {
    const std::size_t last = path.rfind(L'\\');
    return last == std::wstring::npos ? path : ReplaceAll(path, path.substr(last), L"");
}

std::wstring LastComponent(const std::wstring& path) {
    const std::size_t last = path.rfind(L'\\');
    return last == std::wstring::npos ? path : path.substr(last + 1);
}

std::wstring JoinPath(std::wstring_view folder, std::wstring_view name) {
    while (folder.ends_with(L'\\')) {
        folder.remove_suffix(1);
    }
    while (name.starts_with(L'\\')) {
        name.remove_prefix(1);
    }
    return std::wstring(folder) + L'\\' + std::wstring(name);
}

std::wstring TrimFolderPath(const std::wstring& path) {
    const bool afterColon = path.size() > 1 && path[path.size() - 2] == L':';
    return path.ends_with(L'\\') || afterColon ? path.substr(0, path.size() - 1) : path;
}

bool ClearFolder(Platform& platform, const Paths& paths, const std::wstring& folder) {
    if (platform.Folders.Exists(folder)) {
        if (IsEmptyFolder(platform, folder)) {
            return true;
        }
        if (CanBeArgument(platform, folder)) {
            RunRemovalBatch(platform, paths, folder);
        }
    }
    MakeFolder(platform, folder);
    return IsEmptyFolder(platform, folder);
}

bool IsEmptyFolder(Platform& platform, const std::wstring& folder) {
    try {
        return platform.Folders.List(folder) == FolderListing{};
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("looking whether a folder is empty", error);
        return false;
    }
}

bool RemoveFolder(Platform& platform, const Paths& paths, const std::wstring& folder) {
    if (!CanBeArgument(platform, folder)) {
        return false;
    }
    const auto removeEmpty = [&] { platform.Folders.Remove(folder); };
    return !platform.Folders.Exists(folder) ||
           (IsEmptyFolder(platform, folder) && Attempt(platform.FaultLog, "removing an empty folder", removeEmpty)) ||
           RunRemovalBatch(platform, paths, folder);
}

bool MakeFolder(Platform& platform, const std::wstring& folder) {
    try {
        platform.Folders.Create(folder);
        return true;
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("making a folder", error);
        return false;
    }
}

void MakeFolderPath(Platform& platform, const std::wstring& folder) {
    try {
        platform.Folders.Create(folder);
    } catch (const PlatformError& error) {
        if (error.Code() != errors::PathNotFound) {
            if (platform.Folders.Exists(folder)) {
                return;
            }
            throw;
        }
        const std::size_t last = folder.find_last_of(L'\\');
        if (last == std::wstring::npos || last + 1 == folder.size()) {
            throw;
        }
        MakeFolderPath(platform, folder.substr(0, last));
        platform.Folders.Create(folder);
    }
}

void CopyFileReplacing(Platform& platform, const std::wstring& source, const std::wstring& destination) {
    try {
        platform.Files.CopyToNew(source, destination);
        return;
    } catch (const PlatformError& error) {
        if (error.Code() != errors::FileExists) {
            throw;
        }
    }
    CopyOverExisting(platform, source, destination);
}

void CopyOverExisting(Platform& platform, const std::wstring& source, const std::wstring& destination) {
    RemoveForced(platform, destination);
    platform.Files.CopyToNew(source, destination);
}

void DeleteFileForced(Platform& platform, const std::wstring& file) {
    if (platform.Files.Exists(file)) {
        RemoveForced(platform, file);
    }
}

void DeleteFileAtOnce(Platform& platform, const std::wstring& file) {
    if (platform.Files.Exists(file) && CodeOf([&] { platform.Files.Remove(file); }) != 0) {
        DeleteFileForced(platform, file);
    }
}

bool IsFileOutdated(Platform& platform, const std::wstring& first, const std::wstring& second) {
    return !platform.Files.Exists(second) ||
           platform.Files.Status(first).Modified < platform.Files.Status(second).Modified;
}

bool IsFileWritable(Platform& platform, const std::wstring& file) {
    try {
        return (platform.Files.Status(file).Attributes & attributes::ReadOnly) == 0;
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("asking whether a file is write-protected", error);
        return false;
    }
}

}  // namespace mip
