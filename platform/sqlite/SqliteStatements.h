#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sqlite/SqliteHandle.h"

namespace mip {

/// A statement with its text literals taken out. One object serves one statement after the other: it keeps its room.
struct SqliteTemplate {
    /// False for a text that cannot be a statement.
    bool Take(std::string_view sql);

    std::string Text;               ///< with "?" for each literal
    std::string Values;             ///< the literals' texts, one behind the other
    std::vector<std::size_t> Ends;  ///< where each of them ends
};

/// One run of a statement, ready for its first step. At its end the statement lets go of the file.
class SqliteRun {
  public:
    explicit SqliteRun(sqlite3_stmt* statement) : statement_(statement) {}
    /// With the template's values, which must outlive the run. Throws PlatformError.
    SqliteRun(sqlite3_stmt* statement, const SqliteTemplate& parts);
    SqliteRun(const SqliteRun&) = delete;
    SqliteRun& operator=(const SqliteRun&) = delete;
    ~SqliteRun();

    sqlite3_stmt* Get() const { return statement_; }

  private:
    sqlite3_stmt* statement_;
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

    sqlite3_stmt* Find();

    sqlite3* database_;
    SqliteTemplate parts_;
    std::vector<Compiled> compiled_;
    SqliteStatement single_;  ///< the last one that could not be compiled without its texts
};

}  // namespace mip
