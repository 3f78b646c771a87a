#include "catalogue/clsMDB.h"

#include <stdexcept>
#include <string_view>

#include "platform/Files.h"
#include "platform/PlatformError.h"

namespace mip {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::string_view JetSignature = "\0\1\0\0Standard Jet DB\0"sv;
constexpr std::string_view SqliteSignature = "SQLite format 3\0"sv;
constexpr std::uint32_t NoCurrentRow = 3021;      // ADO's number for a recordset that stands on no row
constexpr std::uint32_t UnknownFormat = 3343;     // Jet's number for a file that is no database
constexpr std::uint32_t ConnectionClosed = 3704;  // and for an object that is not open

/// The engine whose file this is. Throws PlatformError when it cannot be read or is of none.
DatabaseEngine& EngineOf(Platform& platform, const std::wstring& databasePath) {
    const std::string start = platform.Files.Read(databasePath, JetSignature.size());
    if (start.starts_with(JetSignature)) {
        return platform.JetEngine;
    }
    if (start.starts_with(SqliteSignature)) {
        return platform.SqliteEngine;
    }
    throw PlatformError("Open", databasePath, UnknownFormat, L"neither a Jet nor an SQLite database");
}

FieldValue OrDefault(FieldValue value, const FieldValue& defaultValue) {
    if (std::holds_alternative<std::monostate>(value)) {
        return defaultValue;
    }
    return value;
}

}  // namespace

clsMDB::clsMDB(Platform& platform) : platform_(platform) {}

bool clsMDB::Pcls_MdbOpen(const std::wstring& databasePath) {
    slots_ = {};
    connection_.reset();
    engine_ = nullptr;
    try {
        DatabaseEngine& engine = EngineOf(platform_, databasePath);
        connection_ = engine.Open(databasePath);
        engine_ = &engine;
        return true;
    } catch (const PlatformError& error) {
        TrapLog().Trapped("opening a database", error);
        return false;
    }
}

MdbStatus clsMDB::Pcls_MdbExecute(const std::wstring& sql) {
    try {
        Connection().Execute(sql);
        return MdbOk;
    } catch (const PlatformError& error) {
        TrapLog().Trapped("executing a statement", error);
        return MdbError;
    }
}

MdbStatus clsMDB::Pcls_MdbCreate(std::int16_t slot, const std::wstring& sql) {
    std::unique_ptr<Recordset>& place = Slot(slot);
    place.reset();
    try {
        std::unique_ptr<Recordset> recordset = Connection().Query(sql);
        const MdbStatus status = recordset->AtEnd() ? MdbEnd : MdbOk;
        place = std::move(recordset);
        return status;
    } catch (const PlatformError& error) {
        TrapLog().Trapped("running a query", error);
        return MdbError;
    }
}

MdbStatus clsMDB::Pcls_MdbMoveNext(std::int16_t slot) {
    const std::unique_ptr<Recordset>& recordset = Slot(slot);
    try {
        if (!recordset || recordset->AtEnd()) {
            return MdbError;
        }
        recordset->MoveNext();
        return recordset->AtEnd() ? MdbEnd : MdbOk;
    } catch (const PlatformError& error) {
        TrapLog().Trapped("moving to the next row", error);
        return MdbError;
    }
}

FieldValue clsMDB::Pcls_MdbGetField(std::int16_t slot, const std::wstring& field, const FieldValue& defaultValue) {
    return OrDefault(OpenSlot(slot).Field(field), defaultValue);
}

FieldValue clsMDB::Pcls_MdbGetField(std::int16_t slot, std::int32_t field, const FieldValue& defaultValue) {
    return OrDefault(OpenSlot(slot).Field(field), defaultValue);
}

MdbStatus clsMDB::Pcls_MdbBeginTrans() {
    Connection().BeginTransaction();
    return MdbOk;
}

MdbStatus clsMDB::Pcls_MdbCommitTrans() {
    Connection().CommitTransaction();
    return MdbOk;
}

MdbStatus clsMDB::Pcls_MdbRollback() {
    Connection().RollbackTransaction();
    return MdbOk;
}

DatabaseConnection& clsMDB::Connection() const {
    if (!connection_) {
        throw PlatformError("Connection", L"no database is open", ConnectionClosed);
    }
    return *connection_;
}

std::unique_ptr<Recordset>& clsMDB::Slot(std::int16_t slot) {
    if (slot < 0 || slot >= SlotCount) {
        throw std::out_of_range("result-set slot " + std::to_string(slot));
    }
    return slots_[static_cast<std::size_t>(slot)];
}

Recordset& clsMDB::OpenSlot(std::int16_t slot) {
    const std::unique_ptr<Recordset>& recordset = Slot(slot);
    if (!recordset) {
        throw PlatformError("Recordset", L"slot " + std::to_wstring(slot), NoCurrentRow);
    }
    return *recordset;
}

}  // namespace mip
