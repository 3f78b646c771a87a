#pragma once

#include "app/Program.h"

namespace mip {

/// Upgrades the catalogue database in use when the disc brings a newer layout, and loads the model order from the
/// disc's database. False when the check or the upgrade failed; the old database is then in place.
[[nodiscard]] bool CheckDatabaseVersion(Program& program);
/// Puts back the backup copy that a power cut in an upgrade left beside a missing or unopenable database. Called at
/// start-up before the database is opened; errors leave everything as it is.
void RecoverInterruptedUpgrade(Program& program);

}  // namespace mip
