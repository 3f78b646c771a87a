#include "catalogue/modMDB.h"

#include <exception>
#include <initializer_list>
#include <utility>

#include "app/Program.h"
#include "app/modPdf.h"
#include "catalogue/FieldValues.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/Statements.h"
#include "catalogue/Transaction.h"
#include "platform/PlatformError.h"

namespace mip {
namespace {

const FieldValue EmptyText{std::wstring()};

/// The fourteen columns of M_manage of the row on which a slot stands. Other programs may leave any of them Null, the
/// date included.
InstalledRecord ReadColumns(clsMDB& database, std::int16_t slot) {
    using Record = InstalledRecord;
    static const std::pair<std::wstring, std::wstring Record::*> texts[] = {
        {L"Pub_No", &Record::Pub_No},     {L"Model_desc", &Record::Model_desc},
        {L"Model_ID", &Record::Model_ID}, {L"Version", &Record::Version},
        {L"Year", &Record::Year},         {L"Kubun", &Record::Kubun},
        {L"Country", &Record::Country},   {L"Lang", &Record::Lang},
        {L"Ldup", &Record::Ldup},         {L"INSUser", &Record::INSUser},
        {L"INSPath", &Record::INSPath},   {L"Adjust_flg", &Record::Adjust_flg},
        {L"Memo_txt", &Record::Memo_txt}};
    Record record;
    for (const auto& [column, text] : texts) {
        record.*text = FieldText(database.Pcls_MdbGetField(slot, column, EmptyText));
    }
    record.INSDate = FieldDate(database.Pcls_MdbGetField(slot, L"INSDate", ZeroDate));
    return record;
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

InstalledRows::InstalledRows(Program& program, clsMDB& database, std::int16_t slot, const std::wstring& query,
                             FormSource form)
    : program_(&program), database_(&database), slot_(slot), form_(form) {
    current_ = TakeRow(database.Pcls_MdbCreate(slot, query));
}

void InstalledRows::MoveNext() {
    current_ = TakeRow(database_->Pcls_MdbMoveNext(slot_));
}

/// Takes the row that a query or a move has reached. The only place that fills the program's installed-record fields
/// from a catalogue.
Lookup InstalledRows::TakeRow(MdbStatus status) const {
    if (status != MdbOk) {
        return {status, {}};
    }
    try {
        Lookup row{MdbOk, ReadRow()};
        program_->Installed = row.Record;
        return row;
    } catch (const std::exception& error) {
        database_->TrapLog().Trapped("reading a row of installed manuals", error);
        return {MdbError, {}};
    }
}

InstalledRecord InstalledRows::ReadRow() const {
    InstalledRecord row = ReadColumns(*database_, slot_);
    if (form_ == FormSource::Files) {
        row.InstalledPdfForm = FormByFiles(program_->Platform, row);
    } else if (form_ == FormSource::TypeTable) {
        row.Pdf_flg = FieldText(database_->Pcls_MdbGetField(slot_, L"Pdf_flg", EmptyText));
    }
    return row;
}

Lookup FindInstalledRecord(Program& program, const std::wstring& pubNo) {
    return InstalledRows(program, *program.CatalogDb, LookUpSlot, statements::FindInstalled(pubNo),
                         InstalledRows::FormSource::Files)
        .Current();
}

Lookup FindFirstInstalled(Program& program, const std::vector<std::wstring>& pubNos) {
    if (pubNos.empty()) {
        return {MdbEnd, {}};
    }
    return InstalledRows(program, *program.CatalogDb, LookUpSlot, statements::FindInstalledAmong(pubNos),
                         InstalledRows::FormSource::Files)
        .Current();
}

std::wstring GetLastInstallPath(clsMDB& database) {
    try {
        if (database.Pcls_MdbCreate(LastPathSlot, statements::ReadLastInstallPath) == MdbOk) {
            return FieldText(database.Pcls_MdbGetField(LastPathSlot, L"INSPath", EmptyText));
        }
    } catch (const PlatformError& error) {
        database.TrapLog().Trapped("reading the last installation folder", error);
    }
    return {};
}

InstalledRows OpenInstalledList(Program& program, std::int16_t slot) {
    return {program, *program.CatalogDb, slot, statements::InstalledList(), InstalledRows::FormSource::TypeTable};
}

InstalledRows ReadAllInstalled(Program& program, clsMDB& database, std::int16_t slot) {
    return {program, database, slot, statements::ReadAllInstalled, InstalledRows::FormSource::None};
}

ManualForm FormByFiles(Platform& platform, const InstalledRecord& record) {
    return ManualPdfExists(platform, record.INSPath, record.Pub_No) ? ManualForm::Pdf : ManualForm::Archive;
}

bool RegisterInstalledManual(Program& program, const DiscCatalogueRecord& manual, const std::wstring& installPath,
                             InstallState dateChoice) {
    const InstalledRecord record = RecordOf(program, manual, installPath, dateChoice);
    program.Installed = record;
    return ExecuteTogether(
        *program.CatalogDb,
        {statements::DeleteInstalled(record.Pub_No), statements::DeleteType(record.Pub_No),
         statements::InsertInstalled(record), statements::InsertNewType(record.Pub_No, record.Pdf_flg)});
}

bool InsertInstalledRecord(clsMDB& database, const InstalledRecord& record, const std::wstring& pdfFlag) {
    return ExecuteAll(database,
                      {statements::InsertInstalled(record), statements::InsertCarriedType(record.Pub_No, pdfFlag)});
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
