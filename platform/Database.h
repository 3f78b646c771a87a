#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "text/DateTime.h"

namespace mip {

/// A field's value as the engine gives it. std::monostate is Null.
using FieldValue = std::variant<std::monostate, std::wstring, std::int64_t, double, DateTime>;

/// The rows of one query, walked forward once. Operations throw PlatformError with the engine's code.
class Recordset {
  public:
    virtual ~Recordset() = default;

    virtual bool AtEnd() = 0;
    virtual void MoveNext() = 0;
    /// By column name, without regard to case. Throws for an unknown column, and when no row is current.
    virtual FieldValue Field(const std::wstring& name) = 0;
    /// By column number, from 0.
    virtual FieldValue Field(std::int32_t index) = 0;
};

/// One open database; releasing it closes the file. Operations throw PlatformError with the engine's code.
class DatabaseConnection {
  public:
    virtual ~DatabaseConnection() = default;

    virtual void Execute(const std::wstring& sql) = 0;
    virtual std::unique_ptr<Recordset> Query(const std::wstring& sql) = 0;
    virtual void BeginTransaction() = 0;
    virtual void CommitTransaction() = 0;
    virtual void RollbackTransaction() = 0;
};

class DatabaseEngine {
  public:
    virtual ~DatabaseEngine() = default;

    /// Opens an existing database file; a read-only file opens read-only. Throws PlatformError for a file that is
    /// missing, damaged or not this engine's.
    virtual std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) = 0;
};

}  // namespace mip
