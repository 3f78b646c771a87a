#include <limits>

#include "platform/PlatformError.h"
#include "startup/windows/WindowsPlatform.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

/// The program's engine for Jet files on ADO's connection, recordset, fields and field.
class AdoTest : public AutomationTest {
  protected:
    std::unique_ptr<DatabaseConnection> Open() {
        script_.Expect({{L"put Connection.ConnectionString(\"Provider=Microsoft.Jet.OLEDB.4.0;"
                         L"Data Source=C:\\試験 1.mdb\")",
                         {}},
                        {L"call Connection.Open(\"\", \"\", \"\", -1)", {}}});
        return engine_.Open(L"C:\\試験 1.mdb");
    }
    std::unique_ptr<Recordset> Select(DatabaseConnection& database) {
        script_.Expect({{L"call Connection.Execute(\"SELECT 1\", missing, 1)", {.Object = L"Recordset"}},
                        {L"get Recordset.Fields()", {.Object = L"Fields"}}});
        return database.Query(L"SELECT 1");
    }
    void ExpectClose(HRESULT result = S_OK) { script_.Expect({{L"call Connection.Close()", {.Code = result}}}); }

    RegisteredClass connectionClass_{L"ADODB.Connection", script_, L"Connection"};
    WindowsPlatform computer_{L"AdoTest"};
    DatabaseEngine& engine_ = computer_.Platform().JetEngine;
};

TEST_F(AdoTest, ConnectionIsOpenedUsedAndClosedByTheProvidersNames) {
    auto database = Open();
    script_.Expect({{L"call Connection.BeginTrans()", {1}},
                    {L"call Connection.Execute(\"DELETE FROM M_type\", missing, -1)", {}},
                    {L"call Connection.CommitTrans()", {}},
                    {L"call Connection.RollbackTrans()", {}}});
    database->BeginTransaction();
    database->Execute(L"DELETE FROM M_type");
    database->CommitTransaction();
    database->RollbackTransaction();

    const auto rows = Select(*database);
    script_.Expect({{L"get Recordset.EOF()", {false}},
                    {L"get Fields.Item(\"Pub_No\")", {.Object = L"Field"}},
                    {L"get Field.Value()", {L"K1"}},
                    {L"get Fields.Item(7)", {.Object = L"Field"}},
                    {L"get Field.Value()", {L"K2"}},
                    {L"call Recordset.MoveNext()", {}}});
    EXPECT_FALSE(rows->AtEnd());
    EXPECT_EQ(rows->Field(L"Pub_No"), FieldValue(L"K1"));
    EXPECT_EQ(rows->Field(7), FieldValue(L"K2"));
    rows->MoveNext();

    ExpectClose();
    database.reset();
    script_.Expect({{L"get Recordset.EOF()", {true}}});
    EXPECT_TRUE(rows->AtEnd()) << "a recordset may outlive its connection";
}

TEST_F(AdoTest, ProvidersErrorsComeWithTheirCodesAndLeaveTheConnectionUsable) {
    const auto failing = [this](const wchar_t* call, std::uint32_t code, const std::function<void()>& action) {
        script_.Rest.push_back({call, {.Code = static_cast<HRESULT>(code), .Description = L"said"}});
        EXPECT_EQ(CodeOf(action), code);
    };
    const auto database = Open();
    const auto rows = Select(*database);
    script_.Rest.push_back(
        {L"put Connection.ConnectionString(\"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=a\")", {}});
    failing(L"call Connection.Open(\"\", \"\", \"\", -1)", 0x80004005, [&] { engine_.Open(L"a"); });
    failing(L"call Connection.Execute(\"DELET\", missing, -1)", 0x80040E14, [&] { database->Execute(L"DELET"); });
    failing(L"call Connection.Execute(\"SELEC\", missing, 1)", 0x80040E14, [&] { database->Query(L"SELEC"); });
    failing(L"call Connection.CommitTrans()", 0x80004005, [&] { database->CommitTransaction(); });
    failing(L"get Fields.Item(\"Absent\")", 0x800A0CC1, [&] { rows->Field(L"Absent"); });
    failing(L"call Recordset.MoveNext()", 0x800A0BCD, [&] { rows->MoveNext(); });
    Select(*database);
    ExpectClose(E_FAIL);
}

ComValue Raw(const std::function<void(VARIANT&)>& fill) {
    ComValue value;
    fill(*value.Receive());
    return value;
}

ComValue Date(double date) {
    return Raw([=](VARIANT& raw) { raw.vt = VT_DATE, raw.date = date; });
}

TEST_F(AdoTest, EveryColumnTypeBecomesItsFieldValue) {
    using namespace std::chrono;
    const std::tuple<const char*, ComValue, FieldValue> cases[] = {
        {"Null", Raw([](VARIANT& raw) { raw.vt = VT_NULL; }), std::monostate()},
        {"nothing", ComValue(), std::monostate()},
        {"text", ComValue(L"日本語 ' text"), L"日本語 ' text"},
        {"text without a buffer", Raw([](VARIANT& raw) { raw.vt = VT_BSTR; }), L""},
        {"byte", Raw([](VARIANT& raw) { raw.vt = VT_UI1, raw.bVal = 255; }), std::int64_t{255}},
        {"16 bits", Raw([](VARIANT& raw) { raw.vt = VT_I2, raw.iVal = -3; }), std::int64_t{-3}},
        {"32 bits", ComValue(std::numeric_limits<std::int32_t>::min()), std::int64_t{-2147483648LL}},
        {"yes", ComValue(true), std::int64_t{-1}},
        {"double", Raw([](VARIANT& raw) { raw.vt = VT_R8, raw.dblVal = 0.5; }), 0.5},
        {"currency", Raw([](VARIANT& raw) { raw.vt = VT_CY, raw.cyVal.int64 = -12500; }), -1.25},
        {"decimal", ComValue(L"12.5").As(VT_DECIMAL), 12.5},
        {"date and time", Date(37716.25496527778), local_days{April / 5 / 2003} + 6h + 7min + 9s},
        {"last second of a day", Date(37716.99999999), local_days{April / 6 / 2003} + 0s},
        {"time alone", Date(0.75), local_days{December / 30 / 1899} + 18h},
        {"before day zero", Date(-1.25), local_days{December / 29 / 1899} + 6h}};
    const auto database = Open();
    const auto rows = Select(*database);
    for (const auto& [label, value, expected] : cases) {
        script_.Expect({{L"get Fields.Item(0)", {.Object = L"Field"}}, {L"get Field.Value()", {value}}});
        EXPECT_EQ(rows->Field(0), expected) << label;
    }
    ExpectClose();
}

}  // namespace
}  // namespace mip
