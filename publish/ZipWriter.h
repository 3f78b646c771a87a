#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "text/DateTime.h"

namespace mip {

/// Writes a ZIP file (PKWARE's APPNOTE.TXT, without ZIP64): deflated entries with one time, sizes and checksums before
/// the data. The same files give the same bytes. Every operation throws std::runtime_error.
class ZipWriter {
  public:
    ZipWriter(const std::filesystem::path& file, DateTime time);

    /// Adds a file; `name` has slashes between its parts.
    void Add(const std::wstring& name, const std::filesystem::path& source);
    /// Writes the directory and closes.
    void Finish();

  private:
    struct Entry {
        std::string Name;
        std::uint64_t Offset = 0;
        std::uint64_t Size = 0;
        std::uint64_t PackedSize = 0;
        std::uint32_t Checksum = 0;
    };

    std::string HeaderOf(const Entry& entry) const;
    void Deflate(Entry& entry, const std::filesystem::path& source);
    void Write(std::string_view bytes);

    std::filesystem::path path_;
    std::ofstream stream_;
    std::uint64_t position_ = 0;
    std::uint32_t time_;
    std::vector<Entry> entries_;
};

}  // namespace mip
