#include "platform/windows/WindowsArchiveSystem.h"

#include <algorithm>

#include "platform/windows/Handle.h"
#include "platform/windows/LastError.h"
#include "platform/windows/LongPath.h"
#include "platform/windows/NewFile.h"

namespace mip {

namespace {

constexpr std::size_t LargestPiece = 0x4000'0000;  // well inside the DWORD that the calls count in

DWORD PieceSize(std::size_t size) {
    return static_cast<DWORD>(std::min(size, LargestPiece));
}

class WindowsArchiveBytes : public ArchiveBytes {
  public:
    explicit WindowsArchiveBytes(const std::wstring& path)
        : path_(path),
          file_(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {
        if (!file_) {
            ThrowLastError("CreateFile", path_);
        }
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(file_.Get(), &size)) {
            ThrowLastError("GetFileSizeEx", path_);
        }
        size_ = static_cast<std::uint64_t>(size.QuadPart);
    }

    std::uint64_t Size() override { return size_; }

    std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) override {
        LARGE_INTEGER place{};
        place.QuadPart = static_cast<LONGLONG>(offset);
        if (!SetFilePointerEx(file_.Get(), place, nullptr, FILE_BEGIN)) {
            ThrowLastError("SetFilePointerEx", path_);
        }
        std::size_t done = 0;
        while (done < buffer.size()) {
            DWORD read = 0;
            if (!ReadFile(file_.Get(), buffer.data() + done, PieceSize(buffer.size() - done), &read, nullptr)) {
                ThrowLastError("ReadFile", path_);
            }
            if (read == 0) {
                break;
            }
            done += read;
        }
        return done;
    }

  private:
    std::wstring path_;
    FileHandle file_;
    std::uint64_t size_ = 0;
};

class WindowsExtractedFile : public ExtractedFile {
  public:
    explicit WindowsExtractedFile(const std::wstring& path) : file_(path, NewFile::Existing::Replace) {}

    void Write(std::span<const char> bytes) override { file_.Write(bytes); }
    void Finish(const std::optional<FileTime>& modified) override { file_.Finish(modified); }

  private:
    NewFile file_;
};

}  // namespace

WindowsArchiveSystem::WindowsArchiveSystem(unsigned nameCodePage)
    : nameCodePage_(nameCodePage != 0 ? nameCodePage : GetOEMCP()) {}

std::unique_ptr<ArchiveBytes> WindowsArchiveSystem::OpenArchive(const std::wstring& path) {
    return std::make_unique<WindowsArchiveBytes>(path);
}

void WindowsArchiveSystem::CreateFolder(const std::wstring& folder) {
    const std::wstring path = LongPath(folder);
    if (CreateDirectoryW(path.c_str(), nullptr)) {
        return;
    }
    const DWORD code = GetLastError();
    const DWORD found = code == ERROR_PATH_NOT_FOUND ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(path.c_str());
    if (found == INVALID_FILE_ATTRIBUTES || (found & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        throw PlatformError("CreateDirectory", folder, code);
    }
}

std::unique_ptr<ExtractedFile> WindowsArchiveSystem::CreateNewFile(const std::wstring& path) {
    return std::make_unique<WindowsExtractedFile>(path);
}

std::uint64_t WindowsArchiveSystem::FreeBytes(const std::wstring& folder) {
    ULARGE_INTEGER available{};
    if (!GetDiskFreeSpaceExW(LongPath(folder).c_str(), &available, nullptr, nullptr)) {
        ThrowLastError("GetDiskFreeSpaceEx", folder);
    }
    return available.QuadPart;
}

std::optional<std::wstring> WindowsArchiveSystem::Decode(std::string_view bytes, unsigned codePage) {
    if (bytes.empty()) {
        return std::wstring();
    }
    std::wstring text(bytes.size(), L'\0');  // no code page gives more units than it has bytes
    const int length = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()),
                                           text.data(), static_cast<int>(text.size()));
    if (length == 0) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::wstring WindowsArchiveSystem::FoldCase(std::wstring name) {
    const std::wstring source = name;
    LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, source.data(), static_cast<int>(source.size()), name.data(),
                 static_cast<int>(name.size()));
    return name;
}

}  // namespace mip
