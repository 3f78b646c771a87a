#pragma once

#include <filesystem>

#include "tools/mkcatalogue/Description.h"

namespace mip {

/// Writes an empty catalogue that a description tells of. The output appears, or is replaced, in one step. Throws
/// PlatformError and std::filesystem::filesystem_error; nothing is left behind then.
void WriteCatalogue(const Description& description, const std::filesystem::path& output);

}  // namespace mip
