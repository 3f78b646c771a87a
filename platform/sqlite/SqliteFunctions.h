#pragma once

#include "platform/sqlite/SqliteHandle.h"

namespace mip {

/// Gives a connection the functions that the catalogue's statements call and the engine lacks:
/// CDate(text), a date as sortable text "yyyy-mm-dd hh:mm:ss".
void AddSqliteFunctions(sqlite3* database);

}  // namespace mip
