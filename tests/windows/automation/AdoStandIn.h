#pragma once

#include <memory>
#include <string>

#include "platform/Database.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {

/// ADO's connection with its recordsets, fields and field objects, over another database engine. Where that engine
/// fails, the objects raise the errors that the provider raises.
class AdoStandIn {
  public:
    static constexpr auto UnspecifiedError = static_cast<HRESULT>(0x80004005);
    static constexpr auto ErrorInCommand = static_cast<HRESULT>(0x80040E14);
    static constexpr auto NoCurrentRow = static_cast<HRESULT>(0x800A0BCD);
    static constexpr auto NoSuchItem = static_cast<HRESULT>(0x800A0CC1);

    AdoStandIn(Script& script, DatabaseEngine& engine) : script_(script), engine_(engine) {}

    ComPointer<IDispatch> MakeConnection();

  private:
    struct Connection;

    ComValue Execute(Connection& connection, ScriptedObject::Arguments arguments);
    ComValue MakeRecordset(std::shared_ptr<Recordset> recordset);
    ComValue MakeFields(std::shared_ptr<Recordset> recordset);

    Script& script_;
    DatabaseEngine& engine_;
};

}  // namespace mip
