#include "manualinfo/FileWithAccess.h"

#include "app/Program.h"
#include "app/modFile.h"
#include "app/modShell.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "security/modAddFullAccess.h"

namespace mip {
namespace {

/// Gives other programs (a virus scanner, the system's own services) time with a file between two steps.
void PauseBetweenSteps(Platform& platform) {
    PauseSeconds(platform.Clock, 1);
    platform.Clock.YieldToMessages();
}

}  // namespace

void CopyFileWithAccess(Program& program, const std::wstring& source, const std::wstring& destination) {
    Platform& platform = program.Platform;
    if (platform.Files.Exists(destination)) {
        DeleteFileForced(platform, destination);
        PauseBetweenSteps(platform);
    }
    platform.Files.CopyToNew(source, destination);
    PauseBetweenSteps(platform);
    platform.Files.SetAttributes(destination, attributes::Normal);
    PauseBetweenSteps(platform);
    if (!GrantFullAccess(program, destination)) {
        ShowAccessError(program, destination);
    }
}

void ShowAccessError(Program& program, const std::wstring& file) {
    program.Platform.MessageBoxes.Show(L"Set Access Error = " + file, boxes::Ok, L"");
}

}  // namespace mip
