#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace mip {

/// The libraries that a 32-bit program file imports, in lower case, from its import directory. Throws
/// std::runtime_error for a file that is no such program.
std::set<std::string> ImportsOf(const std::wstring& programFile);
/// The characteristics of its file header, IMAGE_FILE_ bits. Throws in the same way.
std::uint16_t CharacteristicsOf(const std::wstring& programFile);

}  // namespace mip
