#include "platform/archive/EntryApproval.h"

#include <algorithm>

#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/BadArchive.h"
#include "platform/archive/EntryName.h"
#include "platform/archive/Pacer.h"
#include "platform/archive/ZipDirectory.h"

namespace mip {

namespace {

// The reading library holds about 120 bytes of every entry; this keeps the whole extraction below 32 MiB.
constexpr std::uint64_t MaximumEntries = 200'000;
constexpr std::uint64_t MaximumDirectory = 256ULL * 1024 * 1024;
constexpr std::uint64_t MaximumTotal = 1ULL << 50U;
constexpr std::uint64_t MaximumDeflateRatio = 1032;  // what deflate yields at best
constexpr unsigned Utf8CodePage = 65001;
constexpr std::uint16_t EncryptionFlags = 1U << 0U | 1U << 6U | 1U << 13U;
constexpr std::uint16_t Stored = 0;
constexpr std::uint16_t Deflated = 8;
constexpr std::uint64_t LocalHeaderSize = 30;

/// Anything but a regular file or a folder: links, devices, reparse points.
bool IsSpecial(const ZipRecord& record) {
    constexpr std::uint8_t Unix = 3;
    constexpr std::uint8_t Darwin = 19;
    constexpr std::uint32_t ReparsePoint = 0x400;
    if (record.Host != Unix && record.Host != Darwin) {
        return (record.Attributes & ReparsePoint) != 0;
    }
    const std::uint32_t type = record.Attributes >> 16U & 0170000U;
    return type != 0 && type != 0100000U && type != 0040000U;
}

/// False for a size that the packed bytes cannot give.
bool IsPossibleSize(const ZipRecord& record) {
    switch (record.Method) {
        case Stored:
            return record.Size == record.CompressedSize;
        case Deflated:
            return record.Size / MaximumDeflateRatio <= record.CompressedSize;
        default:
            return false;
    }
}

std::wstring NameOf(const ZipRecord& record, ArchiveSystem& system) {
    const auto name = system.Decode(record.Name, record.NameIsUtf8 ? Utf8CodePage : system.NameCodePage());
    if (!name) {
        throw BadArchive("decoding an entry's name");
    }
    return *name;
}

bool IsFolderName(const std::wstring& name) {
    return name.ends_with(L'/') || name.ends_with(L'\\');
}

}  // namespace

ApprovedEntries::ApprovedEntries(ArchiveBytes& archive, ArchiveSystem& system, Pacer& pacer) : system_(system) {
    const ZipDirectory directory = FindZipDirectory(archive);
    if (directory.Records > MaximumEntries || directory.Size > MaximumDirectory) {
        throw BadArchive("counting the archive's entries");
    }
    hashes_.reserve(static_cast<std::size_t>(directory.Records));
    std::uint64_t packed = 0;
    VisitZipRecords(archive, directory, [&](const ZipRecord& record) {
        const std::wstring name = NameOf(record, system);
        const std::wstring path = CheckedEntryName(name);
        packed += record.CompressedSize + LocalHeaderSize;
        totalSize_ += record.Size;
        if ((record.Flags & EncryptionFlags) != 0 || IsSpecial(record) || !IsPossibleSize(record) ||
            record.CompressedSize > directory.Offset || packed > directory.Offset || record.Size > MaximumTotal ||
            totalSize_ > MaximumTotal || hashes_.size() == MaximumEntries) {
            throw BadArchive("checking an entry's record", path);
        }
        if (IsFolderName(name) && record.Size != 0) {
            throw BadArchive("checking a folder's record", path);
        }
        files_ += IsFolderName(name) ? 0 : 1;
        hashes_.push_back(Hash(path));
        pacer.Tick();
    });
    std::ranges::sort(hashes_);
    if (std::ranges::adjacent_find(hashes_) != hashes_.end()) {
        throw BadArchive("telling the entries' names apart");
    }
    left_ = hashes_.size();
    taken_.resize(left_);
}

bool ApprovedEntries::Take(const std::wstring& name) {
    const std::uint64_t hash = Hash(name);
    const auto found = std::ranges::lower_bound(hashes_, hash);
    if (found == hashes_.end() || *found != hash || taken_[static_cast<std::size_t>(found - hashes_.begin())]) {
        return false;
    }
    taken_[static_cast<std::size_t>(found - hashes_.begin())] = true;
    --left_;
    return true;
}

/// FNV-1a. Two names of one hash would only make the archive be refused.
std::uint64_t ApprovedEntries::Hash(const std::wstring& name) const {
    constexpr std::uint64_t Prime = 1099511628211ULL;
    std::uint64_t hash = 14695981039346656037ULL;
    for (const wchar_t character : system_.FoldCase(name)) {
        hash = (hash ^ static_cast<std::uint64_t>(character)) * Prime;
    }
    return hash;
}

}  // namespace mip
