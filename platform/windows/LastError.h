#pragma once

#include <string>
#include <string_view>

#include <windows.h>

#include "platform/PlatformError.h"

namespace mip {

/// Throws the thread's last error. To be called on the very next line after the call that failed.
[[noreturn]] inline void ThrowLastError(std::string_view operation, const std::wstring& object) {
    const DWORD code = GetLastError();
    throw PlatformError(operation, object, code);
}

}  // namespace mip
