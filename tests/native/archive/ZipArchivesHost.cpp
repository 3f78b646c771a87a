#include "tests/native/archive/ZipArchivesHost.h"

#include <algorithm>
#include <fstream>

#include "tests/native/archive/ZipBuilder.h"

namespace mip {

void ZipArchivesHost::Put(const std::wstring& path, const std::vector<ArchiveEntry>& entries) {
    std::vector<ZipItem> items;
    for (const auto& [name, content, damaged] : entries) {
        const std::u8string bytes = std::filesystem::path(name).u8string();
        ZipItem item{.Name = {bytes.begin(), bytes.end()}, .Content = content, .Flags = Utf8Names};
        std::ranges::replace(item.Name, '\\', '/');
        item.Deflate = !content.empty();
        if (damaged) {
            item.Crc = Checksum(content) + 1;
        }
        items.push_back(item);
    }
    std::filesystem::create_directories(PathOf(path).parent_path());
    std::ofstream(PathOf(path), std::ios::binary) << BuildZip(items);
}

}  // namespace mip
