#pragma once

#include <string>
#include <vector>

#include "platform/sqlite/SqliteHandle.h"

namespace mip {

/// One run of a statement, ready for its first step. At its end the statement lets go of the file.
class SqliteRun {
  public:
    /// `values` are the statement's parameters, in order. Throws PlatformError.
    SqliteRun(sqlite3_stmt* statement, std::vector<std::string> values);
    SqliteRun(const SqliteRun&) = delete;
    SqliteRun& operator=(const SqliteRun&) = delete;
    ~SqliteRun();

    sqlite3_stmt* Get() const { return statement_; }

  private:
    sqlite3_stmt* statement_;
    std::vector<std::string> values_;
};

/// The statements of a connection. Those that differ in nothing but their text literals are compiled once: the texts
/// become the parameters.
class SqliteStatements {
  public:
    explicit SqliteStatements(sqlite3* database) : database_(database) {}

    /// One run at a time. Throws PlatformError for anything but one statement.
    SqliteRun Start(const std::wstring& sql);

  private:
    struct Compiled {
        std::string Text;
        SqliteStatement Statement;
    };

    sqlite3_stmt* Find(const std::string& text, std::size_t parameters);

    sqlite3* database_;
    std::vector<Compiled> compiled_;
    SqliteStatement single_;  ///< the last one that could not be compiled without its texts
};

}  // namespace mip
