#pragma once

#include <string>

#include "platform/Platform.h"
#include "platform/archive/EmbeddedArchives.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/AdoEngine.h"
#include "platform/windows/WindowsAccessControl.h"
#include "platform/windows/WindowsAccountNames.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsArchives.h"
#include "platform/windows/WindowsBrowsers.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "platform/windows/WindowsFileVersions.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsMessageBoxes.h"
#include "platform/windows/WindowsProcesses.h"
#include "platform/windows/WindowsProfileFiles.h"
#include "platform/windows/WindowsRegistry.h"
#include "platform/windows/WindowsShell.h"
#include "platform/windows/WindowsVolumes.h"

namespace mip {

/// The real computer: every adapter, made once, and the platform that they are together.
class WindowsPlatform {
  public:
    /// `instance` is the name by which another instance of the program is known.
    explicit WindowsPlatform(const std::wstring& instance) : computer_(instance) {}
    WindowsPlatform(const WindowsPlatform&) = delete;
    WindowsPlatform& operator=(const WindowsPlatform&) = delete;

    const mip::Platform& Platform() const { return platform_; }

  private:
    WindowsComputer computer_;
    WindowsClock clock_;
    WindowsFiles files_;
    WindowsFolders folders_;
    WindowsVolumes volumes_;
    WindowsFileVersions fileVersions_;
    WindowsProfileFiles profileFiles_;
    WindowsRegistry registry_;
    WindowsProcesses processes_;
    WindowsAccountNames accountNames_;
    WindowsAccessControl accessControl_;
    WindowsShell shell_;
    WindowsBrowsers browsers_;
    WindowsArchiveSystem archiveSystem_;
    EmbeddedArchives embeddedArchives_{archiveSystem_, clock_};
    WindowsArchives archives_{computer_, embeddedArchives_};
    AdoEngine jetEngine_;
    SqliteEngine sqliteEngine_;
    WindowsMessageBoxes boxes_;
    mip::Platform platform_{.Files = files_,
                            .Folders = folders_,
                            .Volumes = volumes_,
                            .FileVersions = fileVersions_,
                            .ProfileFiles = profileFiles_,
                            .Registry = registry_,
                            .Processes = processes_,
                            .Clock = clock_,
                            .Computer = computer_,
                            .AccountNames = accountNames_,
                            .AccessControl = accessControl_,
                            .Shell = shell_,
                            .Browsers = browsers_,
                            .Archives = archives_,
                            .JetEngine = jetEngine_,
                            .SqliteEngine = sqliteEngine_,
                            .MessageBoxes = boxes_};
};

}  // namespace mip
