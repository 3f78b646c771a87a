#include "platform/windows/NewFile.h"

#include <algorithm>

#include "platform/windows/FileTimes.h"
#include "platform/windows/LastError.h"
#include "platform/windows/LongPath.h"

namespace mip {

namespace {

constexpr std::size_t LargestPiece = 0x1000'0000;  // well inside the DWORD that the calls count in

}  // namespace

NewFile::NewFile(const std::wstring& path, Existing existing) : path_(path) {
    Create(CREATE_NEW);
    if (!file_ && GetLastError() == ERROR_FILE_EXISTS && existing == Existing::Replace) {
        SetFileAttributesW(LongPath(path_).c_str(), FILE_ATTRIBUTE_NORMAL);  // a read-only file cannot be replaced
        Create(CREATE_ALWAYS);
    }
    if (!file_) {
        ThrowLastError("CreateFile", path_);
    }
}

NewFile::~NewFile() {
    if (file_) {
        FILE_DISPOSITION_INFO disposition{TRUE};
        SetFileInformationByHandle(file_.Get(), FileDispositionInfo, &disposition, sizeof disposition);
    }
}

void NewFile::Create(DWORD disposition) {
    file_.Reset(CreateFileW(LongPath(path_).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
}

void NewFile::Write(std::span<const char> bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), LargestPiece));
        if (!WriteFile(file_.Get(), bytes.data(), piece, &written, nullptr)) {
            ThrowLastError("WriteFile", path_);
        }
        bytes = bytes.subspan(written);
    }
}

void NewFile::Finish(const std::optional<FileTime>& modified) {
    // One call on the open file. Zero times stay as they are.
    FILE_BASIC_INFO basic{};
    basic.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    if (modified) {
        basic.LastWriteTime.QuadPart = modified->time_since_epoch().count() + TicksFrom1601To1970;
    }
    if (!SetFileInformationByHandle(file_.Get(), FileBasicInfo, &basic, sizeof basic)) {
        ThrowLastError("SetFileInformationByHandle", path_);
    }
    file_.Reset();
}

}  // namespace mip
