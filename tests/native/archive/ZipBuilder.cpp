#include "tests/native/archive/ZipBuilder.h"

#include <zlib.h>

#include <ostream>
#include <stdexcept>

namespace mip {

namespace {

/// Appends numbers least significant byte first.
class Bytes {
  public:
    Bytes& Text(const std::string& text) {
        bytes_ += text;
        return *this;
    }
    Bytes& Two(std::uint64_t value) { return Number(value, 2); }
    Bytes& Four(std::uint64_t value) { return Number(value, 4); }
    Bytes& Eight(std::uint64_t value) { return Number(value, 8); }
    const std::string& Get() const { return bytes_; }

  private:
    Bytes& Number(std::uint64_t value, int size) {
        for (; size > 0; --size, value >>= 8U) {
            bytes_ += static_cast<char>(value & 0xFFU);
        }
        return *this;
    }

    std::string bytes_;
};

std::string DeflateRaw(const std::string& content) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("deflateInit2");
    }
    std::string packed(deflateBound(&stream, static_cast<uLong>(content.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) {
        throw std::runtime_error("deflate");
    }
    return packed;
}

/// What both of an entry's headers say.
struct Packed {
    std::string Data;
    std::uint16_t Method = 0;
    std::uint16_t Flags = 0;
    std::uint32_t Crc = 0;
    std::uint64_t Size = 0;
};

Packed Pack(const ZipItem& item) {
    Packed packed;
    packed.Data = item.Deflate ? DeflateRaw(item.Content) : item.Content;
    packed.Method = item.Method.value_or(item.Deflate ? 8 : 0);
    packed.Flags = static_cast<std::uint16_t>(item.Flags | (item.SizesFollowData ? 8 : 0));
    packed.Crc = item.Crc.value_or(Checksum(item.Content));
    packed.Size = item.Size.value_or(item.Content.size());
    return packed;
}

std::string Zip64Sizes(const Packed& packed) {
    return ExtraField(1, Bytes().Eight(packed.Size).Eight(packed.Data.size()).Get());
}

std::string LocalEntry(const ZipItem& item, const Packed& packed) {
    const std::string& name = item.LocalName.value_or(item.Name);
    const std::string extra = (item.Zip64 ? Zip64Sizes(packed) : "") + item.Extra;
    const bool follow = item.SizesFollowData;
    Bytes entry;
    entry.Text("PK\x03\x04").Two(20).Two(packed.Flags).Two(packed.Method).Four(item.DosTime);
    entry.Four(follow ? 0 : packed.Crc);
    entry.Four(follow ? 0 : item.Zip64 ? UINT32_MAX : packed.Data.size());
    entry.Four(follow ? 0 : item.Zip64 ? UINT32_MAX : packed.Size);
    entry.Two(name.size()).Two(extra.size()).Text(name).Text(extra).Text(packed.Data);
    if (follow) {
        entry.Text("PK\x07\x08").Four(packed.Crc).Four(packed.Data.size()).Four(packed.Size);
    }
    return entry.Get();
}

std::string DirectoryRecord(const ZipItem& item, const Packed& packed, std::uint64_t offset) {
    const std::string extra = (item.Zip64 ? Zip64Sizes(packed) : "") + item.Extra;
    Bytes record;
    record.Text("PK\x01\x02").Two(20U | static_cast<unsigned>(item.Host) << 8U).Two(20);
    record.Two(packed.Flags).Two(packed.Method).Four(item.DosTime).Four(packed.Crc);
    record.Four(item.Zip64 ? UINT32_MAX : packed.Data.size()).Four(item.Zip64 ? UINT32_MAX : packed.Size);
    record.Two(item.Name.size()).Two(extra.size()).Two(0).Two(0).Two(0).Four(item.Attributes);
    record.Four(item.LocalOffset.value_or(offset)).Text(item.Name).Text(extra);
    return record.Get();
}

std::string End(const ZipShape& shape, std::uint64_t records, std::uint64_t offset, std::uint64_t size) {
    Bytes end;
    if (shape.Zip64End) {
        end.Text("PK\x06\x06").Eight(44).Two(45).Two(45).Four(0).Four(0);
        end.Eight(records).Eight(records).Eight(size).Eight(offset);
        end.Text("PK\x06\x07").Four(0).Eight(offset + size).Four(1);
    }
    end.Text("PK\x05\x06").Two(shape.Volume).Two(shape.Volume);
    end.Two(shape.Zip64End ? UINT16_MAX : records).Two(shape.Zip64End ? UINT16_MAX : records);
    end.Four(shape.Zip64End ? UINT32_MAX : size).Four(shape.Zip64End ? UINT32_MAX : offset);
    return end.Two(shape.Comment.size()).Text(shape.Comment).Get();
}

}  // namespace

std::string BuildZip(const std::vector<ZipItem>& items, const ZipShape& shape) {
    std::string zip = shape.Before;
    std::string directory;
    for (const ZipItem& item : items) {
        const Packed packed = Pack(item);
        directory += DirectoryRecord(item, packed, zip.size() - shape.Before.size());
        zip += LocalEntry(item, packed);
    }
    const std::uint64_t offset = zip.size() - shape.Before.size();
    return zip + directory + End(shape, shape.Records.value_or(items.size()), offset, directory.size());
}

void WriteZipOfEmptyFiles(std::ostream& zip, std::size_t count) {
    constexpr std::size_t NameSize = 8;
    const ZipItem item{.Name = std::string(NameSize, '0'), .Deflate = false};
    std::string entry = LocalEntry(item, {});
    std::string record = DirectoryRecord(item, {}, 0);
    const auto numberName = [](std::string& header, std::size_t index) {
        const std::string digits = std::to_string(index);
        header.replace(header.size() - digits.size(), digits.size(), digits);
    };
    for (std::size_t index = 0; index < count; ++index) {
        numberName(entry, index);
        zip << entry;
    }
    for (std::size_t index = 0; index < count; ++index) {
        numberName(record, index);
        record.replace(record.size() - NameSize - 4, 4, LittleEndian(static_cast<std::uint32_t>(index * entry.size())));
        zip << record;
    }
    zip << End({.Zip64End = true}, count, count * entry.size(), count * record.size());
}

std::string ExtraField(std::uint16_t kind, const std::string& content) {
    return Bytes().Two(kind).Two(content.size()).Text(content).Get();
}

std::string LittleEndian(std::uint32_t value) {
    return Bytes().Four(value).Get();
}

std::uint32_t Checksum(const std::string& bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

}  // namespace mip
