#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "text/DateTime.h"

namespace mip {

/// Gives the next piece of some bytes, empty at their end.
using NextBytes = std::function<std::span<const char>()>;

/// A file's bytes, piece by piece. Throws std::runtime_error when it cannot be read.
class FileBytes {
  public:
    explicit FileBytes(const std::filesystem::path& file);

    std::span<const char> Next();

  private:
    std::filesystem::path path_;
    std::ifstream stream_;
    std::vector<char> block_;
};

/// True when a file holds exactly these bytes.
bool HoldsBytes(const std::filesystem::path& file, const NextBytes& next);
std::string ReadWhole(const std::filesystem::path& file);
/// Creates or replaces a file, with its folder where needed, that has this time. All throw std::runtime_error.
void WriteWhole(const std::filesystem::path& file, const std::string& bytes, DateTime time);
void SetTime(const std::filesystem::path& file, DateTime time);
void CopyWithTime(const std::filesystem::path& source, const std::filesystem::path& destination, DateTime time);
/// Copies a folder and all below it; files keep their times.
void CopyTree(const std::filesystem::path& source, const std::filesystem::path& destination);
/// Gives all folders of a tree this time, where the system can do that.
void SetFolderTimes(const std::filesystem::path& root, DateTime time);

}  // namespace mip
