#include "catalogue/ManualFolderAccess.h"

#include <exception>

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

/// Follows the manual to the variant's folder beside its own when the pages are there.
void RelinkToVariant(Platform& platform, clsMDB& database, InstalledRecord& record, const std::wstring& variantPubNo) {
    const std::wstring parent = record.INSPath.substr(0, record.INSPath.rfind(L'\\') + 1);
    const std::wstring candidate = parent + variantPubNo;
    if (!platform.Folders.Exists(candidate) || !HasIndexPage(platform, candidate)) {
        return;
    }
    record.INSPath = candidate;
    record.Adjust_flg = NotMarked;
    // The folder is secured below even where its new place could not be recorded.
    static_cast<void>(ReregisterInstallPath(database, record.Pub_No, candidate));
}

void SecureInstalledManual(Program& program, clsMDB& database, InstalledRecord& record) {
    Platform& platform = program.Platform;
    for (const Variant& variant : Variants) {
        if (record.Pub_No == variant.PubNo && !HasIndexPage(platform, record.INSPath)) {
            RelinkToVariant(platform, database, record, variant.VariantPubNo);
        }
    }
    if (platform.Folders.Exists(record.INSPath) && IsNtfsVolume(platform, record.INSPath) &&
        !UsersHaveModifyAccess(program, record.INSPath) && MayTouchFolder(program, record.INSPath)) {
        static_cast<void>(GrantModifyToUsers(program, record.INSPath));
    }
}

}  // namespace

bool SecureInstalledManualFolders(Program& program, const std::function<void()>& folderDone) {
    clsMDB database(program.Platform);
    if (!database.Pcls_MdbOpen(program.Paths.MdbPath)) {
        return false;
    }
    InstalledRecord& record = program.Installed;
    try {
        MdbStatus status = ReadAllInstalled(program.Platform, database, RecordsSlot, record);
        while (status == MdbOk) {
            SecureInstalledManual(program, database, record);
            if (folderDone) {
                folderDone();
            }
            status = ReadNextInstalled(program.Platform, database, RecordsSlot, record);
        }
    } catch (const std::exception& error) {
        program.Log.Trapped("opening the manual folders to users", error);
        return false;
    }
    return true;
}

}  // namespace mip
