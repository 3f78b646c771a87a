#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/DiscCatalogue.h"
#include "publish/ManualFiles.h"

namespace mip {

/// The manuals of an earlier disc, or of a folder that holds one folder a manual.
class EarlierEditions {
  public:
    explicit EarlierEditions(const std::filesystem::path& base);

    /// The folder of the edition just before this one; nothing when it is not there.
    std::optional<std::filesystem::path> Before(const DiscCatalogueRecord& manual) const;

  private:
    std::filesystem::path base_;
    std::map<std::wstring, DiscCatalogueRecord> byPubNo_;
};

/// What tells an edition from the one before.
struct EditionChanges {
    std::vector<ManualFile> Changed;  ///< files below "contents" that differ or are new
    /// Why these files put over the edition before would not give this one; "" when they do.
    std::string Obstacle;
};

/// Compares a manual's files with the edition in a folder: its loose pages, or its archive when there are none. Throws
/// PlatformError and std::runtime_error.
EditionChanges CompareEditions(const std::vector<ManualFile>& files, const std::filesystem::path& before);

}  // namespace mip
