#pragma once

#include <string>

namespace mip {

struct Identity;
struct Platform;

/// CopyFileReplacing with a pause between the steps, then full access for local users. Throws PlatformError when the
/// copy fails; a failed grant is reported by a box.
void CopyFileWithAccess(Platform& platform, const Identity& identity, const std::wstring& source,
                        const std::wstring& destination);
/// The box that says that a file could not be opened to local users.
void ShowAccessError(Platform& platform, const std::wstring& file);

}  // namespace mip
