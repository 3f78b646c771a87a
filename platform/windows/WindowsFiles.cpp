#include "platform/windows/WindowsFiles.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/Pacer.h"
#include "platform/windows/FileTimes.h"
#include "platform/windows/LastError.h"
#include "platform/windows/LongPath.h"
#include "platform/windows/WindowsClock.h"
#include "threads/WorkBehind.h"

namespace mip {

namespace {

constexpr std::size_t CopyBufferSize = 512 * 1024;
constexpr std::size_t ManyFiles = 4;
constexpr std::uint64_t LargestPiece = 0x1000'0000;  // well inside the DWORD that the calls count in
constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

FileHandle OpenFile(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition, DWORD flags = 0) {
    FileHandle file(CreateFileW(LongPath(path).c_str(), access, sharing, nullptr, disposition, flags, nullptr));
    if (!file) {
        ThrowLastError("CreateFile", path);
    }
    return file;
}

DWORD ReadSome(const FileHandle& file, char* buffer, std::uint64_t size, const std::wstring& path) {
    DWORD read = 0;
    if (!ReadFile(file.Get(), buffer, static_cast<DWORD>(std::min(size, LargestPiece)), &read, nullptr)) {
        ThrowLastError("ReadFile", path);
    }
    return read;
}

void WriteAll(const FileHandle& file, std::string_view bytes, const std::wstring& path) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min<std::uint64_t>(bytes.size(), LargestPiece));
        if (!WriteFile(file.Get(), bytes.data(), piece, &written, nullptr)) {
            ThrowLastError("WriteFile", path);
        }
        bytes.remove_prefix(written);
    }
}

FileTime ModifiedTimeOf(const FileHandle& file, const std::wstring& path) {
    FILETIME modified{};
    if (!GetFileTime(file.Get(), nullptr, nullptr, &modified)) {
        ThrowLastError("GetFileTime", path);
    }
    return FromSystemTime(modified);
}

FileHandle OpenSource(const std::wstring& path) {
    return OpenFile(path, GENERIC_READ, ShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
}

/// Brings a file's bytes to the disk: a rename may get there before them, and after a crash the name would stand for
/// nothing. A file that cannot be opened for writing was not just written.
void FlushContent(const std::wstring& path) {
    const FileHandle file(
        CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file && !FlushFileBuffers(file.Get())) {
        ThrowLastError("FlushFileBuffers", path);
    }
}

DWORD AttributesOf(const std::wstring& path) {
    return GetFileAttributesW(LongPath(path).c_str());
}

/// Whether a reparse point stands for another object. Others (files kept compressed or in the cloud) are the object.
/// One whose kind the file system does not tell may lead anywhere.
bool IsLinkEntry(const WIN32_FIND_DATAW& found) {
    const DWORD kind = found.dwReserved0;
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (kind == 0 || IsReparseTagNameSurrogate(kind));
}

}  // namespace

bool WindowsFiles::Exists(const std::wstring& path) {
    const DWORD found = AttributesOf(path);
    return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

FileStatus WindowsFiles::Status(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(LongPath(path).c_str(), GetFileExInfoStandard, &data)) {
        ThrowLastError("GetFileAttributesEx", path);
    }
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw PlatformError("GetFileAttributesEx", path, errors::AccessDenied);
    }
    return {std::uint64_t{data.nFileSizeHigh} << 32U | data.nFileSizeLow, FromSystemTime(data.ftLastWriteTime),
            data.dwFileAttributes & ~attributes::Normal};
}

void WindowsFiles::SetAttributes(const std::wstring& path, std::uint32_t bits) {
    if (!SetFileAttributesW(LongPath(path).c_str(), bits == 0 ? attributes::Normal : bits)) {
        ThrowLastError("SetFileAttributes", path);
    }
}

void WindowsFiles::CopyToNew(const std::wstring& source, const std::wstring& destination) {
    const FileHandle from = OpenSource(source);
    NewFile to(destination, NewFile::Existing::Refuse);
    const std::size_t read = ReadPiece(from, source);
    CopyRest(from, source, read, to);
}

/// A small file is read by the caller's thread, one after the other as a disc likes it, and written behind.
void WindowsFiles::CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                                const std::wstring& destination, const Copied& copied) {
    const bool isWorthThreads = names.size() >= ManyFiles;
    WorkBehind writing(FileWriters, BytesBehind);
    for (const std::wstring& name : names) {
        const std::wstring from = source + L'\\' + name;
        const std::wstring to = destination + L'\\' + name;
        std::optional<SmallFile> file;
        const std::uint32_t code = CodeOf([&] {
            if (isWorthThreads) {
                file = ReadSmallOrCopy(from, to);
            } else {
                CopyToNew(from, to);
            }
        });
        if (!file) {
            copied(name, code);
            continue;
        }
        const std::size_t size = file->Bytes.size();
        const auto done = [&](const std::exception_ptr& failure) {
            copied(name, CodeOf([&] { RethrowWhen(failure); }));
        };
        writing.Add(
            size, [to, file = std::move(*file)] { WriteNew(to, file); }, done);
    }
    writing.Finish();
}

/// Reads a file that fits into the buffer; copies a larger one and gives nothing.
std::optional<WindowsFiles::SmallFile> WindowsFiles::ReadSmallOrCopy(const std::wstring& source,
                                                                     const std::wstring& destination) {
    const FileHandle from = OpenSource(source);
    const std::size_t read = ReadPiece(from, source);
    if (read < copyBuffer_.size()) {
        return SmallFile{std::string(copyBuffer_.data(), read), ModifiedTimeOf(from, source)};
    }
    NewFile to(destination, NewFile::Existing::Refuse);
    CopyRest(from, source, read, to);
    return std::nullopt;
}

void WindowsFiles::WriteNew(const std::wstring& path, const SmallFile& file) {
    NewFile copy(path, NewFile::Existing::Refuse);
    copy.Write(file.Bytes);
    copy.Finish(file.Modified);
}

std::size_t WindowsFiles::ReadPiece(const FileHandle& file, const std::wstring& path) {
    copyBuffer_.resize(CopyBufferSize);
    return ReadSome(file, copyBuffer_.data(), copyBuffer_.size(), path);
}

/// Writes the `read` bytes in the buffer and what follows them. A short read means the end of the file, so a small file
/// costs one read and one write.
void WindowsFiles::CopyRest(const FileHandle& from, const std::wstring& source, std::size_t read, NewFile& to) {
    to.Write({copyBuffer_.data(), read});
    while (read == copyBuffer_.size()) {
        read = ReadPiece(from, source);
        to.Write({copyBuffer_.data(), read});
    }
    to.Finish(ModifiedTimeOf(from, source));
}

void WindowsFiles::Move(const std::wstring& source, const std::wstring& destination) {
    FlushContent(source);
    if (!MoveFileExW(LongPath(source).c_str(), LongPath(destination).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        ThrowLastError("MoveFileEx", source);
    }
}

void WindowsFiles::Remove(const std::wstring& path) {
    if (!DeleteFileW(LongPath(path).c_str())) {
        ThrowLastError("DeleteFile", path);
    }
}

bool WindowsFiles::IsInUse(const std::wstring& path) {
    const FileHandle file(CreateFileW(LongPath(path).c_str(), DELETE, ShareAll, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

std::string WindowsFiles::Read(const std::wstring& path, std::uint64_t limit) {
    const FileHandle file = OpenSource(path);
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.Get(), &size)) {
        ThrowLastError("GetFileSizeEx", path);
    }
    std::string bytes(static_cast<std::size_t>(std::min(limit, static_cast<std::uint64_t>(size.QuadPart))), '\0');
    std::size_t done = 0;
    for (DWORD read = 1; done < bytes.size() && read > 0; done += read) {
        read = ReadSome(file, bytes.data() + done, bytes.size() - done, path);
    }
    bytes.resize(done);
    return bytes;
}

void WindowsFiles::ReadThrough(const std::wstring& path) {
    const FileHandle file = OpenSource(path);
    WindowsClock clock;
    Pacer pacer(clock);
    while (ReadPiece(file, path) > 0) {
        pacer.Tick();
    }
}

void WindowsFiles::Write(const std::wstring& path, const std::string& bytes) {
    // An existing file is opened and emptied: creating it anew is refused when it is hidden.
    const FileHandle file = OpenFile(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS);
    if (!SetEndOfFile(file.Get())) {
        ThrowLastError("SetEndOfFile", path);
    }
    WriteAll(file, bytes, path);
}

void WindowsFiles::Append(const std::wstring& path, const std::string& bytes) {
    const FileHandle file = OpenFile(path, FILE_APPEND_DATA, FILE_SHARE_READ, OPEN_ALWAYS);
    WriteAll(file, bytes, path);
}

bool WindowsFolders::Exists(const std::wstring& folder) {
    const DWORD found = AttributesOf(folder);
    return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool WindowsFolders::IsLink(const std::wstring& folder) {
    const std::wstring path = LongPath(folder.substr(0, folder.find_last_not_of(L'\\') + 1));
    const DWORD attributes = AttributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return false;
    }
    WIN32_FIND_DATAW found{};  // what kind of reparse point it is, only a search tells
    const FindHandle search(FindFirstFileW(path.c_str(), &found));
    return search && IsLinkEntry(found);
}

void WindowsFolders::Create(const std::wstring& folder) {
    if (!CreateDirectoryW(LongPath(folder).c_str(), nullptr)) {
        ThrowLastError("CreateDirectory", folder);
    }
}

void WindowsFolders::Move(const std::wstring& source, const std::wstring& destination) {
    if (!MoveFileExW(LongPath(source).c_str(), LongPath(destination).c_str(), MOVEFILE_WRITE_THROUGH)) {
        ThrowLastError("MoveFileEx", source);
    }
}

void WindowsFolders::Remove(const std::wstring& folder) {
    if (!RemoveDirectoryW(LongPath(folder).c_str())) {
        ThrowLastError("RemoveDirectory", folder);
    }
}

FolderListing WindowsFolders::List(const std::wstring& folder) {
    FolderListing listing;
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = LongPath(folder + (folder.ends_with(L'\\') ? L"*" : L"\\*"));
    const FindHandle search(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                             FIND_FIRST_EX_LARGE_FETCH));
    if (!search) {
        const DWORD code = GetLastError();
        if (code == ERROR_FILE_NOT_FOUND) {  // a drive's root with nothing in it
            return listing;
        }
        throw PlatformError("FindFirstFileEx", folder, code);
    }
    do {
        const std::wstring_view name = found.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        (IsLinkEntry(found) ? listing.Links : isFolder ? listing.Subfolders : listing.Files).emplace_back(name);
    } while (FindNextFileW(search.Get(), &found));
    const DWORD code = GetLastError();
    if (code != ERROR_NO_MORE_FILES) {
        throw PlatformError("FindNextFile", folder, code);
    }
    return listing;
}

}  // namespace mip
