#include "catalogue/DatabaseFiles.h"

#include "app/Attempt.h"
#include "app/modFile.h"
#include "app/modShell.h"
#include "platform/Files.h"

namespace mip {
namespace {

bool IsDeleted(Platform& platform, const std::wstring& file) {
    (void)Attempt(platform.FaultLog, "deleting a file of the upgrade", [&] { DeleteFileAtOnce(platform, file); });
    return !platform.Files.Exists(file);
}

}  // namespace

std::wstring JournalOf(const std::wstring& database) {
    return database + L"-journal";
}

bool Discard(Platform& platform, const std::wstring& file) {
    if (IsDeleted(platform, file)) {
        return true;
    }
    PauseSeconds(platform.Clock, 1);
    return IsDeleted(platform, file);
}

/// The journal goes first: without its database it is dangerous, the other way round it is not.
void DiscardDatabase(Platform& platform, const std::wstring& database) {
    (void)Discard(platform, JournalOf(database));
    (void)Discard(platform, database);
}

}  // namespace mip
