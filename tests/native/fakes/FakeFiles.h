#pragma once

#include "platform/Files.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

class FakeFiles : public Files {
  public:
    FakeFiles(FileTree& tree, Faults& faults) : tree_(tree), faults_(faults) {}

    bool Exists(const std::wstring& path) override;
    FileStatus Status(const std::wstring& path) override;
    void SetAttributes(const std::wstring& path, std::uint32_t bits) override;
    /// A power cut in this call leaves half of the new file.
    void CopyToNew(const std::wstring& source, const std::wstring& destination) override;
    /// As two writers do it: files are done out of order, and one more is done when `copied` throws.
    void CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                      const std::wstring& destination, const Copied& copied) override;
    void Move(const std::wstring& source, const std::wstring& destination) override;
    void Remove(const std::wstring& path) override;
    bool IsInUse(const std::wstring& path) override;
    std::string Read(const std::wstring& path, std::uint64_t limit = UINT64_MAX) override;
    void ReadThrough(const std::wstring& path) override;
    /// A power cut in this call, and in Append, leaves half of the new bytes.
    void Write(const std::wstring& path, const std::string& bytes) override;
    void Append(const std::wstring& path, const std::string& bytes) override;

  private:
    void Put(const char* operation, const std::wstring& path, const std::string& bytes, bool append);
    FileTree::Place FileAt(const char* operation, const std::wstring& path);

    FileTree& tree_;
    Faults& faults_;
};

class FakeFolders : public Folders {
  public:
    FakeFolders(FileTree& tree, Faults& faults) : tree_(tree), faults_(faults) {}

    bool Exists(const std::wstring& folder) override;
    bool IsLink(const std::wstring& folder) override;
    void Create(const std::wstring& folder) override;
    /// In the order of upper-cased names.
    FolderListing List(const std::wstring& folder) override;

  private:
    FileTree& tree_;
    Faults& faults_;
};

class FakeVolumes : public Volumes {
  public:
    FakeVolumes(FileTree& tree, Faults& faults) : tree_(tree), faults_(faults) {}

    std::wstring DriveName(const std::wstring& path) override;
    double FreeBytes(const std::wstring& root) override;
    std::wstring FileSystemName(const std::wstring& root) override;
    void Flush(const std::wstring& folder) override;

  private:
    const FakeDrive& DriveAt(const char* operation, const std::wstring& root);

    FileTree& tree_;
    Faults& faults_;
};

}  // namespace mip
