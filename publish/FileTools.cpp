#include "publish/FileTools.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <system_error>

#include "publish/PathText.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t BlockSize = 256 * 1024;

fs::file_time_type FileTimeOf(DateTime time) {
    return std::chrono::file_clock::from_sys(std::chrono::sys_seconds(time.time_since_epoch()));
}

}  // namespace

FileBytes::FileBytes(const fs::path& file) : path_(file), stream_(file, std::ios::binary), block_(BlockSize) {
    if (!stream_) {
        throw std::runtime_error("cannot read " + Utf8Of(file));
    }
}

std::span<const char> FileBytes::Next() {
    stream_.read(block_.data(), static_cast<std::streamsize>(block_.size()));
    if (stream_.bad()) {
        throw std::runtime_error("cannot read " + Utf8Of(path_));
    }
    return {block_.data(), static_cast<std::size_t>(stream_.gcount())};
}

bool HoldsBytes(const fs::path& file, const NextBytes& next) {
    FileBytes bytes(file);
    std::span<const char> left;
    for (std::span<const char> piece = next(); !piece.empty(); piece = next()) {
        while (!piece.empty()) {
            left = left.empty() ? bytes.Next() : left;
            const std::size_t size = std::min(left.size(), piece.size());
            if (size == 0 || !std::ranges::equal(left.first(size), piece.first(size))) {
                return false;
            }
            left = left.subspan(size);
            piece = piece.subspan(size);
        }
    }
    return left.empty() && bytes.Next().empty();
}

std::string ReadWhole(const fs::path& file) {
    FileBytes bytes(file);
    std::string whole;
    for (std::span<const char> piece = bytes.Next(); !piece.empty(); piece = bytes.Next()) {
        whole.append(piece.begin(), piece.end());
    }
    return whole;
}

void WriteWhole(const fs::path& file, const std::string& bytes, DateTime time) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + Utf8Of(file));
    }
    SetTime(file, time);
}

void SetTime(const fs::path& file, DateTime time) {
    fs::last_write_time(file, FileTimeOf(time));
}

void CopyWithTime(const fs::path& source, const fs::path& destination, DateTime time) {
    fs::create_directories(destination.parent_path());
    fs::copy_file(source, destination);
    SetTime(destination, time);
}

void CopyTree(const fs::path& source, const fs::path& destination) {
    fs::create_directories(destination);
    for (const fs::directory_entry& entry : fs::directory_iterator(source)) {
        const fs::path copy = destination / entry.path().filename();
        if (entry.is_directory()) {
            CopyTree(entry.path(), copy);
        } else {
            fs::copy_file(entry.path(), copy);
            fs::last_write_time(copy, entry.last_write_time());
        }
    }
}

void SetFolderTimes(const fs::path& root, DateTime time) {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_directory()) {
            fs::last_write_time(entry.path(), FileTimeOf(time), ignored);
        }
    }
    fs::last_write_time(root, FileTimeOf(time), ignored);
}

}  // namespace mip
