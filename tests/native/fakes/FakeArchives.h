#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/Archives.h"
#include "platform/Database.h"
#include "platform/FileVersions.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// Archives by their path, with their entries ("folder\name") and the content of each. A path that is not added here is
/// no archive, whatever the tree holds there.
class FakeArchives : public Archives {
  public:
    using Entries = std::map<std::wstring, std::string>;

    FakeArchives(FileTree& tree, Faults& faults) : tree_(tree), faults_(faults) {}

    /// Calls `OnSevenZip` when the test has set it. Else extracts "x -aoa -hide ARCHIVE "FOLDER\"" of an added archive
    /// into the tree; 2 when the archive is broken or missing, then half of its entries are there.
    std::int32_t SevenZip(const std::wstring& commandLine) override;
    bool IsWhole(const std::wstring& archive) override;
    std::uint64_t DeclaredSize(const std::wstring& archive) override;

    /// Adds an archive, and a file for it in the tree.
    void Put(const std::wstring& path, Entries entries);
    /// Gives an archive a checksum that does not agree.
    void Break(const std::wstring& path);

    std::function<std::int32_t(const std::wstring& commandLine)> OnSevenZip;
    std::vector<std::wstring> CommandLines;

  private:
    struct Archive {
        Entries Content;
        bool Broken = false;
    };

    Archive* Find(const std::wstring& path);

    FileTree& tree_;
    Faults& faults_;
    std::map<std::wstring, Archive> archives_;
};

/// Versions by path; a file without one throws, as one without a version resource does.
class FakeFileVersions : public FileVersions {
  public:
    explicit FakeFileVersions(Faults& faults) : faults_(faults) {}

    FixedFileVersion Read(const std::wstring& path) override;
    void Put(const std::wstring& path, FixedFileVersion version);

  private:
    Faults& faults_;
    std::map<std::wstring, FixedFileVersion> versions_;
};

/// Hands over to the engine that the test sets; without one nothing opens.
class SettableEngine : public DatabaseEngine {
  public:
    explicit SettableEngine(Faults& faults) : faults_(faults) {}

    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override;

    DatabaseEngine* Engine = nullptr;

  private:
    Faults& faults_;
};

}  // namespace mip
