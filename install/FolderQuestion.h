#pragma once

#include <optional>
#include <string>

namespace mip {

struct DiscCatalogueRecord;

/// The question that a manual without a folder raises, owned by the installation and asked on a screen.
class FolderQuestion {
  public:
    virtual ~FolderQuestion() = default;

    /// The folder below which the manual's own is made, `proposal` when the user leaves it; nothing when the user
    /// cancels the installation, whose texts are then set. A run without questions answers by itself and throws Failure
    /// when the manual does not fit.
    virtual std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord& manual,
                                                     const std::wstring& proposal) = 0;
};

}  // namespace mip
