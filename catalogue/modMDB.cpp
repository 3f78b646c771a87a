#include "catalogue/modMDB.h"

#include "app/Program.h"

#include <exception>
#include <initializer_list>

#include "catalogue/FieldValues.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/Statements.h"
#include "catalogue/Transaction.h"
#include "app/modPdf.h"
#include "platform/PlatformError.h"

namespace mip {
namespace {

const FieldValue EmptyText{std::wstring()};

/// The fourteen columns of M_manage of the row on which a slot stands. Other programs may leave any of them Null, the
/// date included.
InstalledRecord ReadRow(clsMDB& database, std::int16_t slot) {
    const auto field = [&](const wchar_t* column) { return database.Pcls_MdbGetField(slot, column, EmptyText); };
    InstalledRecord record;
    record.Pub_No = FieldText(field(L"Pub_No"));
    record.Model_desc = FieldText(field(L"Model_desc"));
    record.Model_ID = FieldText(field(L"Model_ID"));
    record.Version = FieldText(field(L"Version"));
    record.Year = FieldText(field(L"Year"));
    record.Kubun = FieldText(field(L"Kubun"));
    record.Country = FieldText(field(L"Country"));
    record.Lang = FieldText(field(L"Lang"));
    record.Ldup = FieldText(field(L"Ldup"));
    record.INSUser = FieldText(field(L"INSUser"));
    record.INSDate = FieldDate(database.Pcls_MdbGetField(slot, L"INSDate", ZeroDate));
    record.INSPath = FieldText(field(L"INSPath"));
    record.Adjust_flg = FieldText(field(L"Adjust_flg"));
    record.Memo_txt = FieldText(field(L"Memo_txt"));
    return record;
}

/// Takes the row that a query or a move has reached; a row that cannot be read is an error.
template <typename Read>
MdbStatus TakeRow(MdbStatus status, clsMDB& database, InstalledRecord& record, Read read) {
    if (status != MdbOk) {
        return status;
    }
    try {
        record = read();
        return MdbOk;
    } catch (const std::exception& error) {
        database.TrapLog().Trapped("reading a row of installed manuals", error);
        return MdbError;
    }
}

MdbStatus TakeInstalledRow(MdbStatus status, Platform& platform, clsMDB& database, std::int16_t slot,
                           InstalledRecord& record) {
    return TakeRow(status, database, record, [&] {
        InstalledRecord row = ReadRow(database, slot);
        row.InstalledPdfForm =
            ManualPdfExists(platform, row.INSPath, row.Pub_No) ? ManualForm::Pdf : ManualForm::Archive;
        return row;
    });
}

MdbStatus TakeListRow(MdbStatus status, Program& program, std::int16_t slot) {
    return TakeRow(status, *program.CatalogDb, program.Installed, [&] {
        InstalledRecord row = ReadRow(*program.CatalogDb, slot);
        row.Pdf_flg = FieldText(program.CatalogDb->Pcls_MdbGetField(slot, L"Pdf_flg", EmptyText));
        return row;
    });
}

InstalledRecord RecordOf(const Program& program, const DiscCatalogueRecord& manual, const std::wstring& installPath,
                         InstallState dateChoice) {
    InstalledRecord record;
    record.Pub_No = manual.Pub_No;
    record.Model_desc = manual.Model_desc;
    record.Model_ID = manual.Model_ID;
    record.Version = manual.Version;
    record.Year = manual.Year;
    record.Kubun = manual.Kubun;
    record.Country = manual.Country;
    record.Lang = manual.Lang;
    record.Ldup = manual.Ldup;
    record.INSUser = program.Identity.UserName;
    record.INSDate =
        dateChoice == InstallState::New ? program.Installation.InstallTime1 : program.Installation.InstallTime2;
    record.INSPath = installPath;
    record.Adjust_flg = NotMarked;
    record.Pdf_flg = FlagOf(manual.PdfForm);
    record.InstalledPdfForm = manual.PdfForm;
    return record;
}

/// Executes the texts up to the first that fails.
bool ExecuteAll(clsMDB& database, std::initializer_list<std::wstring> texts) {
    for (const std::wstring& text : texts) {
        if (database.Pcls_MdbExecute(text) != MdbOk) {
            return false;
        }
    }
    return true;
}

/// The same in one transaction: all of them count or none.
bool ExecuteTogether(clsMDB& database, std::initializer_list<std::wstring> texts) {
    try {
        Transaction transaction(database);
        if (ExecuteAll(database, texts)) {
            transaction.Commit();
            return true;
        }
    } catch (const PlatformError& error) {
        database.TrapLog().Trapped("changing the catalogue", error);
    }
    return false;
}

}  // namespace

MdbStatus FindInstalledRecord(Program& program, const std::wstring& pubNo) {
    clsMDB& database = *program.CatalogDb;
    const MdbStatus status = database.Pcls_MdbCreate(LookUpSlot, statements::FindInstalled(pubNo));
    return TakeInstalledRow(status, program.Platform, database, LookUpSlot, program.Installed);
}

std::wstring GetLastInstallPath(Program& program) {
    clsMDB& database = *program.CatalogDb;
    try {
        if (database.Pcls_MdbCreate(LastPathSlot, statements::ReadLastInstallPath) == MdbOk) {
            return FieldText(database.Pcls_MdbGetField(LastPathSlot, L"INSPath", EmptyText));
        }
    } catch (const PlatformError& error) {
        database.TrapLog().Trapped("reading the last installation folder", error);
    }
    return {};
}

MdbStatus OpenInstalledList(Program& program, std::int16_t slot) {
    return TakeListRow(program.CatalogDb->Pcls_MdbCreate(slot, statements::InstalledList()), program, slot);
}

MdbStatus NextInstalledListRow(Program& program, std::int16_t slot) {
    return TakeListRow(program.CatalogDb->Pcls_MdbMoveNext(slot), program, slot);
}

MdbStatus ReadAllInstalled(Platform& platform, clsMDB& database, std::int16_t slot, InstalledRecord& record) {
    return TakeInstalledRow(database.Pcls_MdbCreate(slot, statements::ReadAllInstalled), platform, database, slot,
                            record);
}

MdbStatus ReadNextInstalled(Platform& platform, clsMDB& database, std::int16_t slot, InstalledRecord& record) {
    return TakeInstalledRow(database.Pcls_MdbMoveNext(slot), platform, database, slot, record);
}

bool RegisterInstalledManual(Program& program, const DiscCatalogueRecord& manual, const std::wstring& installPath,
                             InstallState dateChoice) {
    program.Installed = RecordOf(program, manual, installPath, dateChoice);
    const InstalledRecord& record = program.Installed;
    return ExecuteTogether(
        *program.CatalogDb,
        {statements::DeleteInstalled(record.Pub_No), statements::DeleteType(record.Pub_No),
         statements::InsertInstalled(record), statements::InsertNewType(record.Pub_No, record.Pdf_flg)});
}

bool InsertInstalledRecord(clsMDB& database, const InstalledRecord& record) {
    const std::wstring form = record.Pdf_flg.empty() ? FlagOf(record.InstalledPdfForm) : record.Pdf_flg;
    return ExecuteAll(database,
                      {statements::InsertInstalled(record), statements::InsertCarriedType(record.Pub_No, form)});
}

bool RemoveInstalledManual(clsMDB& database, const std::wstring& pubNo) {
    return ExecuteTogether(database, {statements::DeleteInstalled(pubNo), statements::DeleteType(pubNo)});
}

bool MarkForAdjustment(clsMDB& database, const std::wstring& pubNo) {
    // Jet brings a change to the drive at once only when a transaction of the program's own is committed.
    return ExecuteTogether(database, {statements::MarkForAdjustment(pubNo)});
}

bool ReregisterInstallPath(clsMDB& database, const std::wstring& pubNo, const std::wstring& path) {
    return database.Pcls_MdbExecute(statements::ReregisterInstallPath(pubNo, path)) == MdbOk;
}

std::int16_t ReadDatabaseVersion(clsMDB& database) {
    try {
        if (database.Pcls_MdbCreate(SystemSlot, statements::ReadSystem) == MdbOk) {
            return FieldInt16(database.Pcls_MdbGetField(SystemSlot, L"MDB_Version", EmptyText));
        }
    } catch (const std::exception& error) {
        database.TrapLog().Trapped("reading the version of a database", error);
    }
    return -1;
}

}  // namespace mip
