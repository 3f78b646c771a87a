#pragma once

#include "platform/FileVersions.h"

namespace mip {

/// File versions by the version-information services.
class WindowsFileVersions : public FileVersions {
  public:
    FixedFileVersion Read(const std::wstring& path) override;
};

}  // namespace mip
