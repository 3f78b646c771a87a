#include "platform/sqlite/SqliteConnection.h"

#include <utility>

#include "platform/sqlite/SqliteRecordset.h"

namespace mip {

SqliteConnection::SqliteConnection(SqliteDatabase database) : database_(std::move(database)) {}

void SqliteConnection::Execute(const std::wstring& sql) {
    const SqliteRun run = statements_.Start(sql);
    while (StepStatement(database_.get(), run.Get(), sql)) {
    }
}

std::unique_ptr<Recordset> SqliteConnection::Query(const std::wstring& sql) {
    return std::make_unique<SqliteRecordset>(database_.get(), statements_.Start(sql).Get(), sql);
}

void SqliteConnection::BeginTransaction() {
    RunStatement(database_.get(), "BEGIN IMMEDIATE");
}

void SqliteConnection::CommitTransaction() {
    RunStatement(database_.get(), "COMMIT");
}

void SqliteConnection::RollbackTransaction() {
    if (sqlite3_get_autocommit(database_.get()) == 0) {
        RunStatement(database_.get(), "ROLLBACK");
    }
}

}  // namespace mip
