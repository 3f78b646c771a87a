#include "platform/sqlite/SqliteRecordset.h"

#include <utility>

#include "app/Checked.h"
#include "app/DateText.h"
#include "app/TextTools.h"

namespace mip {

SqliteRecordset::SqliteRecordset(SqliteDatabase database, std::wstring sql)
    : database_(std::move(database)), sql_(std::move(sql)), statement_(PrepareStatement(database_.get(), sql_)) {
    const int count = sqlite3_column_count(statement_.get());
    if (count == 0) {
        throw PlatformError("Query", sql_, SQLITE_MISUSE);
    }
    atEnd_ = !StepStatement(database_.get(), statement_.get(), sql_);
    for (int index = 0; index < count; ++index) {
        const char* declared = sqlite3_column_decltype(statement_.get(), index);
        columns_.push_back({sqlite3_column_name(statement_.get(), index),
                            declared != nullptr && sqlite3_stricmp(declared, "DATETIME") == 0});
    }
}

void SqliteRecordset::MoveNext() {
    RequireRow();
    atEnd_ = true;  // also after an error: the row that stood here is gone
    atEnd_ = !StepStatement(database_.get(), statement_.get(), sql_);
}

FieldValue SqliteRecordset::Field(const std::wstring& name) {
    RequireRow();
    const std::string wanted = ToUtf8(name);
    for (std::size_t index = 0; index < columns_.size(); ++index) {
        if (sqlite3_stricmp(columns_[index].Name.c_str(), wanted.c_str()) == 0) {
            return Value(static_cast<int>(index));
        }
    }
    throw PlatformError("Field", name, SQLITE_RANGE);
}

FieldValue SqliteRecordset::Field(std::int32_t index) {
    RequireRow();
    if (index < 0 || static_cast<std::size_t>(index) >= columns_.size()) {
        throw PlatformError("Field", std::to_wstring(index), SQLITE_RANGE);
    }
    return Value(index);
}

void SqliteRecordset::RequireRow() const {
    if (atEnd_) {
        throw PlatformError("Recordset", sql_, SQLITE_MISUSE);
    }
}

FieldValue SqliteRecordset::Value(int index) const {
    switch (sqlite3_column_type(statement_.get(), index)) {
        case SQLITE_NULL:
            return std::monostate{};
        case SQLITE_INTEGER:
            return static_cast<std::int64_t>(sqlite3_column_int64(statement_.get(), index));
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement_.get(), index);
        case SQLITE_TEXT:
            break;
        default:
            throw PlatformError("Field", sql_, SQLITE_MISMATCH);
    }
    if (!columns_[static_cast<std::size_t>(index)].IsDate) {
        return Text(index);
    }
    try {
        return ParseDateTime(Text(index));
    } catch (const ConversionError&) {
        throw PlatformError("Field", sql_, SQLITE_MISMATCH);
    }
}

std::wstring SqliteRecordset::Text(int index) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), index));
    const int size = sqlite3_column_bytes(statement_.get(), index);
    if (bytes == nullptr) {
        throw SqliteError("sqlite3_column_text", sql_, database_.get());
    }
    return FromUtf8(std::string_view(bytes, static_cast<std::size_t>(size)));
}

}  // namespace mip
