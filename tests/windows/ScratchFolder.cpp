#include "tests/windows/ScratchFolder.h"

#include <windows.h>

#include "platform/windows/LongPath.h"
#include "platform/windows/WindowsFiles.h"

namespace mip {
namespace {

void RemoveAll(const std::wstring& folder) {
    WindowsFolders folders;
    const FolderListing listing = folders.List(folder);
    for (const std::wstring& name : listing.Files) {
        const std::wstring path = LongPath(folder + L"\\" + name);
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(path.c_str());
    }
    for (const std::wstring& name : listing.Subfolders) {
        RemoveAll(folder + L"\\" + name);
    }
    RemoveDirectoryW(LongPath(folder).c_str());
}

std::wstring TemporaryPath(const std::wstring& name) {
    wchar_t folder[MAX_PATH + 1]{};
    GetTempPathW(MAX_PATH + 1, folder);
    return folder + name;
}

}  // namespace

ScratchFolder::ScratchFolder(const std::wstring& name) : path_(TemporaryPath(name)) {
    WindowsFolders folders;
    if (folders.Exists(path_)) {
        RemoveAll(path_);
    }
    folders.Create(path_);
}

ScratchFolder::~ScratchFolder() {
    RemoveAll(path_);
}

}  // namespace mip
