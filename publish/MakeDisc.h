#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "publish/DiscDescription.h"

namespace mip {

/// Where a disc's parts are.
struct DiscParts {
    std::filesystem::path Description;  ///< the description's folder: its pages are named relative to it
    std::filesystem::path Sources;      ///< the manuals' sources are named relative to it
    std::filesystem::path Program;      ///< ManualInstall.exe with SysDir, and what else belongs beside it
    std::filesystem::path Programs;     ///< the companions' setups; empty: none
    std::filesystem::path Base;         ///< earlier editions; empty: no comparison sets
};

/// Makes a disc's folder, which appears when it is complete and must not exist before; returns what the publisher
/// should know, a line each. Throws DescriptionFaults, PlatformError and std::exception; nothing is left behind then.
std::vector<std::string> MakeDisc(const DiscDescription& description, const DiscParts& parts,
                                  const std::filesystem::path& disc);

}  // namespace mip
