#pragma once

#include <cstdint>
#include <string>

#include "platform/Platform.h"

namespace mip {

/// Extracts an archive through the `SevenZip` command line; 0 means success. Nothing is thrown.
std::int32_t ExtractArchive(Platform& platform, const std::wstring& archivePath,
                            const std::wstring& quotedOutputFolder);

}  // namespace mip
