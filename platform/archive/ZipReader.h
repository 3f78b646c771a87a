#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/Files.h"

struct archive;
struct archive_entry;

namespace mip {

class ArchiveBytes;

/// Goes through a ZIP file's entries in the order in which their data stands in it. The reading library unpacks and
/// checks; what it reports besides complete success is thrown as BadArchive.
class ZipReader {
  public:
    /// `nameCodePage` is that of names without the UTF-8 flag.
    ZipReader(ArchiveBytes& bytes, unsigned nameCodePage);

    /// The next entry; false after the last.
    bool Next();

    std::wstring Name() const;
    bool IsFolder() const;
    /// False for links and whatever else is not a file or folder.
    bool IsPlain() const;
    std::uint64_t Size() const;
    std::optional<FileTime> Modified() const;
    /// The next piece of the entry's data, empty at its end; the checksum is then known to be right. The piece stays
    /// readable until the next call.
    std::span<const char> Data();

  private:
    struct Source {
        ArchiveBytes& Bytes;
        std::uint64_t Position = 0;
        std::vector<char> Buffer;

        std::ptrdiff_t Read(const void** block);
        std::int64_t Seek(std::int64_t offset, int whence);
    };
    struct Closer {
        void operator()(archive* reader) const;
    };

    void Require(int result) const;
    void SetCallbacks();

    Source source_;
    std::unique_ptr<archive, Closer> reader_;
    archive_entry* entry_ = nullptr;
    std::int64_t position_ = 0;
};

}  // namespace mip
