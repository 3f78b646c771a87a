#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace mip {

class ArchiveBytes;

/// One record of a ZIP file's central directory (PKWARE's APPNOTE.TXT, 4.3.12).
struct ZipRecord {
    std::string Name;         ///< as stored, or the Unicode path field's content when there is one
    bool NameIsUtf8 = false;  ///< else it is in the code page of the computer that made the archive
    std::uint8_t Host = 0;    ///< the system whose attributes the record has: 0 FAT, 3 Unix, 10 and 11 Windows, 19 OS X
    std::uint32_t Attributes = 0;
    std::uint16_t Flags = 0;
    std::uint16_t Method = 0;
    std::uint64_t CompressedSize = 0;
    std::uint64_t Size = 0;
};

/// Where the directory is and what its end record says of it.
struct ZipDirectory {
    std::uint64_t Offset = 0;
    std::uint64_t Size = 0;
    std::uint64_t Records = 0;  ///< exact with ZIP64, else modulo 65536
    bool RecordsAreExact = false;
};

/// Reads the end record. Throws BadArchive when there is none, or when the archive is in several volumes, has data
/// before or after it, or when the directory does not reach from where the end record says up to that record.
ZipDirectory FindZipDirectory(ArchiveBytes& archive);
/// Visits every record in the directory's order, in one pass with a small buffer. Throws BadArchive when a record is
/// malformed or their number is not the declared one.
void VisitZipRecords(ArchiveBytes& archive, const ZipDirectory& directory,
                     const std::function<void(const ZipRecord&)>& visit);

}  // namespace mip
