#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/Files.h"

namespace mip {

/// Where a disc's folder is on this computer. The program sees it as drive D:, and compares names without regard to
/// case whatever this computer does.
class DiscFolder {
  public:
    explicit DiscFolder(std::filesystem::path root) : root_(std::move(root)) {}

    /// The file or folder that the program means by "D:\..."; nothing when there is none.
    std::optional<std::filesystem::path> Find(const std::wstring& path) const;

  private:
    std::filesystem::path root_;
};

/// A catalogue in memory stands at this path: the one that a workshop has before it knows any manual.
inline constexpr wchar_t EmptyCatalogue[] = L"C:\\empty.mdb";

/// The files of a disc, for reading. Every operation that writes throws PlatformError (WriteProtected).
class DiscFiles : public Files {
  public:
    explicit DiscFiles(const DiscFolder& disc) : disc_(disc) {}

    bool Exists(const std::wstring& path) override;
    FileStatus Status(const std::wstring& path) override;
    void SetAttributes(const std::wstring& path, std::uint32_t bits) override;
    void CopyToNew(const std::wstring& source, const std::wstring& destination) override;
    void CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                      const std::wstring& destination, const Copied& copied) override;
    void Move(const std::wstring& source, const std::wstring& destination) override;
    void Remove(const std::wstring& path) override;
    bool IsInUse(const std::wstring&) override { return false; }
    std::string Read(const std::wstring& path, std::uint64_t limit = UINT64_MAX) override;
    void ReadThrough(const std::wstring& path) override;
    void Write(const std::wstring& path, const std::string& bytes) override;
    void Append(const std::wstring& path, const std::string& bytes) override;

  private:
    std::filesystem::path FileAt(const std::wstring& path) const;

    const DiscFolder& disc_;
};

/// Its folders. Names come sorted.
class DiscFolders : public Folders {
  public:
    explicit DiscFolders(const DiscFolder& disc) : disc_(disc) {}

    bool Exists(const std::wstring& folder) override;
    bool IsLink(const std::wstring& folder) override;
    void Create(const std::wstring& folder) override;
    void Move(const std::wstring& source, const std::wstring& destination) override;
    void Remove(const std::wstring& folder) override;
    FolderListing List(const std::wstring& folder) override;

  private:
    const DiscFolder& disc_;
};

}  // namespace mip
