#include "platform/sqlite/SqliteRecordset.h"

#include <algorithm>

#include "text/Checked.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

std::string_view TextOf(sqlite3_stmt* statement, int column) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    if (bytes == nullptr) {
        throw PlatformError("sqlite3_column_text", L"", SQLITE_NOMEM);
    }
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

DateTime ParseDate(std::string_view bytes) {
    const std::wstring text = FromUtf8(bytes);
    try {
        return ParseDateTime(text);
    } catch (const ConversionError&) {
        throw PlatformError("read a date", text, SQLITE_MISMATCH);
    }
}

bool IsDateColumn(sqlite3_stmt* statement, int column) {
    const char* declared = sqlite3_column_decltype(statement, column);
    return declared != nullptr && sqlite3_stricmp(declared, "DATETIME") == 0;
}

}  // namespace

SqliteRecordset::SqliteRecordset(sqlite3* database, sqlite3_stmt* statement, const std::wstring& sql) {
    const int columns = sqlite3_column_count(statement);
    if (columns == 0) {
        throw PlatformError("Query", sql, SQLITE_MISUSE);
    }
    while (StepStatement(database, statement, sql)) {
        for (int column = 0; column < columns; ++column) {
            cells_.push_back(ReadCell(statement, column));
        }
    }
    for (int column = 0; column < columns && !cells_.empty(); ++column) {
        columns_.push_back(FromUtf8(sqlite3_column_name(statement, column)));
    }
}

void SqliteRecordset::MoveNext() {
    RequireRow();
    ++row_;
}

FieldValue SqliteRecordset::Field(const std::wstring& name) {
    RequireRow();
    const auto column = std::ranges::find_if(columns_, [&](const auto& other) { return EqualInAscii(other, name); });
    if (column == columns_.end()) {
        throw PlatformError("Field", name, SQLITE_RANGE);
    }
    return Field(static_cast<std::int32_t>(column - columns_.begin()));
}

FieldValue SqliteRecordset::Field(std::int32_t index) {
    RequireRow();
    if (index < 0 || static_cast<std::size_t>(index) >= columns_.size()) {
        throw PlatformError("Field", std::to_wstring(index), SQLITE_RANGE);
    }
    return ValueOf(cells_[row_ * columns_.size() + static_cast<std::size_t>(index)]);
}

SqliteRecordset::Cell SqliteRecordset::ReadCell(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_NULL:
            return std::monostate{};
        case SQLITE_INTEGER:
            return static_cast<std::int64_t>(sqlite3_column_int64(statement, column));
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement, column);
        case SQLITE_TEXT: {
            const std::string_view text = TextOf(statement, column);
            if (IsDateColumn(statement, column)) {
                return ParseDate(text);
            }
            texts_ += text;
            return Text{texts_.size() - text.size(), text.size()};
        }
        default:
            throw PlatformError("read a field", FromUtf8(sqlite3_column_name(statement, column)), SQLITE_MISMATCH);
    }
}

FieldValue SqliteRecordset::ValueOf(const Cell& cell) const {
    return std::visit(
        [this](const auto& value) -> FieldValue {
            if constexpr (requires { value.Begin; }) {
                return FromUtf8(std::string_view(texts_).substr(value.Begin, value.Size));
            } else {
                return value;
            }
        },
        cell);
}

void SqliteRecordset::RequireRow() {
    if (AtEnd()) {
        throw PlatformError("Recordset", L"no current row", SQLITE_MISUSE);
    }
}

}  // namespace mip
