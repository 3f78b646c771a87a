#include "tests/native/archive/ZipBuilder.h"

#include <zlib.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "text/TextTools.h"

namespace mip {

namespace {

/// Least significant byte first.
std::string Number(std::uint64_t value, int size) {
    std::string bytes;
    for (; size > 0; --size, value >>= 8U) {
        bytes += static_cast<char>(value & 0xFFU);
    }
    return bytes;
}
std::string Two(std::uint64_t value) {
    return Number(value, 2);
}
std::string Four(std::uint64_t value) {
    return Number(value, 4);
}
std::string Eight(std::uint64_t value) {
    return Number(value, 8);
}

/// A zlib stream without its header and checksum.
std::string DeflateRaw(const std::string& content) {
    uLongf size = compressBound(static_cast<uLong>(content.size()));
    std::string packed(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(content.data()),
                  static_cast<uLong>(content.size()), Z_BEST_SPEED) != Z_OK) {
        throw std::runtime_error("compress2");
    }
    return packed.substr(2, size - 6);
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
    return {item.Deflate ? DeflateRaw(item.Content) : item.Content, item.Method.value_or(item.Deflate ? 8 : 0),
            static_cast<std::uint16_t>(item.Flags | (item.SizesFollowData ? 8 : 0)),
            item.Crc.value_or(Checksum(item.Content)), item.Size.value_or(item.Content.size())};
}

std::string ExtraOf(const ZipItem& item, const Packed& packed) {
    return (item.Zip64 ? ExtraField(1, Eight(packed.Size) + Eight(packed.Data.size())) : "") + item.Extra;
}

std::string LocalEntry(const ZipItem& item, const Packed& packed) {
    const std::string& name = item.LocalName.value_or(item.Name);
    const std::string extra = ExtraOf(item, packed);
    const std::string sizes = Four(packed.Crc) + Four(item.Zip64 ? UINT32_MAX : packed.Data.size()) +
                              Four(item.Zip64 ? UINT32_MAX : packed.Size);
    const bool follow = item.SizesFollowData;
    return "PK\x03\x04" + Two(20) + Two(item.LocalFlags.value_or(packed.Flags)) + Two(packed.Method) +
           Four(item.DosTime) + (follow ? std::string(12, '\0') : sizes) + Two(name.size()) + Two(extra.size()) + name +
           extra + packed.Data + (follow ? "PK\x07\x08" + sizes : "");
}

std::string DirectoryRecord(const ZipItem& item, const Packed& packed, std::uint64_t offset) {
    const std::string extra = ExtraOf(item, packed);
    return "PK\x01\x02" + Two(20U | static_cast<unsigned>(item.Host) << 8U) + Two(20) + Two(packed.Flags) +
           Two(packed.Method) + Four(item.DosTime) + Four(packed.Crc) +
           Four(item.Zip64 ? UINT32_MAX : item.PackedSize.value_or(packed.Data.size())) +
           Four(item.Zip64 ? UINT32_MAX : packed.Size) + Two(item.Name.size()) + Two(extra.size()) +
           Two(item.Comment.size()) + std::string(4, '\0') + Four(item.Attributes) +
           Four(item.LocalOffset.value_or(offset)) + item.Name + extra + item.Comment;
}

std::string End(const ZipShape& shape, std::uint64_t records, std::uint64_t offset, std::uint64_t size) {
    const bool is64 = shape.Zip64End;
    const std::string end64 = "PK\x06\x06" + Eight(44) + Two(45) + Two(45) + Eight(0) + Eight(records) +
                              Eight(records) + Eight(size) + Eight(offset) + "PK\x06\x07" + Four(0) +
                              Eight(offset + size) + Four(1);
    const std::string count = Two(is64 ? UINT16_MAX : records);
    return (is64 ? end64 : "") + "PK\x05\x06" + Two(shape.Volume) + Two(shape.Volume) + count + count +
           Four(is64 ? UINT32_MAX : size) + Four(is64 ? UINT32_MAX : offset) + Two(shape.Comment.size()) +
           shape.Comment;
}

}  // namespace

ZipItem OrdinaryItem(const std::wstring& name, const std::string& content) {
    ZipItem item{.Name = ToUtf8(name), .Content = content, .Deflate = !content.empty(), .Flags = Utf8Names};
    std::ranges::replace(item.Name, '\\', '/');
    return item;
}

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

void WriteZipOfEmptyFiles(std::ostream& zip, std::size_t count, bool zip64End) {
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
    zip << End({.Zip64End = zip64End}, count, count * entry.size(), count * record.size());
}

std::string ExtraField(std::uint16_t kind, const std::string& content) {
    return Two(kind) + Two(content.size()) + content;
}

std::string LittleEndian(std::uint32_t value) {
    return Four(value);
}

std::uint32_t Checksum(const std::string& bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

}  // namespace mip
