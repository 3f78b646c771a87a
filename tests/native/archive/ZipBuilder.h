#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace mip {

/// One entry as it is to stand in a ZIP file. What is not said is what an ordinary packer would write; everything can
/// be said wrongly.
struct ZipItem {
    std::string Name = {};
    std::string Content = {};
    bool Deflate = true;
    bool Zip64 = false;
    bool SizesFollowData = false;
    std::uint16_t Flags = 0;
    std::uint8_t Host = 0;
    std::uint32_t Attributes = 0;
    std::uint32_t DosTime = 0x58A6'38E4;  ///< 2024-05-06 07:07:08
    std::string Extra = {};
    std::optional<std::string> LocalName = {};
    std::optional<std::uint16_t> Method = {};
    std::optional<std::uint32_t> Crc = {};
    std::optional<std::uint64_t> Size = {};
    std::optional<std::uint16_t> LocalFlags = {};
    std::optional<std::uint64_t> LocalOffset = {};
    std::optional<std::uint64_t> PackedSize = {};
    std::string Comment = {};
};

/// The archive's end, and what surrounds its records.
struct ZipShape {
    bool Zip64End = false;
    std::string Before = {};
    std::string Comment = {};
    std::optional<std::uint64_t> Records = {};
    std::uint16_t Volume = 0;
};

constexpr std::uint16_t Utf8Names = 1U << 11U;
constexpr std::uint8_t UnixHost = 3;

/// What an ordinary packer makes of a file, or of a folder whose name ends in a backslash.
ZipItem OrdinaryItem(const std::wstring& name, const std::string& content);
std::string BuildZip(const std::vector<ZipItem>& items, const ZipShape& shape = {});
/// `count` empty files "00000000", "00000001", ..., with ZIP64 end records or without.
void WriteZipOfEmptyFiles(std::ostream& zip, std::size_t count, bool zip64End = true);
/// A field of a record's extra data.
std::string ExtraField(std::uint16_t kind, const std::string& content);
std::string LittleEndian(std::uint32_t value);
std::uint32_t Checksum(const std::string& bytes);

}  // namespace mip
