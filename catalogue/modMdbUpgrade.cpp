#include "catalogue/modMdbUpgrade.h"

#include <exception>
#include <map>
#include <memory>

#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "catalogue/Transaction.h"
#include "catalogue/modMDB.h"
#include "catalogue/modModelOrder.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "security/modAddFullAccess.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::int16_t WalkSlot = 0;
constexpr std::int16_t FormSlot = 4;
constexpr MdbStatus InsertFailed = 999;

/// The four files of an upgrade.
struct UpgradePaths {
    std::wstring NewDatabaseSource;
    std::wstring NewDatabaseCopy;
    std::wstring CurrentDatabase;
    std::wstring CurrentDatabaseBackup;
};

UpgradePaths FormPaths(const Program& program) {
    const std::wstring& folder = program.Paths.InstallDir;
    const Settings& settings = program.Settings;
    return {JoinPath(program.Paths.ProgramFolder, settings.Kvx3NewMdbName), JoinPath(folder, settings.Kvx3NewMdbName),
            JoinPath(folder, settings.Kvx3MdbName), JoinPath(folder, L"BACK_" + settings.Kvx3MdbName)};
}

/// False when the copy would fall on one of the files that must survive it.
bool IsCopyApart(const UpgradePaths& paths) {
    const std::wstring copy = ToUpper(paths.NewDatabaseCopy);
    return copy != ToUpper(paths.NewDatabaseSource) && copy != ToUpper(paths.CurrentDatabase) &&
           copy != ToUpper(paths.CurrentDatabaseBackup);
}

template <typename Step>
bool Succeeds(Step step) {
    try {
        return step();
    } catch (const std::exception&) {
        return false;
    }
}

/// Deletes a file that is of no use any more. A file that is held, by a virus scanner for instance, gets a second try;
/// one that stays does no harm.
void Discard(Platform& platform, const std::wstring& file) {
    const auto deleteFile = [&] {
        DeleteFileForced(platform, file);
        return !platform.Files.Exists(file);
    };
    if (!Succeeds(deleteFile)) {
        WaitSeconds(platform.Clock, 1);
        (void)Succeeds(deleteFile);
    }
}

/// What the embedded engine keeps beside a database while it changes it. Left there by a power cut, it would be applied
/// to the next database of that name.
std::wstring JournalOf(const std::wstring& database) {
    return database + L"-journal";
}

/// The journal goes first: without its database it is dangerous, the other way round it is not.
void DiscardDatabase(Platform& platform, const std::wstring& database) {
    Discard(platform, JournalOf(database));
    Discard(platform, database);
}

bool Opens(Platform& platform, const std::wstring& database) {
    return platform.Files.Exists(database) && clsMDB(platform).Pcls_MdbOpen(database);
}

std::int16_t ReadNewDatabaseVersion(Program& program, const std::wstring& databasePath) {
    clsMDB database(program.Platform);
    if (!database.Pcls_MdbOpen(databasePath)) {
        return -1;
    }
    const std::int16_t version = ReadDatabaseVersion(database);
    if (version != -1) {
        (void)LoadModelOrder(database, program.ModelOrder);
    }
    return version;
}

std::int16_t ReadCurrentDatabaseVersion(Program& program) {
    return program.CatalogDb ? ReadDatabaseVersion(*program.CatalogDb) : std::int16_t{-1};
}

/// Reads the form that M_type records for each manual. A layout without that table has none; it refuses the query each
/// time, a passing fault does not.
bool ReadForms(Program& program, std::map<std::wstring, std::wstring>& forms) {
    MdbStatus status = OpenInstalledList(program, FormSlot);
    if (status == MdbError) {
        status = OpenInstalledList(program, FormSlot);
    }
    if (status == MdbError) {
        return true;
    }
    while (status == MdbOk) {
        forms[program.Installed.Pub_No] = program.Installed.Pdf_flg;
        status = NextInstalledListRow(program, FormSlot);
    }
    return status == MdbEnd;
}

/// Carries all rows over in one transaction. False when a row could not be read or inserted.
bool CopyRows(Program& program, clsMDB& newDatabase) {
    std::map<std::wstring, std::wstring> forms;
    if (!ReadForms(program, forms)) {
        return false;
    }
    InstalledRecord& record = program.Installed;
    Transaction transaction(newDatabase);
    MdbStatus status = ReadAllInstalled(program.Platform, *program.CatalogDb, WalkSlot, record);
    while (status == MdbOk) {
        record.Pdf_flg = forms[record.Pub_No];
        status = InsertInstalledRecord(newDatabase, record)
                     ? ReadNextInstalled(program.Platform, *program.CatalogDb, WalkSlot, record)
                     : InsertFailed;
    }
    if (status != MdbEnd) {
        return false;
    }
    transaction.Commit();
    return true;
}

/// Makes the new database, with all rows, beside the one in use.
bool FillNewDatabase(Program& program, const UpgradePaths& paths) {
    Platform& platform = program.Platform;
    DeleteFileForced(platform, JournalOf(paths.NewDatabaseCopy));
    CopyFileReplacing(platform, paths.NewDatabaseSource, paths.NewDatabaseCopy);
    WaitSeconds(platform.Clock, 2);
    clsMDB newDatabase(platform);
    return platform.Files.Exists(paths.NewDatabaseCopy) && newDatabase.Pcls_MdbOpen(paths.NewDatabaseCopy) &&
           CopyRows(program, newDatabase);
}

/// Backs the database in use up, then lets the new one take its place in one step: at every moment one of the two is
/// there. Throws PlatformError; the database in use is then untouched.
bool ReplaceDatabase(Program& program, const UpgradePaths& paths) {
    Platform& platform = program.Platform;
    program.CatalogDb.reset();
    CopyFileReplacing(platform, paths.CurrentDatabase, paths.CurrentDatabaseBackup);
    WaitSeconds(platform.Clock, 1);
    platform.Files.Move(paths.NewDatabaseCopy, paths.CurrentDatabase);
    return true;
}

bool OpenCurrentDatabase(Program& program, const UpgradePaths& paths) {
    program.Paths.MdbPath = paths.CurrentDatabase;
    program.CatalogDb = std::make_unique<clsMDB>(program.Platform);
    return program.Platform.Files.Exists(paths.CurrentDatabase) &&
           program.CatalogDb->Pcls_MdbOpen(paths.CurrentDatabase);
}

bool OpenNewDatabase(Program& program, const UpgradePaths& paths) {
    if (!GrantFullAccess(program, paths.CurrentDatabase)) {
        return false;
    }
    WaitSeconds(program.Platform.Clock, 1);
    return OpenCurrentDatabase(program, paths);
}

/// Throws PlatformError; then the backup stays for the next start.
bool PutBackupBack(Platform& platform, const UpgradePaths& paths) {
    platform.Files.Move(paths.CurrentDatabaseBackup, paths.CurrentDatabase);
    Discard(platform, JournalOf(paths.CurrentDatabase));
    return true;
}

bool MigrateDatabase(Program& program, const UpgradePaths& paths) {
    Platform& platform = program.Platform;
    if (!IsCopyApart(paths) || !program.CatalogDb) {
        return false;
    }
    if (!Succeeds([&] { return FillNewDatabase(program, paths) && ReplaceDatabase(program, paths); })) {
        DiscardDatabase(platform, paths.NewDatabaseCopy);
        Discard(platform, paths.CurrentDatabaseBackup);
        if (!program.CatalogDb) {
            (void)OpenCurrentDatabase(program, paths);
        }
        return false;
    }
    if (!Succeeds([&] { return OpenNewDatabase(program, paths); })) {
        program.CatalogDb.reset();
        (void)Succeeds([&] { return PutBackupBack(platform, paths); });
        (void)OpenCurrentDatabase(program, paths);
        return false;
    }
    Discard(platform, paths.CurrentDatabaseBackup);
    return true;
}

}  // namespace

bool CheckDatabaseVersion(Program& program) {
    return Succeeds([&] {
        const UpgradePaths paths = FormPaths(program);
        const std::int16_t newVersion = ReadNewDatabaseVersion(program, paths.NewDatabaseSource);
        if (newVersion == -1) {
            return false;
        }
        const std::int16_t currentVersion = ReadCurrentDatabaseVersion(program);
        return (currentVersion >= 0 && currentVersion >= newVersion) || MigrateDatabase(program, paths);
    });
}

void RecoverInterruptedUpgrade(Program& program) {
    Platform& platform = program.Platform;
    const UpgradePaths paths = FormPaths(program);
    if (IsCopyApart(paths) && platform.Files.Exists(paths.NewDatabaseCopy)) {
        DiscardDatabase(platform, paths.NewDatabaseCopy);
    }
    if (!platform.Files.Exists(paths.CurrentDatabaseBackup)) {
        return;
    }
    if (Opens(platform, paths.CurrentDatabase)) {
        // Either the old database, then the backup may be half a copy, or the new one without its grant.
        (void)GrantFullAccess(program, paths.CurrentDatabase);
        Discard(platform, paths.CurrentDatabaseBackup);
    } else if (Opens(platform, paths.CurrentDatabaseBackup)) {
        (void)Succeeds([&] { return PutBackupBack(platform, paths); });
    }
}

}  // namespace mip
