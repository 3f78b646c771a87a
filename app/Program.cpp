#include "app/Program.h"

#include "platform/MessageBoxes.h"

namespace mip {
namespace {

Platform WithBoxes(const Platform& platform, MessageBoxes& boxes) {
    return {platform.Files,
            platform.Folders,
            platform.Volumes,
            platform.FileVersions,
            platform.ProfileFiles,
            platform.Registry,
            platform.Processes,
            platform.Clock,
            platform.Computer,
            platform.AccountNames,
            platform.AccessControl,
            platform.Shell,
            platform.Browsers,
            platform.Archives,
            platform.JetEngine,
            platform.SqliteEngine,
            boxes};
}

}  // namespace

Program::Program(const mip::Platform& platform)
    : runBoxes_(platform.MessageBoxes, Switches, Log),
      runPlatform_(WithBoxes(platform, runBoxes_)),
      Platform(runPlatform_) {}

}  // namespace mip
