#pragma once

#include <deque>
#include <string>
#include <variant>
#include <vector>

#include "platform/Database.h"
#include "platform/sqlite/SqliteHandle.h"

namespace mip {

/// The rows of one query. They are read at once, so that no lock on the file and no view of it outlives the query:
/// while a caller walks the rows, this connection and others may change the database.
class SqliteRecordset : public Recordset {
  public:
    /// Throws PlatformError, also for a statement that gives no rows; `sql` is its text.
    SqliteRecordset(sqlite3* database, sqlite3_stmt* statement, const std::wstring& sql);

    bool AtEnd() override { return row_ * columns_.size() == cells_.size(); }
    void MoveNext() override;
    FieldValue Field(const std::wstring& name) override;
    FieldValue Field(std::int32_t index) override;

  private:
    /// Where a text lies in texts_, so that a cell costs no allocation.
    struct Text {
        std::size_t Begin;
        std::size_t Size;
    };
    using Cell = std::variant<std::monostate, Text, std::int64_t, double, DateTime>;

    Cell ReadCell(sqlite3_stmt* statement, int column);
    FieldValue ValueOf(const Cell& cell) const;
    void RequireRow();

    std::vector<std::wstring> columns_;  ///< none where there is no row
    std::deque<Cell> cells_;             ///< row by row
    std::string texts_;                  ///< those of all cells, as UTF-8
    std::size_t row_ = 0;
};

}  // namespace mip
