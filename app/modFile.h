#pragma once

#include <string>
#include <string_view>

#include "platform/Platform.h"

namespace mip {

struct Paths;

/// The current user's log-on name, "" when it cannot be had.
std::wstring GetLoginUserName(Platform& platform);
/// Removes every occurrence of the last backslash-component from the path.
std::wstring GetParentFolder(const std::wstring& path);
/// The part after the last backslash.
std::wstring LastComponent(const std::wstring& path);
/// Two parts with exactly one backslash between them.
std::wstring JoinPath(std::wstring_view folder, std::wstring_view name);
/// A trailing backslash, or a character after a colon, removed: D:\ gives D:.
std::wstring TrimFolderPath(const std::wstring& path);

/// Empties a folder by the removal batch file and creates it again; an empty one stays as it is. True when it is there
/// and empty.
bool ClearFolder(Platform& platform, const Paths& paths, const std::wstring& folder);
/// True for a folder that holds nothing, links included; false also when it cannot be listed.
bool IsEmptyFolder(Platform& platform, const std::wstring& folder);
/// Removes a folder, one that holds something by the removal batch file, for which it waits; false when that could not
/// be run. A path with a quote, which no folder has, is not handed to it.
bool RemoveFolder(Platform& platform, const Paths& paths, const std::wstring& folder);
/// Creates one folder level; false when that fails.
bool MakeFolder(Platform& platform, const std::wstring& folder);
/// Creates every missing level. Throws PlatformError.
void MakeFolderPath(Platform& platform, const std::wstring& folder);
/// Copies over an existing file, read-only ones included, and leaves no attributes set. Throws PlatformError.
void CopyFileReplacing(Platform& platform, const std::wstring& source, const std::wstring& destination);
/// The same when the destination is known to exist.
void CopyOverExisting(Platform& platform, const std::wstring& source, const std::wstring& destination);
/// Deletes a file, a read-only one included; absence is no error. Throws PlatformError.
void DeleteFileForced(Platform& platform, const std::wstring& file);
/// The same at once: attributes are cleared, with the wait for that, only where they stand in the way.
void DeleteFileAtOnce(Platform& platform, const std::wstring& file);
/// True when `second` does not exist or is newer than `first`. Throws PlatformError when `first` cannot be asked.
bool IsFileOutdated(Platform& platform, const std::wstring& first, const std::wstring& second);
/// False for a read-only file and when it cannot be asked.
bool IsFileWritable(Platform& platform, const std::wstring& file);

}  // namespace mip
