#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/windows/Handle.h"
#include "platform/windows/NewFile.h"

namespace mip {

class WindowsFiles : public Files {
  public:
    bool Exists(const std::wstring& path) override;
    FileStatus Status(const std::wstring& path) override;
    void SetAttributes(const std::wstring& path, std::uint32_t bits) override;
    void CopyToNew(const std::wstring& source, const std::wstring& destination) override;
    void CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                      const std::wstring& destination, const Copied& copied) override;
    void Move(const std::wstring& source, const std::wstring& destination) override;
    void Remove(const std::wstring& path) override;
    bool IsInUse(const std::wstring& path) override;
    std::string Read(const std::wstring& path, std::uint64_t limit = UINT64_MAX) override;
    void ReadThrough(const std::wstring& path) override;
    void Write(const std::wstring& path, const std::string& bytes) override;
    void Append(const std::wstring& path, const std::string& bytes) override;

  private:
    struct SmallFile {
        std::string Bytes;
        FileTime Modified;
    };

    std::optional<SmallFile> ReadSmallOrCopy(const std::wstring& source, const std::wstring& destination);
    static void WriteNew(const std::wstring& path, const SmallFile& file);
    std::size_t ReadPiece(const FileHandle& file, const std::wstring& path);
    void CopyRest(const FileHandle& from, const std::wstring& source, std::size_t read, NewFile& to);

    std::vector<char> copyBuffer_;  ///< kept, so that thousands of small copies allocate once
};

class WindowsFolders : public Folders {
  public:
    bool Exists(const std::wstring& folder) override;
    bool IsLink(const std::wstring& folder) override;
    void Create(const std::wstring& folder) override;
    void Move(const std::wstring& source, const std::wstring& destination) override;
    void Remove(const std::wstring& folder) override;
    FolderListing List(const std::wstring& folder) override;
};

}  // namespace mip
