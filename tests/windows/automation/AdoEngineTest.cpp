#include <gtest/gtest.h>

#include <limits>

#include "platform/PlatformError.h"
#include "platform/windows/AdoEngine.h"
#include "platform/windows/ComApartment.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

using Calls = std::vector<std::wstring>;

/// ADO's connection, recordset, fields and field.
class AdoTest : public testing::Test {
  protected:
    ~AdoTest() override { EXPECT_EQ(script_.LiveObjects, 0) << "a reference was not released"; }

    ComApartment apartment_;
    Script script_{{{L"put Connection.ConnectionString", {{}}},
                    {L"call Connection.Open", {{}}},
                    {L"call Connection.Execute", {{.Object = L"Recordset"}}},
                    {L"call Connection.BeginTrans", {{1}}},
                    {L"call Connection.CommitTrans", {{}}},
                    {L"call Connection.RollbackTrans", {{}}},
                    {L"call Connection.Close", {{}}},
                    {L"get Recordset.Fields", {{.Object = L"Fields"}}},
                    {L"get Recordset.EOF", {{false}, {true}}},
                    {L"call Recordset.MoveNext", {{}}},
                    {L"get Fields.Item", {{.Object = L"Field"}}},
                    {L"get Field.Value", {{L"K1"}}}}};
    RegisteredClass connectionClass_{L"ADODB.Connection", script_, L"Connection"};
    AdoEngine engine_;
};

TEST_F(AdoTest, ConnectionIsOpenedUsedAndClosedByTheProvidersNames) {
    auto database = engine_.Open(L"C:\\試験 1.mdb");
    EXPECT_EQ(script_.TakeCalls(), (Calls{L"put Connection.ConnectionString(\"Provider=Microsoft.Jet.OLEDB.4.0;"
                                          L"Data Source=C:\\試験 1.mdb\")",
                                          L"call Connection.Open(\"\", \"\", \"\", -1)"}));
    database->BeginTransaction();
    database->Execute(L"DELETE FROM M_type");
    database->CommitTransaction();
    database->RollbackTransaction();
    EXPECT_EQ(script_.TakeCalls(),
              (Calls{L"call Connection.BeginTrans()", L"call Connection.Execute(\"DELETE FROM M_type\", missing, -1)",
                     L"call Connection.CommitTrans()", L"call Connection.RollbackTrans()"}));

    const auto rows = database->Query(L"SELECT * FROM M_manage");
    EXPECT_FALSE(rows->AtEnd());
    EXPECT_EQ(rows->Field(L"Pub_No"), FieldValue(L"K1"));
    EXPECT_EQ(rows->Field(7), FieldValue(L"K1"));
    rows->MoveNext();
    EXPECT_EQ(script_.TakeCalls(),
              (Calls{L"call Connection.Execute(\"SELECT * FROM M_manage\", missing, 1)", L"get Recordset.Fields()",
                     L"get Recordset.EOF()", L"get Fields.Item(\"Pub_No\")", L"get Field.Value()",
                     L"get Fields.Item(7)", L"get Field.Value()", L"call Recordset.MoveNext()"}));

    database.reset();
    EXPECT_EQ(script_.TakeCalls(), Calls{L"call Connection.Close()"});
    EXPECT_TRUE(rows->AtEnd()) << "a recordset may outlive its connection";
}

TEST_F(AdoTest, ProvidersErrorsComeWithTheirCodesAndLeaveTheConnectionUsable) {
    const auto failing = [this](const wchar_t* call, HRESULT code, const std::function<void()>& action) {
        const auto before = std::exchange(script_.Answers[call], {{.Code = code, .Description = L"said"}});
        EXPECT_EQ(CodeOf(action), static_cast<std::uint32_t>(code));
        script_.Answers[call] = before;
    };
    constexpr auto Unspecified = static_cast<HRESULT>(0x80004005);
    failing(L"call Connection.Open", Unspecified, [&] { engine_.Open(L"absent.mdb"); });
    EXPECT_EQ(script_.LiveObjects, 0);

    const auto database = engine_.Open(L"any.mdb");
    const auto rows = database->Query(L"SELECT 1");
    constexpr auto InCommand = static_cast<HRESULT>(0x80040E14);
    failing(L"call Connection.Execute", InCommand, [&] { database->Execute(L"DELET FROM M_type"); });
    failing(L"call Connection.Execute", InCommand, [&] { database->Query(L"SELECT * FROM Absent"); });
    failing(L"call Connection.CommitTrans", Unspecified, [&] { database->CommitTransaction(); });
    failing(L"get Fields.Item", static_cast<HRESULT>(0x800A0CC1), [&] { rows->Field(L"Absent"); });
    failing(L"call Recordset.MoveNext", static_cast<HRESULT>(0x800A0BCD), [&] { rows->MoveNext(); });
    EXPECT_EQ(rows->Field(L"Pub_No"), FieldValue(L"K1"));
    script_.Answers[L"call Connection.Close"] = {{.Code = Unspecified}};
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
    const auto rows = engine_.Open(L"any.mdb")->Query(L"SELECT 1");
    for (const auto& [label, value, expected] : cases) {
        script_.Answers[L"get Field.Value"] = {{value}};
        EXPECT_EQ(rows->Field(0), expected) << label;
    }
}

}  // namespace
}  // namespace mip
