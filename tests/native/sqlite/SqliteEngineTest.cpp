#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/PlatformError.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/sqlite/SqliteStatements.h"
#include "tests/ScratchFolder.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

class SqliteEngineTest : public testing::Test {
  protected:
    /// Not by wstring(): that is bound to the C library's locale on some systems.
    std::wstring Path(const char8_t* name) const {
        const std::u8string path = (folder_ / name).u8string();
        return FromUtf8({reinterpret_cast<const char*>(path.data()), path.size()});
    }

    void Execute(const std::wstring& sql) { connection_->Execute(sql); }
    /// What the statement fails with, 0 when it does not.
    int Failure(const std::wstring& sql) {
        return static_cast<int>(CodeOf([&] { Execute(sql); }));
    }
    static FieldValue One(DatabaseConnection& connection, const std::wstring& sql) {
        const auto rows = connection.Query(sql);
        return rows->AtEnd() ? FieldValue(L"no row") : rows->Field(0);
    }
    FieldValue One(const std::wstring& sql) { return One(*connection_, sql); }

    const ScratchFolder scratch_;
    const std::filesystem::path& folder_ = scratch_.Path();
    SqliteEngine engine_;
    std::unique_ptr<DatabaseConnection> connection_ = engine_.Create(Path(File), 3);
    static constexpr char8_t File[] = u8"カタログ 1.mdb";
};

constexpr wchar_t InsertPlain[] = L"INSERT INTO M_manage ([Pub_No],[Year],[InsDate]) VALUES('K100',NULL,Cdate('";

TEST_F(SqliteEngineTest, OnlyACatalogueIsOpenedAndNoneIsCreatedOverIt) {
    connection_ = engine_.Open(Path(File));
    EXPECT_EQ(One(L"SELECT * FROM M_system"), FieldValue(std::int64_t{3}));
    EXPECT_NE(CodeOf([&] { engine_.Create(Path(File), 3); }), 0u);

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
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"2024/05/06 07:08:09", L"2024-05-06 07:08:09"},
                                                               {L"2024-5-6 7:08:09", L"2024-05-06 07:08:09"},
                                                               {L"1999/12/31", L"1999-12-31 00:00:00"}};
    for (const auto& [text, stored] : cases) {
        SCOPED_TRACE(ToUtf8(text));
        Execute(L"DELETE FROM M_manage");
        Execute(InsertPlain + std::wstring(text) + L"'))");
        EXPECT_EQ(One(L"SELECT INSDATE FROM M_manage"), FieldValue(ParseDateTime(stored)));
        EXPECT_EQ(One(L"SELECT INSDATE || '' FROM M_manage"), FieldValue(stored));
    }
    for (const wchar_t* const text : {L"2024/02/30", L"yesterday", L""}) {
        EXPECT_EQ(Failure(InsertPlain + std::wstring(text) + L"'))"), SQLITE_MISMATCH) << ToUtf8(text);
    }
    EXPECT_EQ(Failure(L"UPDATE M_manage SET INSDate = CDate(NULL)"), SQLITE_MISMATCH);
    for (const wchar_t* const value : {L"'soon'", L"x'00'"}) {
        Execute(std::wstring(L"UPDATE M_manage SET INSDate = ") + value);
        EXPECT_EQ(CodeOf([&] { One(L"SELECT * FROM M_manage"); }), std::uint32_t{SQLITE_MISMATCH}) << ToUtf8(value);
    }
}

TEST_F(SqliteEngineTest, TextsComeBackAsTheyWentIn) {
    for (const std::wstring& text :
         {std::wstring(L"サービスマニュアル \U0001F697 100%_\"[x]\r\n;--"), std::wstring(255, L'長')}) {
        Execute(L"DELETE FROM M_type");
        Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('x','O''" + text + L"')");
        EXPECT_EQ(One(L"SELECT PDF_FLG FROM M_type"), FieldValue(L"O'" + text));
    }
}

TEST_F(SqliteEngineTest, WhatLooksLikeATextIsOneOnlyWhereItIs) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"SELECT 'it''s'", L"it's"},
                                                               {L"SELECT '' || 'a'", L"a"},
                                                               {L"SELECT \"it's\" FROM (SELECT 'b' AS \"it's\")", L"b"},
                                                               {L"SELECT [?'] FROM (SELECT 'c' AS [?'])", L"c"},
                                                               {L"SELECT 'd' -- isn't", L"d"},
                                                               {L"SELECT CAST(x'65' AS TEXT) || 'f'", L"ef"},
                                                               {L"SELECT 'g' AS 'h'", L"g"}};
    for (int round = 0; round < 2; ++round) {
        for (const auto& [sql, value] : cases) {
            EXPECT_EQ(One(sql), FieldValue(value)) << ToUtf8(sql);
        }
    }
    EXPECT_EQ(Failure(L"SELECT 'never ends"), SQLITE_ERROR);
    EXPECT_EQ(Failure(L"SELECT 'a" + std::wstring(1, L'\0') + L"b'"), SQLITE_ERROR);
}

TEST(SqliteStatementsTest, WhatDiffersInItsTextsAloneIsCompiledOnce) {
    sqlite3* opened = nullptr;
    ASSERT_EQ(sqlite3_open(":memory:", &opened), SQLITE_OK);
    const SqliteDatabase database(opened);
    SqliteStatements statements(opened);
    const auto compiled = [&](const wchar_t* sql) { return statements.Start(sql).Get(); };
    sqlite3_stmt* const first = compiled(L"SELECT 'a' || 'b' AS c");
    EXPECT_EQ(sqlite3_bind_parameter_count(first), 2);
    EXPECT_NE(compiled(L"SELECT 'a' || 'b' AS d"), first);
    EXPECT_EQ(compiled(L"SELECT '' || 'it''s' AS c"), first);
}

TEST_F(SqliteEngineTest, AChangeWaitsForTheEndOfAnotherProgramsChange) {
    const auto other = engine_.Open(Path(File));
    other->BeginTransaction();
    const std::jthread ends([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        other->CommitTransaction();
    });
    Execute(L"DELETE FROM M_type");
}

TEST_F(SqliteEngineTest, FieldsAreFoundByNameAndNumber) {
    const auto row = connection_->Query(L"SELECT NULL AS absent, 7 AS Whole, 1.5 AS half");
    EXPECT_EQ(row->Field(L"ABSENT"), FieldValue());
    EXPECT_EQ(row->Field(L"whole"), FieldValue(std::int64_t{7}));
    EXPECT_EQ(row->Field(2), FieldValue(1.5));
    EXPECT_EQ(CodeOf([&] { row->Field(L"none"); }), std::uint32_t{SQLITE_RANGE});
    EXPECT_EQ(CodeOf([&] { row->Field(3); }), std::uint32_t{SQLITE_RANGE});
    row->MoveNext();
    EXPECT_TRUE(row->AtEnd());
    EXPECT_EQ(CodeOf([&] { row->Field(0); }), std::uint32_t{SQLITE_MISUSE});
    EXPECT_EQ(CodeOf([&] { row->MoveNext(); }), std::uint32_t{SQLITE_MISUSE});
}

TEST_F(SqliteEngineTest, PublicationsAreFoundThroughAnIndexWithoutRegardToCase) {
    Execute(L"INSERT INTO M_manage (Pub_No) VALUES ('K100ab')");
    Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('k100AB','1')");
    const std::wstring lookUp = L"SELECT * FROM M_manage WHERE Pub_No = 'k100AB'";
    const std::wstring list = L"SELECT Pdf_flg FROM M_manage MM LEFT JOIN M_type MT ON MM.PUB_NO = MT.PUB_NO ";
    EXPECT_EQ(One(lookUp), FieldValue(L"K100ab"));
    EXPECT_EQ(One(list), FieldValue(L"1"));
    const auto plan = connection_->Query(L"EXPLAIN QUERY PLAN " + lookUp);
    EXPECT_TRUE(std::get<std::wstring>(plan->Field(L"detail")).starts_with(L"SEARCH M_manage USING INDEX"));
    const auto joined = connection_->Query(L"EXPLAIN QUERY PLAN " + list);
    joined->MoveNext();
    EXPECT_TRUE(std::get<std::wstring>(joined->Field(L"detail")).starts_with(L"SEARCH MT USING INDEX"));
}

TEST_F(SqliteEngineTest, RefusedStatementsChangeNothingAndLeaveTheConnectionUsable) {
    Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('a','1')");
    EXPECT_EQ(Failure(L"INSERT INTO"), SQLITE_ERROR);
    EXPECT_EQ(Failure(L""), SQLITE_ERROR);
    EXPECT_EQ(Failure(L"INSERT INTO M_type (PUB_NO) VALUES ('A')"), SQLITE_CONSTRAINT_PRIMARYKEY);
    EXPECT_EQ(Failure(L"DELETE FROM M_type; DELETE FROM M_system"), SQLITE_ERROR);
    EXPECT_EQ(Failure(L"DELETE FROM M_type WHERE PUB_NO = \"a\""), SQLITE_ERROR);
    EXPECT_EQ(CodeOf([&] { connection_->Query(L"DELETE FROM M_type"); }), std::uint32_t{SQLITE_MISUSE});
    EXPECT_EQ(One(L"SELECT COUNT(*) FROM M_type"), FieldValue(std::int64_t{1}));
}

TEST_F(SqliteEngineTest, TransactionsCountWholeOrNotAtAll) {
    const auto other = engine_.Open(Path(File));
    const std::wstring count = L"SELECT COUNT(*) FROM M_order";
    const auto walked = connection_->Query(L"SELECT * FROM M_system");  // still on its row during all of this
    for (const bool commits : {false, true}) {
        connection_->BeginTransaction();
        Execute(L"INSERT INTO M_order (Model_ID) VALUES ('a')");
        EXPECT_EQ(One(*other, count), FieldValue(std::int64_t{0}));
        commits ? connection_->CommitTransaction() : connection_->RollbackTransaction();
    }
    EXPECT_EQ(One(*other, count), FieldValue(std::int64_t{1}));
    other->Execute(L"DELETE FROM M_order");
    EXPECT_EQ(walked->Field(0), FieldValue(std::int64_t{3}));
    EXPECT_EQ(CodeOf([&] { connection_->CommitTransaction(); }), std::uint32_t{SQLITE_ERROR});
    EXPECT_EQ(CodeOf([&] { connection_->RollbackTransaction(); }), 0u);
}

TEST_F(SqliteEngineTest, FileIsFreeOnceTheConnectionIsGone) {
    const auto rows = connection_->Query(L"SELECT * FROM M_system");
    connection_.reset();
    std::filesystem::rename(folder_ / File, folder_ / u8"moved.mdb");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
    EXPECT_EQ(rows->Field(0), FieldValue(std::int64_t{3}));
}

}  // namespace
}  // namespace mip
