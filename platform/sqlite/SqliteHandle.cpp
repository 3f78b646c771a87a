#include "platform/sqlite/SqliteHandle.h"

#include "text/TextTools.h"

namespace mip {
namespace {

bool IsBlank(const char* text) {
    return std::string_view(text).find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

}  // namespace

PlatformError SqliteError(std::string_view operation, const std::wstring& object, sqlite3* database) {
    return PlatformError(operation, object, static_cast<std::uint32_t>(sqlite3_extended_errcode(database)),
                         FromUtf8(sqlite3_errmsg(database)));
}

SqliteStatement PrepareStatement(sqlite3* database, const std::wstring& sql) {
    const std::string text = ToUtf8(sql);
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size() + 1), &statement, &rest) != SQLITE_OK) {
        throw SqliteError("sqlite3_prepare_v2", sql, database);
    }
    SqliteStatement result(statement);
    if (!result || !IsBlank(rest)) {
        throw PlatformError("sqlite3_prepare_v2", sql, SQLITE_ERROR);
    }
    return result;
}

bool StepStatement(sqlite3* database, sqlite3_stmt* statement, const std::wstring& sql) {
    const int code = sqlite3_step(statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        throw SqliteError("sqlite3_step", sql, database);
    }
    return code == SQLITE_ROW;
}

void RunStatement(sqlite3* database, const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw SqliteError("sqlite3_exec", FromUtf8(sql), database);
    }
}

}  // namespace mip
