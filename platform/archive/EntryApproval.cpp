#include "platform/archive/EntryApproval.h"

#include <algorithm>

#include "platform/Clusters.h"
#include "platform/Pacer.h"
#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/BadArchive.h"
#include "platform/archive/EntryName.h"
#include "platform/archive/ZipDirectory.h"

namespace mip {

namespace {

// The reading library holds about 120 bytes of every entry; this keeps the whole extraction below 32 MiB.
constexpr std::uint64_t MaximumEntries = 200'000;
constexpr std::uint64_t MaximumDirectory = 256ULL * 1024 * 1024;
constexpr std::uint64_t MaximumDeflateRatio = 1032;  // what deflate yields at best
constexpr unsigned Utf8CodePage = 65001;
constexpr std::uint16_t EncryptionFlags = 1U << 0U | 1U << 6U | 1U << 13U;
constexpr std::uint16_t Stored = 0;
constexpr std::uint16_t Deflated = 8;
constexpr std::uint64_t LocalHeaderSize = 30;
constexpr std::uint8_t FatHost = 0;
constexpr std::uint8_t UnixHost = 3;
constexpr std::uint8_t DarwinHost = 19;
constexpr std::uint32_t UnixFile = 0100000U;
constexpr std::uint32_t UnixFolder = 0040000U;
constexpr std::uint64_t FolderBit = 1;

std::uint32_t UnixType(const ZipRecord& record) {
    return record.Attributes >> 16U & 0170000U;
}

/// Anything but a regular file or a folder: links, devices, reparse points.
bool IsSpecial(const ZipRecord& record) {
    constexpr std::uint32_t ReparsePoint = 0x400;
    if (record.Host != UnixHost && record.Host != DarwinHost) {
        return (record.Attributes & ReparsePoint) != 0;
    }
    const std::uint32_t type = UnixType(record);
    return type != 0 && type != UnixFile && type != UnixFolder;
}

/// By its name, or by its attributes where the reading library goes by them, too.
bool IsFolder(const ZipRecord& record, const std::wstring& name) {
    constexpr std::uint32_t FatFolder = 0x10;
    return name.ends_with(L'/') || name.ends_with(L'\\') ||
           (record.Host == FatHost && (record.Attributes & FatFolder) != 0) ||
           (record.Host == UnixHost && UnixType(record) == UnixFolder);
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

/// FNV-1a, character by character, so that a path's hash passes through those of the folders above it. Two names of
/// one hash would only make the archive be refused.
constexpr std::uint64_t EmptyHash = 14695981039346656037ULL;

std::uint64_t AddToHash(std::uint64_t hash, wchar_t character) {
    constexpr std::uint64_t Prime = 1099511628211ULL;
    return (hash ^ static_cast<std::uint64_t>(character)) * Prime;
}

void AddOnce(std::vector<std::uint64_t>& hashes, std::uint64_t hash) {
    if (hashes.empty() || hashes.back() != hash) {
        hashes.push_back(hash);
    }
}

void SortOut(std::vector<std::uint64_t>& hashes) {
    std::ranges::sort(hashes);
    hashes.erase(std::unique(hashes.begin(), hashes.end()), hashes.end());
}

}  // namespace

/// Which top-level folders there are, and which of them hold a file.
class ApprovedEntries::TopLevelFolders {
  public:
    void Add(const std::wstring& name, std::uint64_t hash, EntryKind below, bool isFolder) {
        if (!isFolder) {
            besideFolders_ = true;
            return;
        }
        if (all_.empty()) {
            first_ = name;
        }
        AddOnce(all_, hash);
        if (below == EntryKind::File) {
            AddOnce(filled_, hash);
        }
    }
    bool HoldManual() {
        SortOut(all_);
        SortOut(filled_);
        return !all_.empty() && all_ == filled_;
    }
    /// After HoldManual.
    std::wstring Only() const { return all_.size() == 1 && !besideFolders_ ? first_ : L""; }

  private:
    std::wstring first_;
    bool besideFolders_ = false;  ///< there is a file that lies in none
    std::vector<std::uint64_t> all_;
    std::vector<std::uint64_t> filled_;
};

ApprovedEntries::ApprovedEntries(ArchiveBytes& archive, ArchiveSystem& system, Pacer& pacer) : system_(system) {
    const ZipDirectory directory = FindZipDirectory(archive);
    if (directory.Records > MaximumEntries || directory.Size > MaximumDirectory) {
        throw BadArchive("counting the archive's entries");
    }
    entries_.reserve(static_cast<std::size_t>(directory.Records));
    TopLevelFolders folders;
    VisitZipRecords(archive, directory, [&](const ZipRecord& record) {
        Add(record, directory, folders);
        pacer.Tick();
    });
    if (entries_.empty()) {
        throw BadArchive("counting the archive's entries");
    }
    facts_.HoldsManual = folders.HoldManual();
    facts_.OnlyFolder = folders.Only();
    RefuseDoubleNames();
    VisitZipRecords(archive, directory, [&](const ZipRecord& record) {
        const std::wstring path = CheckedEntryName(NameOf(record, system_));
        if (IsBelowAFile(path)) {
            throw BadArchive("making a folder of a file", path);
        }
        pacer.Tick();
    });
    left_ = entries_.size();
    taken_.resize(left_);
}

void ApprovedEntries::Add(const ZipRecord& record, const ZipDirectory& directory, TopLevelFolders& folders) {
    const std::wstring name = NameOf(record, system_);
    const std::wstring path = CheckedEntryName(name);
    packedSize_ += record.CompressedSize + LocalHeaderSize;
    totalSize_ += record.Size;
    if ((record.Flags & EncryptionFlags) != 0 || IsSpecial(record) || !IsPossibleSize(record) ||
        record.CompressedSize > directory.Offset || packedSize_ > directory.Offset ||
        entries_.size() == MaximumEntries) {
        throw BadArchive("checking an entry's record", path);
    }
    const EntryKind kind = IsFolder(record, name) ? EntryKind::Folder : EntryKind::File;
    if (kind == EntryKind::Folder && record.Size != 0) {
        throw BadArchive("checking a folder's record", path);
    }
    if (kind == EntryKind::File) {
        ++facts_.Files;
        facts_.BytesOnDrive += SizeInClusters(record.Size);
    }
    const std::wstring top = path.substr(0, path.find(L'\\'));
    folders.Add(top, Hash(top), kind, kind == EntryKind::Folder || top != path);
    entries_.push_back(Hash(path) | (kind == EntryKind::Folder ? FolderBit : 0));
}

void ApprovedEntries::RefuseDoubleNames() {
    std::ranges::sort(entries_);
    const auto isSameName = [](std::uint64_t left, std::uint64_t right) { return (left ^ right) <= FolderBit; };
    if (std::ranges::adjacent_find(entries_, isSameName) != entries_.end()) {
        throw BadArchive("telling the entries' names apart");
    }
}

bool ApprovedEntries::IsBelowAFile(const std::wstring& path) const {
    std::uint64_t hash = EmptyHash;
    for (const wchar_t character : system_.FoldCase(path)) {
        if (character == L'\\') {
            const auto folder = Find(hash & ~FolderBit);
            if (folder != entries_.end() && (*folder & FolderBit) == 0) {
                return true;
            }
        }
        hash = AddToHash(hash, character);
    }
    return false;
}

std::optional<EntryKind> ApprovedEntries::Take(const std::wstring& name) {
    const auto found = Find(Hash(name));
    const auto place = static_cast<std::size_t>(found - entries_.begin());
    if (found == entries_.end() || taken_[place]) {
        return std::nullopt;
    }
    taken_[place] = true;
    --left_;
    return (*found & FolderBit) != 0 ? EntryKind::Folder : EntryKind::File;
}

/// `hash` without the folder bit.
std::vector<std::uint64_t>::const_iterator ApprovedEntries::Find(std::uint64_t hash) const {
    const auto found = std::ranges::lower_bound(entries_, hash);
    return found != entries_.end() && (*found & ~FolderBit) == hash ? found : entries_.end();
}

std::uint64_t ApprovedEntries::Hash(const std::wstring& name) const {
    std::uint64_t hash = EmptyHash;
    for (const wchar_t character : system_.FoldCase(name)) {
        hash = AddToHash(hash, character);
    }
    return hash & ~FolderBit;
}

}  // namespace mip
