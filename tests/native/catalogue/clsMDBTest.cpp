#include <gtest/gtest.h>

#include <stdexcept>

#include "catalogue/clsMDB.h"
#include "platform/PlatformError.h"
#include "tests/native/catalogue/Workshop.h"
#include "text/TextTools.h"

namespace mip {
namespace {

using std::string_literals::operator""s;

constexpr wchar_t Models[] = L"SELECT * FROM M_order";
const FieldValue Default{std::wstring(L"default")};

class ClsMdbTest : public testing::Test {
  protected:
    void AddModel(const wchar_t* values) {
        ASSERT_EQ(database_.Pcls_MdbExecute(std::wstring(L"INSERT INTO M_order VALUES(") + values + L")"), MdbOk);
    }

    Workshop workshop_;
    clsMDB& database_ = *workshop_.Program().CatalogDb;
};

/// An engine that only notes what it is asked to open.
struct NotingEngine : DatabaseEngine {
    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override {
        Opened.push_back(path);
        throw PlatformError("Open", path, 1);
    }
    std::vector<std::wstring> Opened;
};

TEST_F(ClsMdbTest, EngineIsChosenByTheFirstBytes) {
    const std::string jetFile = "\0\1\0\0Standard Jet DB\0\1"s;
    const struct {
        const char* Label;
        std::string Bytes;
        const char* Engine;
    } cases[] = {
        {"Jet", jetFile, "jet"},
        {"a newer layout of that maker", "\0\1\0\0Standard ACE DB\0\1"s, ""},
        {"cut within the Jet header", jetFile.substr(0, 19), ""},
        {"SQLite", "SQLite format 3\0"s, "sqlite"},
        {"SQLite text only", "SQLite format 3", ""},
        {"text", "KVX3", ""},
        {"empty", "", ""},
    };
    for (const auto& [label, bytes, engine] : cases) {
        NotingEngine jet;
        NotingEngine sqlite;
        workshop_.JetEngine.Engine = &jet;
        workshop_.SqliteEngine.Engine = &sqlite;
        workshop_.Tree.PutFile(L"C:\\x.mdb", bytes);
        EXPECT_FALSE(database_.Pcls_MdbOpen(L"C:\\x.mdb")) << label;
        const std::string opened = (jet.Opened.empty() ? "" : "jet"s) + (sqlite.Opened.empty() ? "" : "sqlite");
        EXPECT_EQ(opened, engine) << label;
    }
}

TEST_F(ClsMdbTest, FailedOpenClosesWhatWasOpen) {
    EXPECT_EQ(database_.Pcls_MdbCreate(0, L"SELECT * FROM M_system"), MdbOk);
    for (const wchar_t* path : {L"C:\\missing.mdb", L"C:\\Korvex", L"", L"E:\\KVX3.mdb"}) {
        EXPECT_FALSE(database_.Pcls_MdbOpen(path)) << ToUtf8(path);
        EXPECT_EQ(database_.Pcls_MdbCreate(0, L"SELECT * FROM M_system"), MdbError);
        EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbError);
        EXPECT_EQ(database_.Pcls_MdbExecute(L"DELETE FROM M_system"), MdbError);
        EXPECT_THROW(database_.Pcls_MdbBeginTrans(), PlatformError);
        EXPECT_TRUE(database_.Pcls_MdbOpen(Workshop::CurrentDatabase));
    }
    EXPECT_EQ(workshop_.Tree.Find(Workshop::CurrentDatabase)->OpenHandles, 1);
}

TEST_F(ClsMdbTest, WalkReportsRowsAndTheEnd) {
    EXPECT_EQ(database_.Pcls_MdbCreate(0, Models), MdbEnd);
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbError);
    AddModel(L"'a',NULL,1");
    EXPECT_EQ(database_.Pcls_MdbCreate(0, Models), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbGetField(0, L"model_id", Default), FieldValue(L"a"));
    EXPECT_EQ(database_.Pcls_MdbGetField(0, L"Model_desc", Default), Default);
    EXPECT_EQ(database_.Pcls_MdbGetField(0, 2, Default), FieldValue(std::int64_t{1}));
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbEnd);
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbError);
    EXPECT_THROW(database_.Pcls_MdbGetField(0, 0, Default), PlatformError);
}

TEST_F(ClsMdbTest, SlotsAreWalkedSideBySideAndReplaced) {
    AddModel(L"'a','',1");
    AddModel(L"'b','',2");
    for (const std::int16_t slot : std::initializer_list<std::int16_t>{0, 10}) {
        EXPECT_EQ(database_.Pcls_MdbCreate(slot, Models), MdbOk);
    }
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbGetField(0, 0, Default), FieldValue(L"b"));
    EXPECT_EQ(database_.Pcls_MdbGetField(10, 0, Default), FieldValue(L"a"));
    EXPECT_EQ(database_.Pcls_MdbCreate(10, L"SELECT MDB_Version FROM M_system"), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbGetField(10, 0, Default), FieldValue(std::int64_t{2}));
}

TEST_F(ClsMdbTest, RefusedQueryLeavesItsSlotEmptyAndTheOthersAlone) {
    AddModel(L"'a','',1");
    EXPECT_EQ(database_.Pcls_MdbCreate(1, Models), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbCreate(2, Models), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbCreate(1, L"SELECT * FROM M_order WHERE"), MdbError);
    EXPECT_EQ(database_.Pcls_MdbMoveNext(1), MdbError);
    EXPECT_THROW(database_.Pcls_MdbGetField(1, L"Model_ID", Default), PlatformError);
    EXPECT_THROW(database_.Pcls_MdbGetField(2, L"No_such_column", Default), PlatformError);
    EXPECT_EQ(database_.Pcls_MdbGetField(2, L"Model_ID", Default), FieldValue(L"a"));
}

TEST_F(ClsMdbTest, SlotsOutsideTheirRangeAreAnErrorOfTheCaller) {
    for (const std::int16_t slot : std::initializer_list<std::int16_t>{-1, 11}) {
        EXPECT_THROW((void)database_.Pcls_MdbCreate(slot, Models), std::out_of_range);
        EXPECT_THROW((void)database_.Pcls_MdbMoveNext(slot), std::out_of_range);
        EXPECT_THROW(database_.Pcls_MdbGetField(slot, 0, Default), std::out_of_range);
    }
}

TEST_F(ClsMdbTest, FaultsOfTheEngineBecomeStatusesAndEmptySlots) {
    AddModel(L"'a','',1");
    EXPECT_EQ(database_.Pcls_MdbCreate(0, Models), MdbOk);
    workshop_.Faults.FailFrom(1);
    EXPECT_EQ(database_.Pcls_MdbExecute(L"DELETE FROM M_order"), MdbError);
    EXPECT_EQ(database_.Pcls_MdbCreate(0, Models), MdbError);
    EXPECT_THROW(database_.Pcls_MdbBeginTrans(), PlatformError);
    workshop_.Faults.Reset();
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbError);
    EXPECT_EQ(database_.Pcls_MdbCreate(0, Models), MdbOk);
}

TEST_F(ClsMdbTest, ReadOnlyDiscIsReadButNotWritten) {
    clsMDB disc(workshop_.Platform);
    ASSERT_TRUE(disc.Pcls_MdbOpen(Workshop::NewSource));
    EXPECT_EQ(disc.Pcls_MdbCreate(0, Models), MdbOk);
    EXPECT_EQ(disc.Pcls_MdbExecute(L"DELETE FROM M_order"), MdbError);
    workshop_.Tree.Find(Workshop::CurrentDatabase)->Attributes = attributes::ReadOnly;
    ASSERT_TRUE(database_.Pcls_MdbOpen(Workshop::CurrentDatabase));
    EXPECT_EQ(database_.Pcls_MdbCreate(0, L"SELECT * FROM M_system"), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbExecute(L"DELETE FROM M_system"), MdbError);
}

}  // namespace
}  // namespace mip
