#pragma once

#include <string>
#include <vector>

#include "platform/Database.h"
#include "platform/sqlite/SqliteHandle.h"

namespace mip {

/// The rows of one query, read from the file as they are walked.
class SqliteRecordset : public Recordset {
  public:
    SqliteRecordset(SqliteDatabase database, std::wstring sql);

    bool AtEnd() override { return atEnd_; }
    void MoveNext() override;
    FieldValue Field(const std::wstring& name) override;
    FieldValue Field(std::int32_t index) override;

  private:
    struct Column {
        std::string Name;
        bool IsDate = false;
    };

    void RequireRow() const;
    FieldValue Value(int index) const;
    std::wstring Text(int index) const;

    SqliteDatabase database_;
    std::wstring sql_;
    SqliteStatement statement_;
    std::vector<Column> columns_;
    bool atEnd_ = false;
};

}  // namespace mip
