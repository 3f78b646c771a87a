#pragma once

#include <sqlite3.h>

#include <cstdint>

namespace mip {

/// Makes the catalogue's four tables in an empty database, with the row of M_system that names their layout.
void CreateCatalogueTables(sqlite3* database, std::int16_t layoutVersion);

}  // namespace mip
