#include "tests/windows/automation/AdoStandIn.h"

#include "platform/PlatformError.h"

namespace mip {

namespace {

constexpr std::int32_t CommandTypeText = 1;

ComValue Nothing(ScriptedObject::Arguments) {
    return ComValue();
}

/// Runs an action of the engine; its failure is raised as the provider's error.
template <typename Action>
auto Raising(HRESULT code, Action action) {
    try {
        return action();
    } catch (const PlatformError& error) {
        throw ScriptedError{code, error.Object()};
    }
}

/// In automation's days since 30 December 1899.
double ToAutomationDate(DateTime time) {
    constexpr double dayZero = -25569;
    return static_cast<double>(time.time_since_epoch().count()) / 86400.0 - dayZero;
}

ComValue ToValue(const FieldValue& field) {
    ComValue value;
    VARIANT* const raw = value.Receive();
    if (const auto* text = std::get_if<std::wstring>(&field)) {
        value = ComValue(*text);
    } else if (const auto* number = std::get_if<std::int64_t>(&field)) {
        value = ComValue(static_cast<std::int32_t>(*number));
    } else if (const auto* time = std::get_if<DateTime>(&field)) {
        raw->vt = VT_DATE;
        raw->date = ToAutomationDate(*time);
    } else {
        raw->vt = VT_NULL;
    }
    return value;
}

}  // namespace

struct AdoStandIn::Connection {
    std::wstring ConnectionString;
    std::unique_ptr<DatabaseConnection> Database;
};

ComPointer<IDispatch> AdoStandIn::MakeConnection() {
    auto state = std::make_shared<Connection>();
    auto object = ScriptedObject::Make(script_, L"Connection");
    const auto transaction = [state](void (DatabaseConnection::*action)()) {
        return [state, action](ScriptedObject::Arguments) {
            Raising(UnspecifiedError, [&] { ((*state->Database).*action)(); });
            return ComValue(1);
        };
    };
    object->Settable(L"ConnectionString", [state](ScriptedObject::Arguments arguments) {
        state->ConnectionString = arguments[0].bstrVal;
        return ComValue();
    });
    object->Method(L"Open", [this, state](ScriptedObject::Arguments) {
        const std::wstring dataSource = L"Data Source=";
        const auto start = state->ConnectionString.find(dataSource) + dataSource.size();
        state->Database =
            Raising(UnspecifiedError, [&] { return engine_.Open(state->ConnectionString.substr(start)); });
        return ComValue();
    });
    object->Method(L"Execute", [this, state](ScriptedObject::Arguments arguments) {
        return Raising(ErrorInCommand, [&] { return Execute(*state, arguments); });
    });
    object->Method(L"BeginTrans", transaction(&DatabaseConnection::BeginTransaction))
        .Method(L"CommitTrans", transaction(&DatabaseConnection::CommitTransaction))
        .Method(L"RollbackTrans", transaction(&DatabaseConnection::RollbackTransaction))
        .Method(L"Close", Nothing);
    return ComPointer<IDispatch>(object.release());
}

ComValue AdoStandIn::Execute(Connection& connection, ScriptedObject::Arguments arguments) {
    const std::wstring sql(arguments[0].bstrVal, SysStringLen(arguments[0].bstrVal));
    if (arguments[2].lVal == CommandTypeText) {
        return MakeRecordset(connection.Database->Query(sql));
    }
    connection.Database->Execute(sql);
    // A statement without rows gives a closed recordset.
    return ObjectValue(ScriptedObject::Make(script_, L"Recordset"));
}

ComValue AdoStandIn::MakeRecordset(std::shared_ptr<Recordset> recordset) {
    auto object = ScriptedObject::Make(script_, L"Recordset");
    object->Property(L"EOF", [recordset](auto) { return ComValue(recordset->AtEnd()); })
        .Property(L"Fields", MakeFields(recordset))
        .Method(L"MoveNext", [recordset](auto) {
            Raising(NoCurrentRow, [&] { recordset->MoveNext(); });
            return ComValue();
        });
    return ObjectValue(std::move(object));
}

ComValue AdoStandIn::MakeFields(std::shared_ptr<Recordset> recordset) {
    auto object = ScriptedObject::Make(script_, L"Fields");
    object->Property(L"Item", [this, recordset](ScriptedObject::Arguments arguments) {
        const VARIANT& key = arguments[0];
        const FieldValue value = Raising(recordset->AtEnd() ? NoCurrentRow : NoSuchItem, [&] {
            return key.vt == VT_BSTR ? recordset->Field(key.bstrVal) : recordset->Field(key.lVal);
        });
        auto field = ScriptedObject::Make(script_, L"Field");
        field->Property(L"Value", ToValue(value));
        return ObjectValue(std::move(field));
    });
    return ObjectValue(std::move(object));
}

}  // namespace mip
