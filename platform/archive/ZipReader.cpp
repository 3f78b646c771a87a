#include "platform/archive/ZipReader.h"

#include <archive.h>
#include <archive_entry.h>

#include <chrono>
#include <cstdio>

#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/BadArchive.h"

namespace mip {

namespace {

constexpr std::size_t BlockSize = 256 * 1024;
constexpr unsigned Utf8CodePage = 65001;

std::string CharsetName(unsigned codePage) {
    return codePage == Utf8CodePage ? "UTF-8" : "CP" + std::to_string(codePage);
}

}  // namespace

std::ptrdiff_t ZipReader::Source::Read(const void** block) {
    const std::size_t size = Bytes.ReadAt(Position, Buffer);
    Position += size;
    *block = Buffer.data();
    return static_cast<std::ptrdiff_t>(size);
}

std::int64_t ZipReader::Source::Seek(std::int64_t offset, int whence) {
    const auto size = static_cast<std::int64_t>(Bytes.Size());
    const std::int64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? static_cast<std::int64_t>(Position) : size;
    if (offset < -base || offset > size - base) {
        return ARCHIVE_FATAL;
    }
    Position = static_cast<std::uint64_t>(base + offset);
    return base + offset;
}

void ZipReader::Closer::operator()(archive* reader) const {
    archive_read_free(reader);
}

ZipReader::ZipReader(ArchiveBytes& bytes, unsigned nameCodePage)
    : source_{bytes, 0, std::vector<char>(BlockSize)}, reader_(archive_read_new()) {
    if (!reader_) {
        throw std::bad_alloc();
    }
    Require(archive_read_support_format_zip_seekable(reader_.get()));
    Require(archive_read_set_format_option(reader_.get(), "zip", "hdrcharset", CharsetName(nameCodePage).c_str()));
    SetCallbacks();
    Require(archive_read_open1(reader_.get()));
}

/// No exception may cross the library; a failed read becomes its own kind of failure.
void ZipReader::SetCallbacks() {
    archive* reader = reader_.get();
    archive_read_set_callback_data(reader, &source_);
    archive_read_set_read_callback(reader, [](archive*, void* source, const void** block) -> la_ssize_t {
        try {
            return static_cast<Source*>(source)->Read(block);
        } catch (const std::exception&) {
            return ARCHIVE_FATAL;
        }
    });
    archive_read_set_seek_callback(reader, [](archive*, void* source, la_int64_t offset, int whence) -> la_int64_t {
        try {
            return static_cast<Source*>(source)->Seek(offset, whence);
        } catch (const std::exception&) {
            return ARCHIVE_FATAL;
        }
    });
}

void ZipReader::Require(int result) const {
    if (result != ARCHIVE_OK) {
        throw BadArchive("reading the archive's data");
    }
}

bool ZipReader::Next() {
    position_ = 0;
    const int result = archive_read_next_header(reader_.get(), &entry_);
    if (result == ARCHIVE_EOF) {
        return false;
    }
    Require(result);
    return true;
}

std::wstring ZipReader::Name() const {
    const wchar_t* name = archive_entry_pathname_w(entry_);
    if (name == nullptr) {
        throw BadArchive("decoding an entry's name");
    }
    return name;
}

bool ZipReader::IsFolder() const {
    return archive_entry_filetype(entry_) == AE_IFDIR;
}

bool ZipReader::IsPlain() const {
    return (IsFolder() || archive_entry_filetype(entry_) == AE_IFREG) && archive_entry_hardlink(entry_) == nullptr &&
           archive_entry_symlink(entry_) == nullptr && archive_entry_is_encrypted(entry_) == 0;
}

std::uint64_t ZipReader::Size() const {
    return static_cast<std::uint64_t>(archive_entry_size(entry_));
}

std::optional<FileTime> ZipReader::Modified() const {
    using std::chrono::sys_seconds, std::chrono::seconds;
    const auto time = archive_entry_mtime(entry_);
    return time > 0 ? std::optional<FileTime>(sys_seconds(seconds(time))) : std::nullopt;
}

std::span<const char> ZipReader::Data() {
    const void* block = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    do {
        const int result = archive_read_data_block(reader_.get(), &block, &size, &offset);
        if (result == ARCHIVE_EOF) {
            return {};
        }
        Require(result);
    } while (size == 0);
    if (offset != position_) {
        throw BadArchive("reading the archive's data");
    }
    position_ += static_cast<std::int64_t>(size);
    return {static_cast<const char*>(block), size};
}

}  // namespace mip
