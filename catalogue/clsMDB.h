#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/Database.h"
#include "platform/Platform.h"

namespace mip {

/// Status codes of the gateway's operations.
enum MdbStatus : std::int16_t {
    MdbOk = 0,      ///< done; a query has at least one row; a move stands on a row
    MdbEnd = 1,     ///< a query has no row; a move went past the last row
    MdbError = -1,  ///< the engine reported an error
};

/// The result sets by their use, so that no walk takes another's.
enum MdbSlot : std::int16_t {
    RecordsSlot = 0,        ///< all rows of M_manage
    LookUpSlot = 1,         ///< one publication
    LastPathSlot = 2,       ///< the most recent installation
    SystemSlot = 3,         ///< the layout's version
    InstalledListSlot = 4,  ///< the rows of M_manage with their forms, or the forms alone
    ModelOrderSlot = 7,     ///< all rows of M_order
};

/// The one gateway to a catalogue database: a connection and eleven numbered result sets. The engine is chosen by the
/// file's first bytes. A slot outside 0 to 10 throws std::out_of_range.
class clsMDB {
  public:
    explicit clsMDB(Platform& platform);

    /// True when the database is open. A failed open leaves the gateway closed.
    [[nodiscard]] bool Pcls_MdbOpen(const std::wstring& databasePath);
    [[nodiscard]] MdbStatus Pcls_MdbExecute(const std::wstring& sql);
    /// Runs a query into a slot, replacing the slot's previous result set. After an error the slot is empty.
    [[nodiscard]] MdbStatus Pcls_MdbCreate(std::int16_t slot, const std::wstring& sql);
    [[nodiscard]] MdbStatus Pcls_MdbMoveNext(std::int16_t slot);
    /// The current row's field, or `defaultValue` when it is Null. Throws PlatformError.
    FieldValue Pcls_MdbGetField(std::int16_t slot, const std::wstring& field, const FieldValue& defaultValue);
    FieldValue Pcls_MdbGetField(std::int16_t slot, std::int32_t field, const FieldValue& defaultValue);
    /// The transaction operations return 0 and throw PlatformError.
    MdbStatus Pcls_MdbBeginTrans();
    MdbStatus Pcls_MdbCommitTrans();
    MdbStatus Pcls_MdbRollback();

    /// True when both have a database open, and one engine serves them.
    bool IsOfSameEngine(const clsMDB& other) const { return engine_ != nullptr && engine_ == other.engine_; }
    /// Where routines that use the database say which errors they trap.
    FaultLog& TrapLog() const { return platform_.FaultLog; }

  private:
    static constexpr std::int16_t SlotCount = 11;

    DatabaseConnection& Connection() const;
    std::unique_ptr<Recordset>& Slot(std::int16_t slot);
    Recordset& OpenSlot(std::int16_t slot);

    Platform& platform_;
    const DatabaseEngine* engine_ = nullptr;  ///< null while nothing is open
    std::unique_ptr<DatabaseConnection> connection_;
    std::array<std::unique_ptr<Recordset>, SlotCount> slots_;
};

}  // namespace mip
