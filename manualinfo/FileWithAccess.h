#pragma once

#include <string>

namespace mip {

struct Program;

/// CopyFileReplacing with a pause between the steps, then full access for local users. Throws PlatformError when the
/// copy fails; a failed grant is reported by a box.
void CopyFileWithAccess(Program& program, const std::wstring& source, const std::wstring& destination);
/// The box that says that a file could not be opened to local users.
void ShowAccessError(Program& program, const std::wstring& file);

}  // namespace mip
