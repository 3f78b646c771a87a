#pragma once

namespace mip {

struct Program;

/// Upgrades the catalogue database in use when the disc brings a newer layout for the same engine, and loads the model
/// order from the disc's database. False, with the reason in the log, when the check or the upgrade failed; the old
/// database is then in place.
[[nodiscard]] bool CheckDatabaseVersion(Program& program);
/// Ends what a power cut in an upgrade left: a missing or unopenable database is put back from the backup, the
/// catalogue gets its grant. Called at start-up before the database is opened; errors leave everything as it is. A
/// backup that no upgrade of this program made is left alone.
void RecoverInterruptedUpgrade(Program& program);

}  // namespace mip
