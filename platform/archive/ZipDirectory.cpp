#include "platform/archive/ZipDirectory.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/BadArchive.h"

namespace mip {

namespace {

constexpr std::string_view RecordSignature = "PK\x01\x02";
constexpr std::string_view EndSignature = "PK\x05\x06";
constexpr std::string_view End64Signature = "PK\x06\x06";
constexpr std::string_view Locator64Signature = "PK\x06\x07";
constexpr std::size_t RecordSize = 46;
constexpr std::size_t EndSize = 22;
constexpr std::size_t End64Size = 56;
constexpr std::size_t Locator64Size = 20;
constexpr std::size_t SearchedTail = 16 * 1024 - 1;  // where the reading library, too, looks for the end record
constexpr std::uint16_t Zip64Field = 0x0001;
constexpr std::uint16_t UnicodePathField = 0x7075;
constexpr std::uint16_t Utf8Flag = 1U << 11U;

[[noreturn]] void Fail() {
    throw BadArchive("reading the archive's directory");
}

/// An unsigned number of sizeof(T) bytes, least significant first. The bytes must be there.
template <typename T>
T Number(std::string_view bytes, std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t index = sizeof(T); index-- > 0;) {
        value = value << 8U | static_cast<unsigned char>(bytes[offset + index]);
    }
    return static_cast<T>(value);
}

std::uint16_t Number16(std::string_view bytes, std::size_t offset) {
    return Number<std::uint16_t>(bytes, offset);
}
std::uint32_t Number32(std::string_view bytes, std::size_t offset) {
    return Number<std::uint32_t>(bytes, offset);
}
std::uint64_t Number64(std::string_view bytes, std::size_t offset) {
    return Number<std::uint64_t>(bytes, offset);
}

std::string ReadExactly(ArchiveBytes& archive, std::uint64_t offset, std::size_t size) {
    std::string bytes(size, '\0');
    if (archive.ReadAt(offset, bytes) != size) {
        Fail();
    }
    return bytes;
}

/// Gives the directory piece by piece. A piece stays readable until the next one is taken.
class DirectoryReader {
  public:
    DirectoryReader(ArchiveBytes& archive, const ZipDirectory& directory)
        : archive_(archive), position_(directory.Offset), left_(directory.Size), buffer_(BufferSize) {}

    bool AtEnd() const { return left_ == 0 && bytes_.empty(); }

    std::string_view Take(std::size_t size) {
        if (bytes_.size() < size) {
            Fill();
        }
        if (bytes_.size() < size) {
            Fail();
        }
        const std::string_view piece = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return piece;
    }

  private:
    static constexpr std::size_t BufferSize = 256 * 1024;  // holds the largest record whole

    void Fill() {
        std::ranges::copy(bytes_, buffer_.begin());
        const std::size_t kept = bytes_.size();
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(BufferSize - kept, left_));
        if (archive_.ReadAt(position_, std::span(buffer_).subspan(kept, wanted)) != wanted) {
            Fail();
        }
        position_ += wanted;
        left_ -= wanted;
        bytes_ = std::string_view(buffer_.data(), kept + wanted);
    }

    ArchiveBytes& archive_;
    std::uint64_t position_;
    std::uint64_t left_;
    std::vector<char> buffer_;
    std::string_view bytes_;
};

/// The values that did not fit their 32-bit fields stand in the ZIP64 field, in this order.
void ReadZip64Field(std::string_view field, ZipRecord& record) {
    for (std::uint64_t* value : {&record.Size, &record.CompressedSize}) {
        if (*value == UINT32_MAX) {
            if (field.size() < sizeof(std::uint64_t)) {
                Fail();
            }
            *value = Number64(field, 0);
            field.remove_prefix(sizeof(std::uint64_t));
        }
    }
}

/// A version byte and a checksum of the plain name, then the name in UTF-8.
void ReadUnicodePathField(std::string_view field, ZipRecord& record) {
    constexpr std::size_t Prefix = 5;
    if (field.size() > Prefix) {
        record.Name = field.substr(Prefix);
        record.NameIsUtf8 = true;
    }
}

void ReadExtraFields(std::string_view extra, ZipRecord& record) {
    constexpr std::size_t Header = 4;
    while (extra.size() >= Header) {
        const std::uint16_t kind = Number16(extra, 0);
        const std::size_t size = Number16(extra, 2);
        extra.remove_prefix(Header);
        if (size > extra.size()) {
            Fail();
        }
        if (kind == Zip64Field) {
            ReadZip64Field(extra.substr(0, size), record);
        } else if (kind == UnicodePathField) {
            ReadUnicodePathField(extra.substr(0, size), record);
        }
        extra.remove_prefix(size);
    }
}

void ReadRecord(DirectoryReader& reader, ZipRecord& record) {
    const std::string_view head = reader.Take(RecordSize);
    if (!head.starts_with(RecordSignature)) {
        Fail();
    }
    record.Host = static_cast<std::uint8_t>(head[5]);
    record.Flags = Number16(head, 8);
    record.Method = Number16(head, 10);
    record.CompressedSize = Number32(head, 20);
    record.Size = Number32(head, 24);
    record.Attributes = Number32(head, 38);
    record.NameIsUtf8 = (record.Flags & Utf8Flag) != 0;
    const std::size_t nameSize = Number16(head, 28);
    const std::size_t extraSize = Number16(head, 30);
    const std::size_t commentSize = Number16(head, 32);
    const std::string_view tail = reader.Take(nameSize + extraSize + commentSize);
    record.Name = tail.substr(0, nameSize);
    ReadExtraFields(tail.substr(nameSize, extraSize), record);
}

/// Reads the ZIP64 end record that a locator points to; it must end where the locator begins.
ZipDirectory ReadEnd64(ArchiveBytes& archive, std::string_view locator, std::uint64_t locatorOffset) {
    const std::uint64_t offset = Number64(locator, 8);
    if (locatorOffset < End64Size || offset > locatorOffset - End64Size) {
        Fail();
    }
    const std::string end = ReadExactly(archive, offset, End64Size);
    const bool oneVolume = Number32(end, 16) == 0 && Number32(end, 20) == 0 && Number64(end, 24) == Number64(end, 32);
    if (!end.starts_with(End64Signature) || !oneVolume || Number64(end, 4) != locatorOffset - offset - 12) {
        Fail();
    }
    const ZipDirectory directory{Number64(end, 48), Number64(end, 40), Number64(end, 32), true};
    if (directory.Size > offset || directory.Offset != offset - directory.Size) {
        Fail();
    }
    return directory;
}

ZipDirectory ReadEnd(std::string_view end, std::uint64_t endOffset) {
    const bool oneVolume = Number16(end, 4) == 0 && Number16(end, 6) == 0 && Number16(end, 8) == Number16(end, 10);
    const ZipDirectory directory{Number32(end, 16), Number32(end, 12), Number16(end, 10), false};
    if (!oneVolume || directory.Offset + directory.Size != endOffset) {
        Fail();
    }
    return directory;
}

}  // namespace

ZipDirectory FindZipDirectory(ArchiveBytes& archive) {
    const std::uint64_t size = archive.Size();
    const auto tailSize = static_cast<std::size_t>(std::min<std::uint64_t>(size, SearchedTail));
    const std::string tail = ReadExactly(archive, size - tailSize, tailSize);
    if (tailSize < EndSize) {
        Fail();
    }
    const std::size_t found = tail.rfind(EndSignature, tailSize - EndSize);
    if (found == std::string::npos) {
        Fail();
    }
    const std::string_view end = std::string_view(tail).substr(found);
    const std::uint64_t endOffset = size - end.size();
    if (end.size() != EndSize + Number16(end, 20)) {
        Fail();
    }
    if (endOffset >= Locator64Size) {
        const std::uint64_t locatorOffset = endOffset - Locator64Size;
        const std::string locator = ReadExactly(archive, locatorOffset, Locator64Size);
        if (locator.starts_with(Locator64Signature)) {
            return ReadEnd64(archive, locator, locatorOffset);
        }
    }
    return ReadEnd(end, endOffset);
}

void VisitZipRecords(ArchiveBytes& archive, const ZipDirectory& directory,
                     const std::function<void(const ZipRecord&)>& visit) {
    DirectoryReader reader(archive, directory);
    ZipRecord record;
    std::uint64_t records = 0;
    for (; !reader.AtEnd(); ++records) {
        ReadRecord(reader, record);
        visit(record);
    }
    const bool expected =
        directory.RecordsAreExact ? records == directory.Records : (records & UINT16_MAX) == directory.Records;
    if (!expected) {
        Fail();
    }
}

}  // namespace mip
