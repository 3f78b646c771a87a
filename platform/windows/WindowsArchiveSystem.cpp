#include "platform/windows/WindowsArchiveSystem.h"

#include <algorithm>

#include "platform/windows/FileTimes.h"
#include "platform/windows/Handle.h"
#include "platform/windows/LastError.h"
#include "platform/windows/LongPath.h"

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
        std::size_t done = 0;
        while (done < buffer.size()) {
            const std::uint64_t place = offset + done;
            OVERLAPPED position{};
            position.Offset = static_cast<DWORD>(place);
            position.OffsetHigh = static_cast<DWORD>(place >> 32U);
            DWORD read = 0;
            if (!ReadFile(file_.Get(), buffer.data() + done, PieceSize(buffer.size() - done), &read, &position) &&
                GetLastError() != ERROR_HANDLE_EOF) {
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
    explicit WindowsExtractedFile(const std::wstring& path) : path_(LongPath(path)) {
        Create();
        // What is denied may be a read-only, hidden or system file of an earlier extraction.
        if (!file_ && GetLastError() == ERROR_ACCESS_DENIED &&
            SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL)) {
            Create();
        }
        if (!file_) {
            ThrowLastError("CreateFile", path_);
        }
    }
    WindowsExtractedFile(const WindowsExtractedFile&) = delete;
    WindowsExtractedFile& operator=(const WindowsExtractedFile&) = delete;

    ~WindowsExtractedFile() override {
        if (file_) {
            file_.Reset();
            DeleteFileW(path_.c_str());
        }
    }

    void Write(std::span<const char> bytes) override {
        while (!bytes.empty()) {
            DWORD written = 0;
            if (!WriteFile(file_.Get(), bytes.data(), PieceSize(bytes.size()), &written, nullptr)) {
                ThrowLastError("WriteFile", path_);
            }
            bytes = bytes.subspan(written);
        }
    }

    void Finish(const std::optional<FileTime>& modified) override {
        // Zeros leave what they stand for as it is.
        FILE_BASIC_INFO basic{};
        basic.FileAttributes = replaces_ ? FILE_ATTRIBUTE_NORMAL : 0;
        if (modified) {
            basic.LastWriteTime.QuadPart = modified->time_since_epoch().count() + TicksFrom1601To1970;
        }
        if (!SetFileInformationByHandle(file_.Get(), FileBasicInfo, &basic, sizeof(basic))) {
            ThrowLastError("SetFileInformationByHandle", path_);
        }
        file_.Reset();
    }

  private:
    void Create() {
        file_.Reset(
            CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        replaces_ = GetLastError() == ERROR_ALREADY_EXISTS;
    }

    std::wstring path_;
    FileHandle file_;
    bool replaces_ = false;
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
