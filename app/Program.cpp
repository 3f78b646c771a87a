#include "app/Program.h"

#include "platform/MessageBoxes.h"

namespace mip {
namespace {

/// The computer, with the boxes and the log of the run.
Platform ForRun(const Platform& computer, MessageBoxes& boxes, FaultLog& log) {
    return {.Files = computer.Files,
            .Folders = computer.Folders,
            .Volumes = computer.Volumes,
            .FileVersions = computer.FileVersions,
            .ProfileFiles = computer.ProfileFiles,
            .Registry = computer.Registry,
            .Processes = computer.Processes,
            .Clock = computer.Clock,
            .Computer = computer.Computer,
            .AccountNames = computer.AccountNames,
            .AccessControl = computer.AccessControl,
            .Shell = computer.Shell,
            .Browsers = computer.Browsers,
            .Archives = computer.Archives,
            .JetEngine = computer.JetEngine,
            .SqliteEngine = computer.SqliteEngine,
            .MessageBoxes = boxes,
            .FaultLog = log};
}

}  // namespace

Program::Program(const mip::Platform& platform)
    : Log(platform),
      runBoxes_(platform.MessageBoxes, Switches, Log),
      runPlatform_(ForRun(platform, runBoxes_, Log)),
      Platform(runPlatform_) {}

}  // namespace mip
