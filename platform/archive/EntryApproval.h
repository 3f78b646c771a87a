#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace mip {

class ArchiveBytes;
class ArchiveSystem;
class Pacer;

/// The entries that may be extracted, as the archive's directory declares them. Names are kept as hashes, so that
/// memory does not grow with their length.
class ApprovedEntries {
  public:
    /// Reads the directory to its end and writes nothing. Throws BadArchive when a name is hostile or comes twice (case
    /// does not tell names apart), or when an entry is a link, encrypted, packed by an unknown method, larger than its
    /// packed bytes can yield, or shares them with another.
    ApprovedEntries(ArchiveBytes& archive, ArchiveSystem& system, Pacer& pacer);

    /// Takes an entry out. False when the name is not among the approved ones or was taken before.
    bool Take(const std::wstring& name);
    /// True when every entry was taken.
    bool Empty() const { return left_ == 0; }
    std::uint64_t Files() const { return files_; }
    /// The sum of the files' declared sizes, in bytes.
    std::uint64_t TotalSize() const { return totalSize_; }

  private:
    std::uint64_t Hash(const std::wstring& name) const;

    ArchiveSystem& system_;
    std::vector<std::uint64_t> hashes_;  ///< sorted
    std::vector<bool> taken_;
    std::size_t left_ = 0;
    std::uint64_t files_ = 0;
    std::uint64_t totalSize_ = 0;
};

}  // namespace mip
