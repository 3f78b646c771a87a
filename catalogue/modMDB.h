#pragma once

#include <iterator>
#include <string>

#include "app/InstalledRecord.h"
#include "catalogue/clsMDB.h"

namespace mip {

struct DiscCatalogueRecord;
struct Platform;
struct Program;
enum class InstallState;

/// What a look-up has found. The record says something only when the status is MdbOk.
struct Lookup {
    MdbStatus Status = MdbEnd;
    InstalledRecord Record;

    bool Found() const { return Status == MdbOk; }
    bool Failed() const { return Status == MdbError; }
    bool operator==(const Lookup&) const = default;
};

/// The rows of a query for installed manuals, for one walk. The query runs and the first row is read at once, each next
/// row when the walk comes to it. An error, or a row that cannot be read, ends the walk; ReachedEnd tells. Every row
/// also goes into Program::Installed.
class InstalledRows {
  public:
    /// What tells whether a manual is a PDF: its files on disk, the row's column of M_type, or nothing.
    enum class FormSource { Files, TypeTable, None };

    InstalledRows(Program& program, clsMDB& database, std::int16_t slot, const std::wstring& query, FormSource form);

    struct Iterator {
        InstalledRows* Rows;
        const InstalledRecord& operator*() const { return Rows->current_.Record; }
        void operator++() { Rows->MoveNext(); }
        bool operator==(std::default_sentinel_t) const { return !Rows->current_.Found(); }
    };
    Iterator begin() { return {this}; }
    std::default_sentinel_t end() const { return {}; }

    /// The row that the walk has come to.
    const Lookup& Current() const { return current_; }
    bool ReachedEnd() const { return current_.Status == MdbEnd; }

  private:
    void MoveNext();
    Lookup TakeRow(MdbStatus status) const;
    InstalledRecord ReadRow() const;

    Program* program_;
    clsMDB* database_;
    std::int16_t slot_;
    FormSource form_;
    Lookup current_;
};

/// Looks a publication up.
[[nodiscard]] Lookup FindInstalledRecord(Program& program, const std::wstring& pubNo);
/// The first of several publications, which are in order, that is installed.
[[nodiscard]] Lookup FindFirstInstalled(Program& program, const std::vector<std::wstring>& pubNos);
/// INSPath of the most recent installation, "" when nothing is installed or the catalogue does not answer.
std::wstring GetLastInstallPath(clsMDB& database);
/// The joined list of installed manuals.
[[nodiscard]] InstalledRows OpenInstalledList(Program& program, std::int16_t slot);
/// All rows of M_manage, by a gateway of the caller's; without the manuals' forms.
[[nodiscard]] InstalledRows ReadAllInstalled(Program& program, clsMDB& database, std::int16_t slot);
/// Whether an installed manual is a PDF, by its files on disk.
ManualForm FormByFiles(Platform& platform, const InstalledRecord& record);

/// Records a manual of the disc as installed in `installPath`, in one transaction: its old rows go, the new ones come.
/// `dateChoice` New records InstallTime1, any other InstallTime2. False leaves the catalogue as it was.
[[nodiscard]] bool RegisterInstalledManual(Program& program, const DiscCatalogueRecord& manual,
                                           const std::wstring& installPath, InstallState dateChoice);
/// Inserts the rows of a record that another database held, with the flag of the manual's form.
[[nodiscard]] bool InsertInstalledRecord(clsMDB& database, const InstalledRecord& record, const std::wstring& pdfFlag);
[[nodiscard]] bool RemoveInstalledManual(clsMDB& database, const std::wstring& pubNo);
/// When it returns true the mark is on the drive, so that what is done to the manual's files may follow.
[[nodiscard]] bool MarkForAdjustment(clsMDB& database, const std::wstring& pubNo);
[[nodiscard]] bool ReregisterInstallPath(clsMDB& database, const std::wstring& pubNo, const std::wstring& path);

/// M_system's MDB_Version; -1 when there is no row, no number or an error.
std::int16_t ReadDatabaseVersion(clsMDB& database);

}  // namespace mip
