#pragma once

#include "tests/contract/ArchivesContract.h"
#include "tests/native/archive/TestSystem.h"

namespace mip {

/// The part of a host whose archives are real ZIP files in a temporary folder.
class ZipArchivesHost : public ArchivesHost {
  public:
    std::wstring At(const std::wstring& name) override { return folder_.Below(name); }
    void Put(const std::wstring& path, const std::vector<ArchiveEntry>& entries) override;
    std::map<std::wstring, std::string> Tree(const std::wstring& folder) override { return TreeOf(PathOf(folder)); }

  private:
    ScratchFolder folder_;
};

}  // namespace mip
