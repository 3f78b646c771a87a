#include "platform/windows/AdoEngine.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "platform/PlatformError.h"
#include "platform/windows/ComAutomation.h"

namespace mip {

namespace {

// ADO's ConnectOptionEnum, CommandTypeEnum and ExecuteOptionEnum.
constexpr std::int32_t OptionUnspecified = -1;
constexpr std::int32_t CommandTypeText = 1;

/// Automation counts days from 30 December 1899; before that day the fraction still counts forward within the day.
DateTime FromAutomationDate(double date) {
    using namespace std::chrono;
    const double wholeDays = std::trunc(date);
    const auto timeOfDay = seconds(std::llround(std::abs(date - wholeDays) * 86400.0));
    return ZeroDate + days(static_cast<int>(wholeDays)) + timeOfDay;
}

FieldValue ToFieldValue(const ComValue& value) {
    switch (value.Raw().vt) {
        case VT_EMPTY:
        case VT_NULL:
            return std::monostate();
        case VT_BOOL:
        case VT_I1:
        case VT_I2:
        case VT_I4:
        case VT_I8:
        case VT_INT:
        case VT_UI1:
        case VT_UI2:
        case VT_UI4:
        case VT_UI8:
        case VT_UINT:
            return std::int64_t{value.As(VT_I8).Raw().llVal};
        case VT_R4:
        case VT_R8:
        case VT_CY:
        case VT_DECIMAL:
            return value.As(VT_R8).Raw().dblVal;
        case VT_DATE:
            return FromAutomationDate(value.Raw().date);
        default:
            return value.Text();
    }
}

class AdoRecordset : public Recordset {
  public:
    explicit AdoRecordset(ComObject recordset)
        : recordset_(std::move(recordset)), fields_(recordset_.Get(L"Fields").Object()) {}

    bool AtEnd() override { return recordset_.Get(L"EOF").Boolean(); }
    void MoveNext() override { recordset_.Call(L"MoveNext"); }
    FieldValue Field(const std::wstring& name) override { return Value(name); }
    FieldValue Field(std::int32_t index) override { return Value(index); }

  private:
    FieldValue Value(const ComValue& key) { return ToFieldValue(fields_.Get(L"Item", {key}).Object().Get(L"Value")); }

    ComObject recordset_;
    ComObject fields_;
};

class AdoConnection : public DatabaseConnection {
  public:
    explicit AdoConnection(ComObject connection) : connection_(std::move(connection)) {}

    /// Closed by name, so that the file is free at once even if a recordset still holds the connection.
    ~AdoConnection() override {
        try {
            connection_.Call(L"Close");
        } catch (const std::exception&) {
            // The reference goes all the same, and the provider closes what is left.
        }
    }

    void Execute(const std::wstring& sql) override {
        connection_.Call(L"Execute", {sql, ComValue::Missing(), OptionUnspecified});
    }

    std::unique_ptr<Recordset> Query(const std::wstring& sql) override {
        const ComValue recordset = connection_.Call(L"Execute", {sql, ComValue::Missing(), CommandTypeText});
        return std::make_unique<AdoRecordset>(recordset.Object());
    }

    void BeginTransaction() override { connection_.Call(L"BeginTrans"); }
    void CommitTransaction() override { connection_.Call(L"CommitTrans"); }
    void RollbackTransaction() override { connection_.Call(L"RollbackTrans"); }

  private:
    ComObject connection_;
};

}  // namespace

std::unique_ptr<DatabaseConnection> AdoEngine::Open(const std::wstring& path) {
    ComObject connection = ComObject::Create(L"ADODB.Connection");
    connection.Put(L"ConnectionString", L"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
    // The connection string is the property's: empty here, like user and password.
    connection.Call(L"Open", {L"", L"", L"", OptionUnspecified});
    return std::make_unique<AdoConnection>(std::move(connection));
}

}  // namespace mip
