#pragma once

#include <filesystem>
#include <memory>

#include "app/Program.h"
#include "platform/ProfileFiles.h"
#include "platform/archive/EmbeddedArchives.h"
#include "platform/sqlite/SqliteEngine.h"
#include "publish/AbsentComputer.h"
#include "publish/DiscArchiveSystem.h"
#include "publish/DiscFiles.h"

namespace mip {

/// Initialisation files by the rules of the system's profile services.
class DiscProfileFiles : public ProfileFiles {
  public:
    explicit DiscProfileFiles(DiscFiles& files) : files_(files) {}

    std::wstring ReadString(const std::wstring& section, const std::wstring& key, const std::wstring& file,
                            std::size_t capacity) override;

  private:
    DiscFiles& files_;
};

/// The embedded engine for a database of the disc, and for the empty catalogue in memory.
class DiscEngine : public DatabaseEngine {
  public:
    explicit DiscEngine(const DiscFolder& disc) : disc_(disc) {}

    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override;

  private:
    const DiscFolder& disc_;
    SqliteEngine engine_;
};

/// There is no such engine here.
class NoJetEngine : public DatabaseEngine {
  public:
    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override;
};

/// A disc in drive D: of a computer that has nothing else. It can be read, not written.
class DiscPlatform {
  public:
    explicit DiscPlatform(std::filesystem::path root);
    DiscPlatform(const DiscPlatform&) = delete;
    DiscPlatform& operator=(const DiscPlatform&) = delete;

    const Platform& Get() const { return platform_; }
    /// Where a path of drive D: is on this computer.
    std::optional<std::filesystem::path> Find(const std::wstring& path) const { return folder_.Find(path); }
    ArchiveSystem& ArchiveFiles() { return archiveSystem_; }

  private:
    DiscFolder folder_;
    DiscFiles files_{folder_};
    DiscFolders folders_{folder_};
    DiscProfileFiles profiles_{files_};
    DiscArchiveSystem archiveSystem_{folder_};
    AbsentComputer computer_;
    EmbeddedArchives archives_{archiveSystem_, computer_};
    DiscEngine sqlite_{folder_};
    NoJetEngine jet_;
    Platform platform_;
};

/// The program as it stands after its start from this disc, on a computer whose catalogue is empty. The settings are
/// not read yet.
class DiscProgram {
  public:
    explicit DiscProgram(const std::filesystem::path& root);

    DiscPlatform Disc;
    mip::Program Program;
};

}  // namespace mip
