#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Database.h"

namespace mip {

/// The embedded database engine. It runs the same statement texts as the other engine:
/// - CDate(text) gives a date; dates are kept as text "yyyy-mm-dd hh:mm:ss", which sorts, and columns declared DATETIME
///   are read back as DateTime.
/// - Text compares by each column's collation, NOCASE in a catalogue: without regard to the case of the letters A to Z.
///   Every other character, full-width and accented letters among them, compares by its code.
/// - A change is on the disk when the statement or the commit returns. Beside the file lies a rollback journal while it
///   is changed; once the connection is closed the file alone is the whole database and can be copied.
///
/// Errors carry the engine's extended result codes.
class SqliteEngine : public DatabaseEngine {
  public:
    /// `vfsName` names a file layer registered with the engine; empty: the system's own.
    explicit SqliteEngine(std::string vfsName = {});

    /// Also throws for a database that is no catalogue. A damaged file is found out here, by reading it whole once. A
    /// file with an unfinished change of an earlier run is first put back to its last whole state; when it cannot be
    /// written, opening fails with SQLITE_READONLY_ROLLBACK.
    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override;
    /// Creates an empty catalogue of a layout version. Throws PlatformError, also when the file holds one already.
    std::unique_ptr<DatabaseConnection> Create(const std::wstring& path, std::int16_t layoutVersion);

  private:
    std::string vfsName_;
};

}  // namespace mip
