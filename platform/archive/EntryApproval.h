#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Archives.h"

namespace mip {

class ArchiveBytes;
class ArchiveSystem;
class Pacer;
struct ZipDirectory;
struct ZipRecord;

enum class EntryKind { File, Folder };

/// The entries that may be extracted, as the archive's directory declares them. Names are kept as hashes, so that
/// memory does not grow with their length.
class ApprovedEntries {
  public:
    /// Reads the directory to its end, twice, and writes nothing. Throws BadArchive when there is no entry, when a name
    /// is hostile, comes twice or is a file and the folder of another entry, too (case does not tell names apart), or
    /// when an entry is a link, encrypted, packed by an unknown method, larger than its packed bytes can yield, or
    /// shares them with another.
    ApprovedEntries(ArchiveBytes& archive, ArchiveSystem& system, Pacer& pacer);

    /// Takes an entry out and tells as what it was approved. Nothing when the name is not among the approved ones or
    /// was taken before.
    std::optional<EntryKind> Take(const std::wstring& name);
    /// True when every entry was taken.
    bool Empty() const { return left_ == 0; }
    const ArchiveFacts& Facts() const { return facts_; }
    /// The sum of the files' declared sizes, in bytes.
    std::uint64_t TotalSize() const { return totalSize_; }

  private:
    class TopLevelFolders;

    void Add(const ZipRecord& record, const ZipDirectory& directory, TopLevelFolders& folders);
    void RefuseDoubleNames();
    bool IsBelowAFile(const std::wstring& path) const;
    std::vector<std::uint64_t>::const_iterator Find(std::uint64_t hash) const;
    std::uint64_t Hash(const std::wstring& name) const;

    ArchiveSystem& system_;
    std::vector<std::uint64_t> entries_;  ///< sorted: the name's hash, whose lowest bit tells a folder
    std::vector<bool> taken_;
    std::size_t left_ = 0;
    ArchiveFacts facts_;
    std::uint64_t packedSize_ = 0;
    std::uint64_t totalSize_ = 0;
};

}  // namespace mip
