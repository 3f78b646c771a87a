#include "platform/sqlite/SqliteEngine.h"

#include <utility>

#include "platform/sqlite/CatalogueSchema.h"
#include "platform/sqlite/SqliteConnection.h"
#include "platform/sqlite/SqliteFunctions.h"
#include "platform/sqlite/SqliteRecordset.h"
#include "text/TextTools.h"

namespace mip {
namespace {

// The program uses a connection in one thread.
constexpr int OpenFlags = SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX;
constexpr int BusyTimeout = 5000;  // milliseconds for another program to finish its change

SqliteDatabase OpenFile(const std::wstring& path, int flags, const std::string& vfsName) {
    sqlite3* opened = nullptr;
    const int code =
        sqlite3_open_v2(ToUtf8(path).c_str(), &opened, flags | OpenFlags, vfsName.empty() ? nullptr : vfsName.c_str());
    SqliteDatabase database(opened);
    if (code != SQLITE_OK) {
        throw PlatformError("sqlite3_open_v2", path, static_cast<std::uint32_t>(code));
    }
    return database;
}

/// Nothing here touches the file.
void Configure(sqlite3* database) {
    sqlite3_busy_timeout(database, BusyTimeout);
    // A file from elsewhere may hold anything: its schema is not to run functions or to change itself.
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    RunStatement(database, "PRAGMA synchronous=EXTRA; PRAGMA cell_size_check=ON; PRAGMA temp_store=MEMORY");
    AddSqliteFunctions(database);
}

FieldValue AskFor(sqlite3* database, const std::wstring& pragma) {
    return SqliteRecordset(database, PrepareStatement(database, pragma).get(), pragma).Field(0);
}

/// True when the file ends with a page; the engine itself takes what a last page lacks for zeros.
bool EndsWithPage(sqlite3* database) {
    sqlite3_file* file = nullptr;
    sqlite3_int64 size = 0;
    const FieldValue pageSize = AskFor(database, L"PRAGMA page_size");
    return sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file) == SQLITE_OK &&
           file->pMethods->xFileSize(file, &size) == SQLITE_OK && size % std::get<std::int64_t>(pageSize) == 0;
}

/// Reads the whole file once, so that damage shows now and not in the middle of an installation.
void CheckWhole(sqlite3* database, const std::wstring& path) {
    const FieldValue finding = AskFor(database, L"PRAGMA integrity_check(1)");
    if (finding != FieldValue(L"ok") || !EndsWithPage(database)) {
        throw PlatformError("integrity_check", path, SQLITE_CORRUPT);
    }
}

void CheckCatalogue(sqlite3* database, const std::wstring& path) {
    if (sqlite3_table_column_metadata(database, "main", "M_manage", "Pub_No", nullptr, nullptr, nullptr, nullptr,
                                      nullptr) != SQLITE_OK) {
        throw PlatformError("Open", path, SQLITE_NOTADB);
    }
}

}  // namespace

SqliteEngine::SqliteEngine(std::string vfsName) : vfsName_(std::move(vfsName)) {}

std::unique_ptr<DatabaseConnection> SqliteEngine::Open(const std::wstring& path) {
    SqliteDatabase database = OpenFile(path, SQLITE_OPEN_READWRITE, vfsName_);
    Configure(database.get());
    CheckWhole(database.get(), path);
    CheckCatalogue(database.get(), path);
    return std::make_unique<SqliteConnection>(std::move(database));
}

std::unique_ptr<DatabaseConnection> SqliteEngine::Create(const std::wstring& path, std::int16_t layoutVersion) {
    SqliteDatabase database = OpenFile(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, vfsName_);
    Configure(database.get());
    CreateCatalogueTables(database.get(), layoutVersion);
    return std::make_unique<SqliteConnection>(std::move(database));
}

}  // namespace mip
