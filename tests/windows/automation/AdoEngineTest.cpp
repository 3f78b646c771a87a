#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "platform/PlatformError.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/AdoEngine.h"
#include "platform/windows/ComApartment.h"
#include "tests/windows/automation/AdoStandIn.h"

namespace mip {
namespace {

constexpr auto Dated = L"INSERT INTO M_manage (Pub_No,INSPath,INSDate) VALUES('K1',NULL,CDate('2003/04/05 06:07:08'))";

class AdoTest : public testing::Test {
  protected:
    void SetUp() override {
        path_ = (std::filesystem::temp_directory_path() / L"ado 試験.mdb").wstring();
        std::filesystem::remove(path_);
        sqlite_.Create(path_, 1);
    }
    void TearDown() override {
        EXPECT_EQ(script_.LiveObjects, 0) << "a reference was not released";
        std::filesystem::remove(path_);
    }

    /// The calls since the last time.
    std::vector<std::wstring> TakeCalls() { return std::exchange(script_.Calls, {}); }

    ComApartment apartment_;
    Script script_;
    SqliteEngine sqlite_;
    AdoStandIn ado_{script_, sqlite_};
    RegisteredClass connectionClass_{L"ADODB.Connection", [this] { return ado_.MakeConnection(); }};
    AdoEngine engine_;
    std::wstring path_;
};

using Calls = std::vector<std::wstring>;

TEST_F(AdoTest, ConnectionIsOpenedUsedAndClosedByTheProvidersNames) {
    {
        const auto database = engine_.Open(path_);
        EXPECT_EQ(
            TakeCalls(),
            (Calls{L"put Connection.ConnectionString(\"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path_ + L"\")",
                   L"call Connection.Open(\"\", \"\", \"\", -1)"}));
        database->BeginTransaction();
        database->Execute(L"DELETE FROM M_type");
        database->CommitTransaction();
        database->BeginTransaction();
        database->RollbackTransaction();
        EXPECT_EQ(TakeCalls(), (Calls{L"call Connection.BeginTrans()",
                                      L"call Connection.Execute(\"DELETE FROM M_type\", missing, -1)",
                                      L"call Connection.CommitTrans()", L"call Connection.BeginTrans()",
                                      L"call Connection.RollbackTrans()"}));
    }
    EXPECT_EQ(TakeCalls(), Calls{L"call Connection.Close()"});
}

TEST_F(AdoTest, QueryIsWalkedToItsEnd) {
    const auto database = engine_.Open(path_);
    database->Execute(Dated);
    TakeCalls();

    const auto rows = database->Query(L"SELECT * FROM M_manage");
    EXPECT_EQ(TakeCalls(),
              (Calls{L"call Connection.Execute(\"SELECT * FROM M_manage\", missing, 1)", L"get Recordset.Fields()"}));
    ASSERT_FALSE(rows->AtEnd());
    EXPECT_EQ(rows->Field(L"PUB_NO"), FieldValue(L"K1"));
    EXPECT_EQ(TakeCalls(), (Calls{L"get Recordset.EOF()", L"get Fields.Item(\"PUB_NO\")", L"get Field.Value()"}));
    EXPECT_EQ(rows->Field(0), FieldValue(L"K1"));
    EXPECT_EQ(rows->Field(L"INSPath"), FieldValue(std::monostate()));
    using namespace std::chrono_literals;
    const DateTime recorded = std::chrono::local_days{std::chrono::April / 5 / 2003} + 6h + 7min + 8s;
    EXPECT_EQ(rows->Field(L"INSDate"), FieldValue(recorded));

    rows->MoveNext();
    EXPECT_TRUE(rows->AtEnd());
    EXPECT_EQ(CodeOf([&] { rows->MoveNext(); }), static_cast<std::uint32_t>(AdoStandIn::NoCurrentRow));
    EXPECT_TRUE(database->Query(L"SELECT * FROM M_type")->AtEnd());
}

TEST_F(AdoTest, ProvidersErrorsComeWithTheirCodesAndLeaveTheConnectionUsable) {
    const auto database = engine_.Open(path_);
    database->Execute(Dated);
    const auto rows = database->Query(L"SELECT * FROM M_manage");
    EXPECT_EQ(CodeOf([&] { database->Execute(L"DELET FROM M_type"); }),
              static_cast<std::uint32_t>(AdoStandIn::ErrorInCommand));
    EXPECT_EQ(CodeOf([&] { database->Query(L"SELECT * FROM Absent"); }),
              static_cast<std::uint32_t>(AdoStandIn::ErrorInCommand));
    EXPECT_EQ(CodeOf([&] { rows->Field(L"Absent"); }), static_cast<std::uint32_t>(AdoStandIn::NoSuchItem));
    EXPECT_EQ(CodeOf([&] { database->CommitTransaction(); }), static_cast<std::uint32_t>(AdoStandIn::UnspecifiedError));
    EXPECT_EQ(rows->Field(L"Pub_No"), FieldValue(L"K1"));
}

TEST_F(AdoTest, FailedOpenLeavesNoConnection) {
    EXPECT_EQ(CodeOf([&] { engine_.Open(path_ + L".absent"); }),
              static_cast<std::uint32_t>(AdoStandIn::UnspecifiedError));
    EXPECT_EQ(script_.LiveObjects, 0);
}

TEST_F(AdoTest, RecordsetMayOutliveItsConnection) {
    auto database = engine_.Open(path_);
    database->Execute(Dated);
    const auto rows = database->Query(L"SELECT * FROM M_manage");
    database.reset();
    EXPECT_FALSE(rows->AtEnd());
}

ComValue Raw(const std::function<void(VARIANT&)>& fill) {
    ComValue value;
    fill(*value.Receive());
    return value;
}

ComValue Date(double date) {
    return Raw([=](VARIANT& raw) {
        raw.vt = VT_DATE;
        raw.date = date;
    });
}

/// A connection whose every query gives one row with this value.
ComPointer<IDispatch> ConnectionGiving(Script& script, const ComValue& value) {
    auto connection = ScriptedObject::Make(script, L"Connection");
    connection->Settable(L"ConnectionString", [](auto) { return ComValue(); })
        .Method(L"Open", [](auto) { return ComValue(); })
        .Method(L"Execute", [&script, value](auto) {
            auto field = ScriptedObject::Make(script, L"Field");
            field->Property(L"Value", value);
            auto fields = ScriptedObject::Make(script, L"Fields");
            fields->Property(L"Item", ObjectValue(std::move(field)));
            auto recordset = ScriptedObject::Make(script, L"Recordset");
            recordset->Property(L"Fields", ObjectValue(std::move(fields)));
            return ObjectValue(std::move(recordset));
        });
    return ComPointer<IDispatch>(connection.release());
}

FieldValue Converted(const ComValue& value) {
    Script script;
    const RegisteredClass connection(L"ADODB.Connection", [&] { return ConnectionGiving(script, value); });
    return AdoEngine().Open(L"any.mdb")->Query(L"SELECT 1")->Field(0);
}

TEST(AdoValues, EveryColumnTypeBecomesItsFieldValue) {
    const ComApartment apartment;
    using namespace std::chrono;
    struct Case {
        const char* Label;
        ComValue Value;
        FieldValue Expected;
    };
    const Case cases[] = {
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
        {"before day zero", Date(-1.25), local_days{December / 29 / 1899} + 6h},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(Converted(each.Value), each.Expected) << each.Label;
    }
}

}  // namespace
}  // namespace mip
