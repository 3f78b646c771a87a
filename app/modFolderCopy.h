#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/Platform.h"

namespace mip {

enum class CopyMode : std::int16_t { Copy = 1, CountOnly = 2 };

/// Called after every copied file with the running progress value.
using CopyProgress = std::function<void(std::int32_t fileDone)>;

/// Copies a folder tree file by file, or counts its files. Copying gives 0, counting `startValue` plus the number of
/// files; -1 on failure in either mode. Files copied before a failure stay.
std::int32_t CopyFolderWithProgress(Platform& platform, CopyMode mode, std::int32_t startValue,
                                    const std::wstring& sourceRoot, const std::wstring& destRoot,
                                    const CopyProgress& progress = {});
/// The number of files in a folder and below it; -1 on failure.
std::int32_t CountFiles(Platform& platform, const std::wstring& folder);

}  // namespace mip
