#pragma once

#include <string>
#include <vector>

#include "platform/Platform.h"

namespace mip {

/// A text file's bytes as text: UTF-16 or UTF-8 with a byte-order mark, else the system code page.
std::wstring DecodeTextFile(const std::string& bytes, Computer& computer);
/// The lines of a text file. Throws PlatformError when it cannot be read.
std::vector<std::wstring> ReadTextLines(const Platform& platform, const std::wstring& file);

}  // namespace mip
