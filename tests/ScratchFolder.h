#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

namespace mip {

/// A folder below the temporary folder that is new, is this test's alone, and goes with all that it holds.
class ScratchFolder {
  public:
    /// `name` becomes a part of the folder's name.
    explicit ScratchFolder(const std::wstring& name = L"mip")
        : path_(std::filesystem::temp_directory_path() / (name + L"-" + std::to_wstring(std::random_device{}()))) {
        std::filesystem::create_directory(path_);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() { Remove(); }

    const std::filesystem::path& Path() const { return path_; }
    /// A path below the folder, as the program writes paths.
    std::wstring Below(const std::wstring& name) const { return path_.wstring() + L'\\' + name; }
    /// Writes a file and returns its path, as the program writes paths.
    std::wstring Write(const std::wstring& name, const std::string& bytes) const {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
        return Below(name);
    }

  private:
#ifdef _WIN32
    // The library's own removal knows neither long paths nor read-only files.
    void Remove() const {
        RemoveTree(L"\\\\?\\" + path_.wstring());
    }
    static void RemoveTree(const std::wstring& folder) {
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        for (BOOL more = search != INVALID_HANDLE_VALUE; more != 0; more = FindNextFileW(search, &found)) {
            const std::wstring name = found.cFileName;
            const std::wstring path = folder + L'\\' + name;
            const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            if (isFolder && (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
                RemoveDirectoryW(path.c_str());
            } else if (isFolder && name != L"." && name != L"..") {
                RemoveTree(path);
            } else if (!isFolder) {
                SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
                DeleteFileW(path.c_str());
            }
        }
        FindClose(search);
        RemoveDirectoryW(folder.c_str());
    }
#else
    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
#endif

    std::filesystem::path path_;
};

}  // namespace mip
