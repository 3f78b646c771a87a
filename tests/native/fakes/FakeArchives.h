#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/Archives.h"
#include "platform/Database.h"
#include "platform/FileVersions.h"
#include "tests/native/fakes/FakeFiles.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// Archives by their path, with their entries ("folder\name", or "folder\" for a folder of its own) and the content of
/// each. A path that is not added here is no archive, whatever the tree holds there.
class FakeArchives : public Archives {
  public:
    using Entries = std::map<std::wstring, std::string>;

    FakeArchives(FileTree& tree, Faults& faults)
        : tree_(tree), faults_(faults), files_(tree, faults), folders_(tree, faults) {}

    /// Calls `OnSevenZip` when the test has set it. Else makes each entry's folders and file by FakeFolders and
    /// FakeFiles, whose faults and drives stop it half way: 2 then, as for what `Inspect` throws. Of a broken archive,
    /// half of the entries are there.
    std::int32_t SevenZip(const std::wstring& commandLine, FaultLog& log) override;
    ArchiveFacts Inspect(const std::wstring& commandLine) override;
    ArchiveFacts Test(const std::wstring& commandLine) override;

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

    /// The archive of a command line; throws PlatformError when there is none, or one that extraction refuses.
    const Archive& Approved(const std::wstring& commandLine);
    void Extract(const Archive& archive, const std::wstring& folder);
    void CreateWithParents(const std::wstring& folder);

    FileTree& tree_;
    Faults& faults_;
    FakeFiles files_;
    FakeFolders folders_;
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
