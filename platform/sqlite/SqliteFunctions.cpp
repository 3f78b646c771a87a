#include "platform/sqlite/SqliteFunctions.h"

#include <exception>

#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

std::string SortableDate(std::string_view text) {
    return ToUtf8(ReplaceAll(FormatDateTime(ParseDateTime(FromUtf8(text))), L"/", L"-"));
}

/// Called by the engine, so nothing may be thrown out of it.
void CDate(sqlite3_context* context, int, sqlite3_value** arguments) noexcept {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));  // none for Null
    try {
        const std::string date = SortableDate({bytes, static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]))});
        sqlite3_result_text(context, date.c_str(), static_cast<int>(date.size()), SQLITE_TRANSIENT);
    } catch (const std::exception&) {
        sqlite3_result_error_code(context, SQLITE_MISMATCH);
    }
}

}  // namespace

void AddSqliteFunctions(sqlite3* database) {
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    if (sqlite3_create_function_v2(database, "CDate", 1, flags, nullptr, CDate, nullptr, nullptr, nullptr) !=
        SQLITE_OK) {
        throw SqliteError("sqlite3_create_function_v2", L"CDate", database);
    }
}

}  // namespace mip
