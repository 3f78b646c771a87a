#include "catalogue/ManualFolderAccess.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "app/ManualPlace.h"
#include "app/Program.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/modMDB.h"
#include "platform/Files.h"
#include "security/modAcl.h"

namespace mip {

namespace {

/// A manual whose files may have been delivered in the folder of a variant.
struct Variant {
    const wchar_t* PubNo;
    const wchar_t* VariantPubNo;
};
constexpr Variant Variants[] = {{L"K4710MM", L"K4710MMD"}, {L"K4750MM", L"K4750MMA"}};

bool HasIndexPage(Platform& platform, const std::wstring& folder) {
    return platform.Files.Exists(folder + L"\\index.html");
}

/// The folder of the manual's variant beside its own, when the pages are there and not in its own; else "".
std::wstring FindVariantFolder(Platform& platform, const InstalledRecord& manual) {
    const auto variant = std::ranges::find(Variants, manual.Pub_No, &Variant::PubNo);
    if (variant == std::end(Variants) || HasIndexPage(platform, manual.INSPath)) {
        return {};
    }
    const std::wstring folder = manual.INSPath.substr(0, manual.INSPath.rfind(L'\\') + 1) + variant->VariantPubNo;
    return platform.Folders.Exists(folder) && HasIndexPage(platform, folder) ? folder : L"";
}

/// Opens the folder to users, even where a variant's could not be recorded as the manual's.
void SecureInstalledManual(Program& program, clsMDB& database, const InstalledRecord& manual) {
    Platform& platform = program.Platform;
    const std::wstring variant = FindVariantFolder(platform, manual);
    if (!variant.empty()) {
        program.Installed.INSPath = variant;
        program.Installed.Adjust_flg = NotMarked;
        static_cast<void>(ReregisterInstallPath(database, manual.Pub_No, variant));
    }
    const std::wstring& folder = variant.empty() ? manual.INSPath : variant;
    if (platform.Folders.Exists(folder) && IsNtfsVolume(platform, folder) &&
        !UsersHaveModifyAccess(platform, program.Identity, folder) && MayTouchFolder(program, folder)) {
        static_cast<void>(GrantModifyToUsers(platform, program.Identity, folder));
    }
}

}  // namespace

bool SecureInstalledManualFolders(Program& program, const std::function<void()>& folderDone) {
    clsMDB database(program.Platform);
    if (!database.Pcls_MdbOpen(program.Paths.MdbPath)) {
        return false;
    }
    try {
        InstalledRows rows = ReadAllInstalled(program, database, RecordsSlot);
        for (const InstalledRecord& manual : rows) {
            SecureInstalledManual(program, database, manual);
            if (folderDone) {
                folderDone();
            }
        }
    } catch (const std::exception& error) {
        program.Log.Trapped("opening the manual folders to users", error);
        return false;
    }
    return true;
}

}  // namespace mip
