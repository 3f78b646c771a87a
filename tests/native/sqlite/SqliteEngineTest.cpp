#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "platform/PlatformError.h"
#include "platform/sqlite/SqliteEngine.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

class SqliteEngineTest : public testing::Test {
  protected:
    SqliteEngineTest() {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }
    ~SqliteEngineTest() override { std::filesystem::remove_all(folder_); }

    /// Not by wstring(): that is bound to the C library's locale on some systems.
    std::wstring Path(const char8_t* name) const {
        const std::u8string path = (folder_ / name).u8string();
        return FromUtf8({reinterpret_cast<const char*>(path.data()), path.size()});
    }

    std::unique_ptr<DatabaseConnection> NewCatalogue() { return engine_.Create(Path(u8"カタログ 1.mdb"), 3); }

    static FieldValue One(DatabaseConnection& connection, const std::wstring& sql) {
        const auto rows = connection.Query(sql);
        return rows->AtEnd() ? FieldValue(L"no row") : rows->Field(0);
    }

    /// One of its own for each test: they run side by side.
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("mip_sqlite_test_" + std::to_string(std::random_device{}()));
    SqliteEngine engine_;
};

constexpr wchar_t InsertPlain[] = L"INSERT INTO M_manage ([Pub_No],[Year],[InsDate]) VALUES('K100',NULL,Cdate('";

TEST_F(SqliteEngineTest, NewCatalogueIsReopenedWithItsVersion) {
    NewCatalogue().reset();
    const auto connection = engine_.Open(Path(u8"カタログ 1.mdb"));
    EXPECT_EQ(One(*connection, L"SELECT * FROM M_system"), FieldValue(std::int64_t{3}));
    EXPECT_NE(CodeOf([&] { NewCatalogue(); }), 0u);
}

TEST_F(SqliteEngineTest, OpenFailsOnWhatIsNoCatalogue) {
    std::filesystem::create_directory(folder_ / "folder.mdb");
    std::ofstream(folder_ / "empty.mdb").flush();
    std::ofstream(folder_ / "text.mdb") << std::string(5000, 'x');
    engine_.Create(Path(u8"foreign.mdb"), 1)->Execute(L"DROP TABLE M_manage");
    for (const char8_t* name : {u8"missing.mdb", u8"folder.mdb", u8"empty.mdb", u8"text.mdb", u8"foreign.mdb"}) {
        EXPECT_NE(CodeOf([&] { engine_.Open(Path(name)); }), 0u) << reinterpret_cast<const char*>(name);
    }
    EXPECT_FALSE(std::filesystem::exists(folder_ / "missing.mdb"));
}

TEST_F(SqliteEngineTest, DatesAreUnderstoodSortedAndReadBack) {
    const auto connection = NewCatalogue();
    const struct {
        const wchar_t* Text;
        const wchar_t* Stored;  // null: refused
    } cases[] = {
        {L"2024/05/06 07:08:09", L"2024-05-06 07:08:09"},
        {L"2024-5-6 7:08:09", L"2024-05-06 07:08:09"},
        {L"1999/12/31", L"1999-12-31 00:00:00"},
        {L"2024/02/30", nullptr},
        {L"yesterday", nullptr},
        {L"", nullptr},
    };
    for (const auto& [text, stored] : cases) {
        SCOPED_TRACE(ToUtf8(text));
        const std::wstring insert = InsertPlain + std::wstring(text) + L"'))";
        connection->Execute(L"DELETE FROM M_manage");
        if (stored == nullptr) {
            EXPECT_EQ(CodeOf([&] { connection->Execute(insert); }), static_cast<std::uint32_t>(SQLITE_MISMATCH));
            continue;
        }
        connection->Execute(insert);
        EXPECT_EQ(One(*connection, L"SELECT INSDATE FROM M_manage"), FieldValue(ParseDateTime(stored)));
        EXPECT_EQ(One(*connection, L"SELECT INSDate || '' FROM M_manage"), FieldValue(stored));
    }
}

TEST_F(SqliteEngineTest, FieldsOfTheWrongKindFailTheQuery) {
    const auto connection = NewCatalogue();
    connection->Execute(InsertPlain + std::wstring(L"2024/01/01'))"));
    for (const wchar_t* value : {L"'soon'", L"x'00'"}) {
        connection->Execute(std::wstring(L"UPDATE M_manage SET INSDate = ") + value);
        EXPECT_EQ(CodeOf([&] { connection->Query(L"SELECT * FROM M_manage"); }),
                  static_cast<std::uint32_t>(SQLITE_MISMATCH))
            << ToUtf8(value);
    }
    EXPECT_EQ(CodeOf([&] { connection->Execute(L"UPDATE M_manage SET INSDate = CDate(NULL)"); }),
              static_cast<std::uint32_t>(SQLITE_MISMATCH));
}

TEST_F(SqliteEngineTest, ValuesComeBackAsTheyWentIn) {
    const auto connection = NewCatalogue();
    const std::wstring longest(255, L'長');
    for (const std::wstring& text : {std::wstring(L"O''Brien"), std::wstring(L"サービスマニュアル \U0001F697"), longest,
                                     std::wstring(L"100%_\"[x]\r\n;--")}) {
        connection->Execute(L"DELETE FROM M_type");
        connection->Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('x','" + text + L"')");
        EXPECT_EQ(One(*connection, L"SELECT PDF_FLG FROM M_type"), FieldValue(ReplaceAll(text, L"''", L"'")));
    }
}

TEST_F(SqliteEngineTest, FieldsAreFoundByNameAndNumber) {
    const auto connection = NewCatalogue();
    const auto row = connection->Query(L"SELECT NULL AS absent, 7 AS Whole, 1.5 AS half");
    EXPECT_EQ(row->Field(L"ABSENT"), FieldValue());
    EXPECT_EQ(row->Field(L"whole"), FieldValue(std::int64_t{7}));
    EXPECT_EQ(row->Field(2), FieldValue(1.5));
    EXPECT_EQ(CodeOf([&] { row->Field(L"none"); }), static_cast<std::uint32_t>(SQLITE_RANGE));
    EXPECT_EQ(CodeOf([&] { row->Field(3); }), static_cast<std::uint32_t>(SQLITE_RANGE));
    row->MoveNext();
    EXPECT_TRUE(row->AtEnd());
    EXPECT_EQ(CodeOf([&] { row->Field(0); }), static_cast<std::uint32_t>(SQLITE_MISUSE));
    EXPECT_EQ(CodeOf([&] { row->MoveNext(); }), static_cast<std::uint32_t>(SQLITE_MISUSE));
}

TEST_F(SqliteEngineTest, PublicationsAreFoundThroughAnIndexWithoutRegardToCase) {
    const auto connection = NewCatalogue();
    connection->Execute(L"INSERT INTO M_manage (Pub_No) VALUES ('K100ab')");
    connection->Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('k100AB','1')");
    const std::wstring lookUp = L"SELECT * FROM M_manage WHERE Pub_No = 'k100AB'";
    const std::wstring list = L"SELECT Pdf_flg FROM M_manage MM LEFT JOIN M_type MT ON MM.PUB_NO = MT.PUB_NO ";
    EXPECT_EQ(One(*connection, lookUp), FieldValue(L"K100ab"));
    EXPECT_EQ(One(*connection, list), FieldValue(L"1"));
    const auto plan = [&](const std::wstring& sql, int step) {
        const auto rows = connection->Query(L"EXPLAIN QUERY PLAN " + sql);
        for (; step > 0; --step) {
            rows->MoveNext();
        }
        return ToUtf8(std::get<std::wstring>(rows->Field(L"detail")));
    };
    EXPECT_TRUE(plan(lookUp, 0).starts_with("SEARCH M_manage USING INDEX")) << plan(lookUp, 0);
    EXPECT_TRUE(plan(list, 1).starts_with("SEARCH MT USING INDEX")) << plan(list, 1);
}

TEST_F(SqliteEngineTest, RefusedStatementsChangeNothingAndLeaveTheConnectionUsable) {
    const auto connection = NewCatalogue();
    connection->Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('a','1')");
    const struct {
        const wchar_t* Sql;
        int Code;
    } cases[] = {
        {L"INSERT INTO", SQLITE_ERROR},
        {L"", SQLITE_ERROR},
        {L"INSERT INTO M_type (PUB_NO) VALUES ('A')", SQLITE_CONSTRAINT_PRIMARYKEY},
        {L"DELETE FROM M_type; DELETE FROM M_system", SQLITE_ERROR},
        {L"DELETE FROM M_type WHERE PUB_NO = \"a\"", SQLITE_ERROR},
    };
    for (const auto& [sql, code] : cases) {
        EXPECT_EQ(CodeOf([&] { connection->Execute(sql); }), static_cast<std::uint32_t>(code)) << ToUtf8(sql);
    }
    EXPECT_EQ(CodeOf([&] { connection->Query(L"DELETE FROM M_type"); }), static_cast<std::uint32_t>(SQLITE_MISUSE));
    EXPECT_EQ(One(*connection, L"SELECT COUNT(*) FROM M_type"), FieldValue(std::int64_t{1}));
}

TEST_F(SqliteEngineTest, TransactionsCountWholeOrNotAtAll) {
    const auto connection = NewCatalogue();
    const auto other = engine_.Open(Path(u8"カタログ 1.mdb"));
    const std::wstring count = L"SELECT COUNT(*) FROM M_order";
    const auto walked = connection->Query(L"SELECT * FROM M_system");  // still on its row during all of this
    for (const bool commits : {false, true}) {
        connection->BeginTransaction();
        connection->Execute(L"INSERT INTO M_order (Model_ID) VALUES ('a')");
        EXPECT_EQ(One(*other, count), FieldValue(std::int64_t{0}));
        commits ? connection->CommitTransaction() : connection->RollbackTransaction();
    }
    EXPECT_EQ(One(*other, count), FieldValue(std::int64_t{1}));
    other->Execute(L"DELETE FROM M_order");
    EXPECT_EQ(walked->Field(0), FieldValue(std::int64_t{3}));
    EXPECT_EQ(CodeOf([&] { connection->CommitTransaction(); }), static_cast<std::uint32_t>(SQLITE_ERROR));
    EXPECT_EQ(CodeOf([&] { connection->RollbackTransaction(); }), 0u);
}

TEST_F(SqliteEngineTest, FileIsFreeOnceTheConnectionIsGone) {
    auto connection = NewCatalogue();
    const auto rows = connection->Query(L"SELECT * FROM M_system");
    connection.reset();
    std::filesystem::rename(folder_ / u8"カタログ 1.mdb", folder_ / u8"moved.mdb");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
    EXPECT_EQ(rows->Field(0), FieldValue(std::int64_t{3}));
}

}  // namespace
}  // namespace mip
