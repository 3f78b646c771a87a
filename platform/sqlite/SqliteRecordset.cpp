#include "platform/sqlite/SqliteRecordset.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

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

/// In a packed row each cell is its type, one of the engine's or this, the number of its bytes, and these.
constexpr char DateType = 0;

struct PackedCell {
    char Type;
    std::string_view Bytes;
};

void Append(std::string& row, const PackedCell& cell) {
    const auto size = static_cast<std::uint32_t>(cell.Bytes.size());
    row.append(1, cell.Type).append(reinterpret_cast<const char*>(&size), sizeof size).append(cell.Bytes);
}

PackedCell TakeCell(std::string_view& row) {
    const char type = row.front();
    std::uint32_t size = 0;
    std::memcpy(&size, row.data() + 1, sizeof size);
    const std::string_view bytes = row.substr(1 + sizeof size, size);
    row.remove_prefix(1 + sizeof size + size);
    return {type, bytes};
}

template <typename Value>
void AppendValue(std::string& row, char type, Value value) {
    Append(row, {type, {reinterpret_cast<const char*>(&value), sizeof value}});
}

template <typename Value>
Value ValueOf(std::string_view bytes) {
    Value value{};
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

void AppendCell(std::string& row, sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_NULL:
            return Append(row, {SQLITE_NULL, {}});
        case SQLITE_INTEGER:
            return AppendValue(row, SQLITE_INTEGER, std::int64_t{sqlite3_column_int64(statement, column)});
        case SQLITE_FLOAT:
            return AppendValue(row, SQLITE_FLOAT, sqlite3_column_double(statement, column));
        case SQLITE_TEXT: {
            const std::string_view text = TextOf(statement, column);
            return IsDateColumn(statement, column) ? AppendValue(row, DateType, ParseDate(text))
                                                   : Append(row, {SQLITE_TEXT, text});
        }
        default:
            throw PlatformError("read a field", FromUtf8(sqlite3_column_name(statement, column)), SQLITE_MISMATCH);
    }
}

FieldValue Unpacked(const PackedCell& cell) {
    switch (cell.Type) {
        case SQLITE_INTEGER:
            return ValueOf<std::int64_t>(cell.Bytes);
        case SQLITE_FLOAT:
            return ValueOf<double>(cell.Bytes);
        case SQLITE_TEXT:
            return FromUtf8(cell.Bytes);
        case DateType:
            return ValueOf<DateTime>(cell.Bytes);
        default:
            return std::monostate{};
    }
}

}  // namespace

SqliteRecordset::SqliteRecordset(sqlite3* database, sqlite3_stmt* statement, const std::wstring& sql) {
    const int columns = sqlite3_column_count(statement);
    if (columns == 0) {
        throw PlatformError("Query", sql, SQLITE_MISUSE);
    }
    std::string row;
    while (StepStatement(database, statement, sql)) {
        row.clear();
        for (int column = 0; column < columns; ++column) {
            AppendCell(row, statement, column);
        }
        rows_.push_back(row);
    }
    for (int column = 0; column < columns && !rows_.empty(); ++column) {
        columns_.push_back(FromUtf8(sqlite3_column_name(statement, column)));
    }
}

void SqliteRecordset::MoveNext() {
    (void)CurrentRow();
    rows_.pop_front();
}

FieldValue SqliteRecordset::Field(const std::wstring& name) {
    (void)CurrentRow();
    const auto column = std::ranges::find_if(columns_, [&](const auto& other) { return EqualInAscii(other, name); });
    if (column == columns_.end()) {
        throw PlatformError("Field", name, SQLITE_RANGE);
    }
    return Field(static_cast<std::int32_t>(column - columns_.begin()));
}

FieldValue SqliteRecordset::Field(std::int32_t index) {
    std::string_view row = CurrentRow();
    if (index < 0 || static_cast<std::size_t>(index) >= columns_.size()) {
        throw PlatformError("Field", std::to_wstring(index), SQLITE_RANGE);
    }
    for (std::int32_t before = 0; before < index; ++before) {
        TakeCell(row);
    }
    return Unpacked(TakeCell(row));
}

const std::string& SqliteRecordset::CurrentRow() const {
    if (rows_.empty()) {
        throw PlatformError("Recordset", L"no current row", SQLITE_MISUSE);
    }
    return rows_.front();
}

}  // namespace mip
