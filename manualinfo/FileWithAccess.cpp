#include "manualinfo/FileWithAccess.h"

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

void CopyFileWithAccess(Platform& platform, const Identity& identity, const std::wstring& source,
                        const std::wstring& destination) {
    if (platform.Files.Exists(destination)) {
        DeleteFileForced(platform, destination);
        PauseBetweenSteps(platform);
    }
    platform.Files.CopyToNew(source, destination);
    PauseBetweenSteps(platform);
    platform.Files.SetAttributes(destination, attributes::Normal);
    PauseBetweenSteps(platform);
    if (!GrantFullAccess(platform, identity, destination)) {
        ShowAccessError(platform, destination);
    }
}

void ShowAccessError(Platform& platform, const std::wstring& file) {
    platform.MessageBoxes.Show(L"Set Access Error = " + file, boxes::Ok, L"");
}

}  // namespace mip
