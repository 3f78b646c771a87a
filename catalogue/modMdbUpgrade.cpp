#include "catalogue/modMdbUpgrade.h"

#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "app/Attempt.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modShell.h"
#include "catalogue/DatabaseFiles.h"
#include "catalogue/FieldValues.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/Statements.h"
#include "catalogue/Transaction.h"
#include "catalogue/UpgradeBackup.h"
#include "catalogue/modMDB.h"
#include "catalogue/modModelOrder.h"
#include "platform/Files.h"
#include "security/modAddFullAccess.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// The files of an upgrade, but for those of the backup.
struct UpgradePaths {
    std::wstring NewDatabaseSource;
    std::wstring NewDatabaseCopy;
    std::wstring CurrentDatabase;
};

UpgradePaths FormPaths(const Program& program) {
    const std::wstring& folder = program.Paths.InstallDir;
    const Settings& settings = program.Settings;
    return {JoinPath(program.Paths.ProgramFolder, settings.Kvx3NewMdbName), JoinPath(folder, settings.Kvx3NewMdbName),
            JoinPath(folder, settings.Kvx3MdbName)};
}

/// False when the copy would fall on one of the files that must survive it.
bool IsCopyApart(const UpgradePaths& paths) {
    const std::wstring copy = ToUpper(paths.NewDatabaseCopy);
    return copy != ToUpper(paths.NewDatabaseSource) && copy != ToUpper(paths.CurrentDatabase) &&
           !LastComponent(copy).starts_with(L"BACK_");
}

/// Opens a catalogue that is in use again to local users. False, with a line in the log, when that fails.
bool Grant(Program& program, const std::wstring& database) {
    const bool granted = Attempt(program.Log, "granting access to the catalogue",
                                 [&] { return GrantFullAccess(program.Platform, program.Identity, database); });
    if (!granted) {
        program.Log.Write(L"upgrade", L"", L"local users got no access to " + database);
    }
    return granted;
}

bool Opens(Platform& platform, const std::wstring& database) {
    return platform.Files.Exists(database) && clsMDB(platform).Pcls_MdbOpen(database);
}

/// Opens the disc's new database and returns its version. Throws when there is none to be read.
std::int16_t ReadNewDatabaseVersion(clsMDB& newDatabase, const std::wstring& path) {
    const std::int16_t version = newDatabase.Pcls_MdbOpen(path) ? ReadDatabaseVersion(newDatabase) : std::int16_t{-1};
    if (version == -1) {
        throw std::runtime_error("the disc's new database has no readable version");
    }
    return version;
}

/// What the check needs of the disc's database, which is then closed again: its version, which is returned, and the
/// model order. Throws as above.
std::int16_t ReadVersionAndModelOrder(Platform& platform, const std::wstring& newDatabase, ModelOrderList& modelOrder) {
    clsMDB database(platform);
    const std::int16_t version = ReadNewDatabaseVersion(database, newDatabase);
    (void)LoadModelOrder(database, modelOrder);
    return version;
}

std::int16_t ReadCurrentDatabaseVersion(clsMDB* database) {
    return database != nullptr ? ReadDatabaseVersion(*database) : std::int16_t{-1};
}

/// By the publication number in capitals: the tables are joined without regard to case.
using FormsByPubNo = std::map<std::wstring, std::wstring>;

/// The form that M_type records for each manual; nothing when they could not be read to the end. A layout without that
/// table has none; it refuses the query each time, a passing fault does not.
std::optional<FormsByPubNo> ReadForms(clsMDB& database) {
    FormsByPubNo forms;
    MdbStatus status = database.Pcls_MdbCreate(InstalledListSlot, statements::ReadForms);
    if (status == MdbError) {
        status = database.Pcls_MdbCreate(InstalledListSlot, statements::ReadForms);
    }
    if (status == MdbError) {
        return forms;
    }
    const auto field = [&](const wchar_t* column) {
        return FieldText(database.Pcls_MdbGetField(InstalledListSlot, column, std::wstring()));
    };
    for (; status == MdbOk; status = database.Pcls_MdbMoveNext(InstalledListSlot)) {
        forms[ToUpper(field(L"PUB_NO"))] = field(L"PDF_FLG");
    }
    return status == MdbEnd ? std::optional(std::move(forms)) : std::nullopt;
}

/// Carries all rows over in one transaction. False when a row could not be read or inserted.
bool CopyRows(Program& program, clsMDB& newDatabase) {
    const std::optional<FormsByPubNo> forms = ReadForms(*program.CatalogDb);
    if (!forms) {
        return false;
    }
    Transaction transaction(newDatabase);
    InstalledRows rows = ReadAllInstalled(program, *program.CatalogDb, RecordsSlot);
    for (const InstalledRecord& row : rows) {
        const auto recorded = forms->find(ToUpper(row.Pub_No));
        const bool isRecorded = recorded != forms->end() && !recorded->second.empty();
        if (!InsertInstalledRecord(newDatabase, row,
                                   isRecorded ? recorded->second : FlagOf(FormByFiles(program.Platform, row)))) {
            return false;
        }
    }
    if (!rows.ReachedEnd()) {
        return false;
    }
    transaction.Commit();
    return true;
}

/// Makes the new database, with all rows, beside the one in use. False, or an exception, when that fails.
bool FillNewDatabase(Program& program, const UpgradePaths& paths) {
    Platform& platform = program.Platform;
    DeleteFileAtOnce(platform, JournalOf(paths.NewDatabaseCopy));
    CopyFileReplacing(platform, paths.NewDatabaseSource, paths.NewDatabaseCopy);
    PauseSeconds(platform.Clock, 2);
    clsMDB newDatabase(platform);
    if (!platform.Files.Exists(paths.NewDatabaseCopy) || !newDatabase.Pcls_MdbOpen(paths.NewDatabaseCopy)) {
        return false;
    }
    // The workshop's other programs read the catalogue, too, and know one engine.
    if (!newDatabase.IsOfSameEngine(*program.CatalogDb)) {
        throw std::runtime_error("the disc's new database is of another engine than the catalogue in use");
    }
    return CopyRows(program, newDatabase);
}

/// Backs the database in use up, then lets the new one take its place in one step: at every moment one of the two is
/// there. Throws PlatformError; the database in use is then untouched.
void ReplaceDatabase(Program& program, const UpgradePaths& paths, UpgradeBackup& backup) {
    Platform& platform = program.Platform;
    program.CatalogDb.reset();
    backup.Make();
    PauseSeconds(platform.Clock, 1);
    platform.Files.Move(paths.NewDatabaseCopy, paths.CurrentDatabase);
}

bool OpenCurrentDatabase(Program& program, const UpgradePaths& paths) {
    program.Paths.MdbPath = paths.CurrentDatabase;
    program.CatalogDb = std::make_unique<clsMDB>(program.Platform);
    return program.Platform.Files.Exists(paths.CurrentDatabase) &&
           program.CatalogDb->Pcls_MdbOpen(paths.CurrentDatabase);
}

bool OpenNewDatabase(Program& program, const UpgradePaths& paths) {
    PauseSeconds(program.Platform.Clock, 1);
    return OpenCurrentDatabase(program, paths);
}

/// Where the backup cannot be put back either, it stays for the next start.
void ReturnToBackup(Program& program, const UpgradePaths& paths, UpgradeBackup& backup, bool wasGranted) {
    program.CatalogDb.reset();
    if (Attempt(program.Log, "putting the catalogue's backup back", [&] { backup.PutBack(); })) {
        if (wasGranted) {
            (void)Grant(program, paths.CurrentDatabase);
        }
        backup.Discard();
    }
    (void)OpenCurrentDatabase(program, paths);
}

bool MigrateDatabase(Program& program, const UpgradePaths& paths) {
    if (!IsCopyApart(paths)) {
        throw std::runtime_error("the settings give the new database the name of another file");
    }
    if (!program.CatalogDb) {
        throw std::runtime_error("no catalogue is open");
    }
    UpgradeBackup backup(program.Platform, paths.CurrentDatabase);
    backup.Discard();
    const auto replace = [&] {
        const bool filled = FillNewDatabase(program, paths);
        if (filled) {
            ReplaceDatabase(program, paths, backup);
        }
        return filled;
    };
    if (!Attempt(program.Log, "filling the new catalogue", replace)) {
        DiscardDatabase(program.Platform, paths.NewDatabaseCopy);
        backup.Discard();
        if (!program.CatalogDb) {
            (void)OpenCurrentDatabase(program, paths);
        }
        return false;
    }
    bool granted = false;
    const auto open = [&] {
        granted = Grant(program, paths.CurrentDatabase);
        return granted && OpenNewDatabase(program, paths);
    };
    if (!Attempt(program.Log, "opening the new catalogue", open)) {
        ReturnToBackup(program, paths, backup, granted);
        return false;
    }
    backup.Discard();
    return true;
}

/// True when the catalogue that an upgrade has left is whole, or is so again. Throws PlatformError.
bool IsMended(Platform& platform, const UpgradePaths& paths, UpgradeBackup& backup) {
    if (Opens(platform, paths.CurrentDatabase)) {
        return true;
    }
    const bool mendable = Opens(platform, backup.Path());
    if (mendable) {
        backup.PutBack();
    }
    return mendable;
}

}  // namespace

bool CheckDatabaseVersion(Program& program) {
    return Attempt(program.Log, "upgrading the catalogue", [&] {
        const UpgradePaths paths = FormPaths(program);
        const std::int16_t newVersion =
            ReadVersionAndModelOrder(program.Platform, paths.NewDatabaseSource, program.ModelOrder);
        const std::int16_t currentVersion = ReadCurrentDatabaseVersion(program.CatalogDb.get());
        return (currentVersion >= 0 && currentVersion >= newVersion) || MigrateDatabase(program, paths);
    });
}

void RecoverInterruptedUpgrade(Program& program) {
    (void)Attempt(program.Log, "mending an interrupted upgrade", [&] {
        Platform& platform = program.Platform;
        const UpgradePaths paths = FormPaths(program);
        if (IsCopyApart(paths) && platform.Files.Exists(paths.NewDatabaseCopy)) {
            DiscardDatabase(platform, paths.NewDatabaseCopy);
        }
        UpgradeBackup backup(platform, paths.CurrentDatabase);
        const bool interrupted = !backup.Path().empty();
        if (interrupted && !IsMended(platform, paths, backup)) {
            return false;
        }
        if (interrupted) {
            // The new database that has opened, or the old one from its backup, is without its grant.
            (void)Grant(program, paths.CurrentDatabase);
        }
        backup.Discard();
        return true;
    });
}

}  // namespace mip
