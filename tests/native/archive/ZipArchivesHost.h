#pragma once

#include "tests/contract/ArchivesContract.h"
#include "tests/native/archive/ArchiveComputer.h"
#include "tests/native/archive/ZipBuilder.h"

namespace mip {

/// The part of a host whose archives are ZIP files.
class ZipArchivesHost : public ArchivesHost {
  public:
    std::wstring At(const std::wstring& name) override { return Computer->At(name); }
    std::map<std::wstring, std::string> Tree(const std::wstring& folder) override { return Computer->TreeOf(folder); }
    void Put(const std::wstring& path, const std::vector<ArchiveEntry>& entries) override {
        std::vector<ZipItem> items;
        for (const auto& [name, content, damaged] : entries) {
            items.push_back(OrdinaryItem(name, content));
            if (damaged) {
                items.back().Crc = Checksum(content) + 1;
            }
        }
        Computer->Put(path, BuildZip(items));
    }

  protected:
    std::unique_ptr<ArchiveComputer> Computer = MakeArchiveComputer();
};

}  // namespace mip
