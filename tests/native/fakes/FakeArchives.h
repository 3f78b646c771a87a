#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Database.h"
#include "platform/FileVersions.h"
#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/ZipBuilder.h"
#include "tests/native/fakes/FakeArchiveSystem.h"
#include "tests/native/fakes/FakeComputer.h"

namespace mip {

/// The embedded extractor over the files in memory, at which the test looks.
class FakeArchives : public Archives {
  public:
    using Entries = std::map<std::wstring, std::string>;

    FakeArchives(FileTree& tree, Faults& faults) : tree_(tree), system_(tree, faults), clock_(faults) {}

    /// Calls `OnSevenZip` when the test has set it.
    std::int32_t SevenZip(const std::wstring& commandLine, FaultLog& log) override {
        CommandLines.push_back(commandLine);
        WhileReading();
        return OnSevenZip ? OnSevenZip(commandLine) : embedded_.SevenZip(commandLine, log);
    }
    ArchiveFacts Inspect(const std::wstring& commandLine) override { return embedded_.Inspect(commandLine); }
    ArchiveFacts Test(const std::wstring& commandLine) override { return WhileReading(), embedded_.Test(commandLine); }

    /// Puts an archive there, with these entries ("folder\name", or "folder\" for a folder of its own).
    void Put(const std::wstring& path, const Entries& entries) {
        tree_.PutFile(path, BuildZip(ItemsOf(contents_[path] = entries)));
    }
    /// The checksum of its last entry does not agree any more.
    void Break(const std::wstring& path) {
        std::vector<ZipItem> items = ItemsOf(contents_.at(path));
        items.back().Crc = 0;
        tree_.PutFile(path, BuildZip(items));
    }

    std::function<std::int32_t(const std::wstring& commandLine)> OnSevenZip;
    std::function<void()> WhileReading = [] {};  ///< what others do while an archive is extracted or tested
    std::vector<std::wstring> CommandLines;

  private:
    static std::vector<ZipItem> ItemsOf(const Entries& entries) {
        std::vector<ZipItem> items;
        for (const auto& [name, bytes] : entries) {
            items.push_back(OrdinaryItem(name, bytes));
        }
        return items;
    }

    FileTree& tree_;
    FakeArchiveSystem system_;
    FakeClock clock_;  // of its own: how often the extractor yields depends on the time that it takes
    EmbeddedArchives embedded_{system_, clock_};
    std::map<std::wstring, Entries> contents_;
};

/// Versions by path; a file without one throws, as one without a version resource does.
class FakeFileVersions : public FileVersions, private Counted {
  public:
    using Counted::Counted;

    FixedFileVersion Read(const std::wstring& path) override {
        constexpr std::uint32_t NoVersionResource = 1813;
        faults_.Check("FileVersions.Read", path);
        const auto version = versions_.find(ToUpper(path));
        RefuseWhen(version == versions_.end(), "Read", path, NoVersionResource);
        return version->second;
    }
    void Put(const std::wstring& path, FixedFileVersion version) { versions_[ToUpper(path)] = version; }

  private:
    std::map<std::wstring, FixedFileVersion> versions_;
};

/// Hands over to the engine that the test sets; without one nothing opens.
class SettableEngine : public DatabaseEngine, private Counted {
  public:
    using Counted::Counted;

    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override {
        constexpr std::uint32_t NoProvider = 0x800A0E7A;
        faults_.Check("DatabaseEngine.Open", path);
        RefuseWhen(Engine == nullptr, "Open", path, NoProvider);
        return Engine->Open(path);
    }

    DatabaseEngine* Engine = nullptr;
};

}  // namespace mip
