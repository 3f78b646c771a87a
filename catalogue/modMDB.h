#pragma once

#include <string>

#include "catalogue/clsMDB.h"

namespace mip {

struct DiscCatalogueRecord;
struct InstalledRecord;
struct Platform;
struct Program;
enum class InstallState;

/// Looks a publication up; when found its row is in Program::Installed.
[[nodiscard]] MdbStatus FindInstalledRecord(Program& program, const std::wstring& pubNo);
/// INSPath of the most recent installation, "" when nothing is installed.
std::wstring GetLastInstallPath(Program& program);

/// Opens the joined list of installed manuals and reads its first row into Program::Installed.
[[nodiscard]] MdbStatus OpenInstalledList(Program& program, std::int16_t slot);
/// The list's next row.
[[nodiscard]] MdbStatus NextInstalledListRow(Program& program, std::int16_t slot);

/// All rows of M_manage in a gateway of the caller's; the first, then each next row goes into `record`.
[[nodiscard]] MdbStatus ReadAllInstalled(Platform& platform, clsMDB& database, std::int16_t slot,
                                         InstalledRecord& record);
[[nodiscard]] MdbStatus ReadNextInstalled(Platform& platform, clsMDB& database, std::int16_t slot,
                                          InstalledRecord& record);

/// Records a manual of the disc as installed in `installPath`, in one transaction: its old rows go, the new ones come.
/// `dateChoice` New records InstallTime1, any other InstallTime2. False leaves the catalogue as it was.
[[nodiscard]] bool RegisterInstalledManual(Program& program, const DiscCatalogueRecord& manual,
                                           const std::wstring& installPath, InstallState dateChoice);
/// Inserts the rows of a record that another database held.
[[nodiscard]] bool InsertInstalledRecord(clsMDB& database, const InstalledRecord& record);
[[nodiscard]] bool RemoveInstalledManual(clsMDB& database, const std::wstring& pubNo);
/// When it returns true the mark is on the drive, so that what is done to the manual's files may follow.
[[nodiscard]] bool MarkForAdjustment(clsMDB& database, const std::wstring& pubNo);
[[nodiscard]] bool ReregisterInstallPath(clsMDB& database, const std::wstring& pubNo, const std::wstring& path);

/// M_system's MDB_Version; -1 when there is no row, no number or an error.
std::int16_t ReadDatabaseVersion(clsMDB& database);

}  // namespace mip
