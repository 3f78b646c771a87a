#pragma once

#include <memory>
#include <string>

#include "platform/Database.h"
#include "platform/sqlite/SqliteHandle.h"
#include "platform/sqlite/SqliteStatements.h"

namespace mip {

/// An open catalogue file.
class SqliteConnection : public DatabaseConnection {
  public:
    explicit SqliteConnection(SqliteDatabase database);

    void Execute(const std::wstring& sql) override;
    std::unique_ptr<Recordset> Query(const std::wstring& sql) override;
    void BeginTransaction() override;
    void CommitTransaction() override;
    /// Does nothing when the engine has already rolled back by itself, as it does after a full disk.
    void RollbackTransaction() override;

  private:
    SqliteDatabase database_;
    SqliteStatements statements_{database_.get()};  // gone before the database
};

}  // namespace mip
