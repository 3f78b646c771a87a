#pragma once

#include "startup/windows/WindowsPlatform.h"

namespace mip {

/// Does not pause, and adds up the pauses.
struct PauseCount : WindowsClock {
    void Sleep(std::chrono::milliseconds duration) override { Total += duration; }

    std::chrono::milliseconds Total{};
};

/// The real computer, but for the program's pauses.
struct UnhurriedPlatform {
    WindowsPlatform Real{L"ManualInstallBench"};
    PauseCount Clock;
    mip::Platform Platform = WithoutPauses(Real.Platform());

  private:
    mip::Platform WithoutPauses(const mip::Platform& real) {
        return {.Files = real.Files,
                .Folders = real.Folders,
                .Volumes = real.Volumes,
                .FileVersions = real.FileVersions,
                .ProfileFiles = real.ProfileFiles,
                .Registry = real.Registry,
                .Processes = real.Processes,
                .Clock = Clock,
                .Computer = real.Computer,
                .AccountNames = real.AccountNames,
                .AccessControl = real.AccessControl,
                .Shell = real.Shell,
                .Browsers = real.Browsers,
                .Archives = real.Archives,
                .JetEngine = real.JetEngine,
                .SqliteEngine = real.SqliteEngine,
                .MessageBoxes = real.MessageBoxes};
    }
};

}  // namespace mip
