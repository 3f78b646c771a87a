#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/PlatformError.h"

namespace mip {

struct SqliteCloser {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
/// An open database; its end closes the file.
using SqliteDatabase = std::unique_ptr<sqlite3, SqliteCloser>;

struct SqliteStatementCloser {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteStatementCloser>;

/// The error of the database's last call, with the engine's extended result code and text.
PlatformError SqliteError(std::string_view operation, const std::wstring& object, sqlite3* database);

/// Compiles exactly one statement. Throws PlatformError for anything else.
SqliteStatement PrepareStatement(sqlite3* database, const std::wstring& sql);
/// True when the statement stands on a row, false when it has run to its end. Throws PlatformError.
bool StepStatement(sqlite3* database, sqlite3_stmt* statement, const std::wstring& sql);
/// Runs statements of the engine's own that give no rows.
void RunStatement(sqlite3* database, const char* sql);

}  // namespace mip
