#pragma once

#include <deque>
#include <string>
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

    bool AtEnd() override { return rows_.empty(); }
    void MoveNext() override;
    FieldValue Field(const std::wstring& name) override;
    FieldValue Field(std::int32_t index) override;

  private:
    const std::string& CurrentRow() const;

    std::vector<std::wstring> columns_;  ///< none where there is no row
    std::deque<std::string> rows_;       ///< from the current one on, each packed into a text of its own: they are many
};

}  // namespace mip
