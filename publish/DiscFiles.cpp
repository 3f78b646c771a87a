#include "publish/DiscFiles.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "platform/PlatformError.h"
#include "publish/PathText.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view Drive = L"D:";
constexpr std::uint32_t WriteProtected = 19;
constexpr std::uint32_t ReadFault = 30;
constexpr std::size_t BlockSize = 256 * 1024;
constexpr char SqliteHeader[] = "SQLite format 3";  // and its NUL

[[noreturn]] void RefuseToWrite(const std::wstring& path) {
    throw PlatformError("writing to a disc", path, WriteProtected);
}

/// The entry of a folder that has this name but for case; nothing when there is none.
std::optional<fs::path> FindIgnoringCase(const fs::path& folder, const std::wstring& name) {
    std::error_code error;
    const std::wstring wanted = ToUpper(name);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        if (ToUpper(TextOf(entry.path().filename())) == wanted) {
            return entry.path();
        }
    }
    return std::nullopt;
}

std::ifstream Open(const fs::path& file, const std::wstring& path) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw PlatformError("opening a file", path, errors::AccessDenied);
    }
    return stream;
}

FileTime ModifiedOf(const fs::path& file) {
    const auto time = std::chrono::file_clock::to_sys(fs::last_write_time(file));
    return std::chrono::floor<FileTime::duration>(time);
}

}  // namespace

std::optional<fs::path> DiscFolder::Find(const std::wstring& path) const {
    if (ToUpper(path.substr(0, Drive.size())) != Drive) {
        return std::nullopt;
    }
    fs::path place = root_;
    for (const std::wstring& part : Split(path.substr(Drive.size()), L'\\')) {
        std::error_code error;
        if (part.empty()) {
            continue;
        }
        const fs::path exact = place / PathOf(part);
        const auto found = fs::exists(exact, error) ? exact : FindIgnoringCase(place, part);
        if (!found) {
            return std::nullopt;
        }
        place = *found;
    }
    return place;
}

fs::path DiscFiles::FileAt(const std::wstring& path) const {
    const auto file = disc_.Find(path);
    if (!file || !fs::is_regular_file(*file)) {
        throw PlatformError("opening a file", path, errors::FileNotFound);
    }
    return *file;
}

bool DiscFiles::Exists(const std::wstring& path) {
    std::error_code error;
    const auto file = disc_.Find(path);
    return path == EmptyCatalogue || (file && fs::is_regular_file(*file, error));
}

FileStatus DiscFiles::Status(const std::wstring& path) {
    const fs::path file = FileAt(path);
    return {fs::file_size(file), ModifiedOf(file), attributes::ReadOnly};
}

std::string DiscFiles::Read(const std::wstring& path, std::uint64_t limit) {
    if (path == EmptyCatalogue) {
        return {SqliteHeader, sizeof(SqliteHeader)};
    }
    const fs::path file = FileAt(path);
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(fs::file_size(file), limit)), '\0');
    std::ifstream stream = Open(file, path);
    if (!stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        throw PlatformError("reading a file", path, ReadFault);
    }
    return bytes;
}

void DiscFiles::ReadThrough(const std::wstring& path) {
    std::ifstream stream = Open(FileAt(path), path);
    std::vector<char> block(BlockSize);
    while (stream.read(block.data(), static_cast<std::streamsize>(block.size()))) {
    }
    if (!stream.eof()) {
        throw PlatformError("reading a file", path, ReadFault);
    }
}

void DiscFiles::SetAttributes(const std::wstring& path, std::uint32_t) {
    RefuseToWrite(path);
}
void DiscFiles::CopyToNew(const std::wstring&, const std::wstring& destination) {
    RefuseToWrite(destination);
}
void DiscFiles::CopyAllToNew(const std::wstring&, const std::vector<std::wstring>&, const std::wstring& destination,
                             const Copied&) {
    RefuseToWrite(destination);
}
void DiscFiles::Move(const std::wstring& source, const std::wstring&) {
    RefuseToWrite(source);
}
void DiscFiles::Remove(const std::wstring& path) {
    RefuseToWrite(path);
}
void DiscFiles::Write(const std::wstring& path, const std::string&) {
    RefuseToWrite(path);
}
void DiscFiles::Append(const std::wstring& path, const std::string&) {
    RefuseToWrite(path);
}

bool DiscFolders::Exists(const std::wstring& folder) {
    std::error_code error;
    const auto place = disc_.Find(folder);
    return place && fs::is_directory(*place, error);
}

bool DiscFolders::IsLink(const std::wstring& folder) {
    std::error_code error;
    const auto place = disc_.Find(folder);
    return place && fs::is_symlink(*place, error);
}

void DiscFolders::Create(const std::wstring& folder) {
    RefuseToWrite(folder);
}

void DiscFolders::Move(const std::wstring& source, const std::wstring&) {
    RefuseToWrite(source);
}
void DiscFolders::Remove(const std::wstring& folder) {
    RefuseToWrite(folder);
}

FolderListing DiscFolders::List(const std::wstring& folder) {
    const auto place = disc_.Find(folder);
    if (!place || !fs::is_directory(*place)) {
        throw PlatformError("listing a folder", folder, errors::PathNotFound);
    }
    FolderListing listing;
    for (const fs::directory_entry& entry : fs::directory_iterator(*place)) {
        auto& names = entry.is_symlink() ? listing.Links : entry.is_directory() ? listing.Subfolders : listing.Files;
        names.push_back(TextOf(entry.path().filename()));
    }
    for (auto* names : {&listing.Subfolders, &listing.Files, &listing.Links}) {
        std::ranges::sort(*names);
    }
    return listing;
}

}  // namespace mip
