#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include "catalogue/clsMDB.h"
#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/PlatformError.h"
#include "tests/native/catalogue/CatalogueWorkshop.h"
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

    CatalogueWorkshop shop_;
    clsMDB& database_ = *shop_.Program().CatalogDb;
};

TEST_F(ClsMdbTest, EngineIsChosenByTheFirstBytes) {
    const std::string jetFile = "\0\1\0\0Standard Jet DB\0\1"s;
    const struct {
        const char* Label;
        std::string Bytes;
        std::pair<bool, bool> Asked;  // Jet's, SQLite's
    } cases[] = {
        {"Jet", jetFile, {true, false}},
        {"a newer layout of that maker", "\0\1\0\0Standard ACE DB\0\1"s, {}},
        {"cut within the Jet header", jetFile.substr(0, 19), {}},
        {"SQLite", "SQLite format 3\0"s, {false, true}},
        {"SQLite text only", "SQLite format 3", {}},
        {"text", "KVX3", {}},
        {"empty", "", {}},
    };
    for (const auto& [label, bytes, asked] : cases) {
        JetStandIn sqlite(shop_);
        JetStandIn jet(shop_);
        shop_.SqliteEngine.Engine = &sqlite;
        shop_.Tree.PutFile(L"C:\\x.mdb", bytes);
        EXPECT_FALSE(database_.Pcls_MdbOpen(L"C:\\x.mdb")) << label;
        EXPECT_EQ(std::pair(!jet.Sent.empty(), !sqlite.Sent.empty()), asked) << label;
    }
    const std::wstring told = L"opening a database: Open failed with code 3343 on C:\\x.mdb: neither a Jet nor";
    EXPECT_NE(shop_.Program().Log.Text().find(told), std::wstring::npos);
}

TEST_F(ClsMdbTest, FailedOpenClosesWhatWasOpen) {
    EXPECT_EQ(database_.Pcls_MdbCreate(0, L"SELECT * FROM M_system"), MdbOk);
    for (const wchar_t* path : {L"C:\\missing.mdb", L"C:\\Vantor", L"", L"E:\\KVX3.mdb"}) {
        EXPECT_FALSE(database_.Pcls_MdbOpen(path)) << ToUtf8(path);
        EXPECT_EQ(database_.Pcls_MdbCreate(0, L"SELECT * FROM M_system"), MdbError);
        EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbError);
        EXPECT_EQ(database_.Pcls_MdbExecute(L"DELETE FROM M_system"), MdbError);
        EXPECT_EQ(CodeOf([&] { database_.Pcls_MdbBeginTrans(); }), 3704u);
        EXPECT_TRUE(database_.Pcls_MdbOpen(Workshop::MdbPath));
    }
    EXPECT_EQ(shop_.Tree.Find(Workshop::MdbPath)->OpenHandles, 1);
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

TEST_F(ClsMdbTest, SlotsAreIndependentAndARefusedQueryEmptiesItsOwn) {
    AddModel(L"'a','',1");
    AddModel(L"'b','',2");
    for (const std::int16_t slot : std::initializer_list<std::int16_t>{0, 10}) {
        EXPECT_EQ(database_.Pcls_MdbCreate(slot, Models), MdbOk);
    }
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbGetField(0, 0, Default), FieldValue(L"b"));
    EXPECT_EQ(database_.Pcls_MdbGetField(10, 0, Default), FieldValue(L"a"));
    EXPECT_THROW(database_.Pcls_MdbGetField(10, L"No_such_column", Default), PlatformError);
    EXPECT_EQ(database_.Pcls_MdbCreate(10, L"SELECT MDB_Version FROM M_system"), MdbOk);
    EXPECT_EQ(database_.Pcls_MdbGetField(10, 0, Default), FieldValue(std::int64_t{2}));
    const auto refused = [this](const std::wstring& query) {
        EXPECT_EQ(database_.Pcls_MdbCreate(10, query), MdbError);
        shop_.Faults.Reset();
        EXPECT_EQ(database_.Pcls_MdbMoveNext(10), MdbError);
        EXPECT_THROW(database_.Pcls_MdbGetField(10, 0, Default), PlatformError);
    };
    refused(L"SELECT * FROM M_order WHERE");
    EXPECT_EQ(database_.Pcls_MdbGetField(0, 0, Default), FieldValue(L"b"));
    EXPECT_EQ(database_.Pcls_MdbMoveNext(0), MdbEnd);
    EXPECT_EQ(database_.Pcls_MdbCreate(10, Models), MdbOk);
    shop_.Faults.FailFrom(1);
    EXPECT_EQ(database_.Pcls_MdbExecute(L"DELETE FROM M_order"), MdbError);
    EXPECT_THROW(database_.Pcls_MdbBeginTrans(), PlatformError);
    EXPECT_EQ(database_.Pcls_MdbCreate(10, Models), MdbError);
    for (const wchar_t* told : {L"executing a statement: ", L"running a query: "}) {
        EXPECT_NE(shop_.Program().Log.Text().find(told), std::wstring::npos) << told;
    }
}

TEST_F(ClsMdbTest, SlotsOutsideTheirRangeAreAnErrorOfTheCaller) {
    for (const std::int16_t slot : std::initializer_list<std::int16_t>{-1, 11}) {
        EXPECT_THROW((void)database_.Pcls_MdbCreate(slot, Models), std::out_of_range);
        EXPECT_THROW((void)database_.Pcls_MdbMoveNext(slot), std::out_of_range);
        EXPECT_THROW(database_.Pcls_MdbGetField(slot, 0, Default), std::out_of_range);
    }
}

TEST_F(ClsMdbTest, ReadOnlyDiscOrFileIsReadButNotWritten) {
    shop_.Tree.PutFile(L"C:\\x.mdb", shop_.Tree.BytesOf(Workshop::NewSource), attributes::ReadOnly);
    for (const wchar_t* path : {Workshop::NewSource, L"C:\\x.mdb"}) {
        ASSERT_TRUE(database_.Pcls_MdbOpen(path));
        EXPECT_EQ(database_.Pcls_MdbCreate(0, Models), MdbOk);
        EXPECT_EQ(database_.Pcls_MdbExecute(L"DELETE FROM M_order"), MdbError);
    }
}

class DamageTest : public testing::Test {
  protected:
    /// Puts these bytes in the catalogue's place and works with it as the program does. True when it opened.
    bool OpenAndUse(const std::string& bytes) {
        shop_.Tree.PutFile(Workshop::MdbPath, bytes);
        const bool opened = shop_.StartProgram();
        if (opened) {
            (void)FindInstalledRecord(shop_.Program(), L"K1030E");
            (void)ListedRows(shop_.Program());
            (void)ReadDatabaseVersion(*shop_.Program().CatalogDb);
        }
        EXPECT_EQ(shop_.Tree.BytesOf(Workshop::MdbPath), bytes);
        EXPECT_EQ(shop_.LibraryFiles().size(), 1u);
        return opened;
    }

    CatalogueWorkshop shop_{SampleRecords(30)};
    const std::string whole_ = shop_.Tree.BytesOf(Workshop::MdbPath);
};

TEST_F(DamageTest, TruncatedFilesDoNotOpen) {
    ASSERT_TRUE(OpenAndUse(whole_));
    for (std::size_t length = 0; length < whole_.size(); length += length < 200 ? 1 : 211) {
        EXPECT_FALSE(OpenAndUse(whole_.substr(0, length))) << length;
    }
    for (std::size_t length = 4096; length < whole_.size(); length += 4096) {
        EXPECT_FALSE(OpenAndUse(whole_.substr(0, length))) << length;
        EXPECT_FALSE(OpenAndUse(whole_.substr(0, length) + std::string(whole_.size() - length, '\0'))) << length;
    }
}

TEST_F(DamageTest, FlippedBitsFailOrReadOnWithoutHarm) {
    // Signature, page size, payload fractions, number of pages: no such file opens.
    const std::set<std::size_t> vital{16, 17, 21, 22, 23, 28, 29, 30, 31};
    ASSERT_TRUE(OpenAndUse(whole_));
    std::size_t refused = 0;
    std::size_t tried = 0;
    for (std::size_t offset = 0; offset < whole_.size(); offset += offset < 300 ? 1 : 61) {
        std::string bytes = whole_;
        bytes[offset] = static_cast<char>(bytes[offset] ^ (1 << (offset % 8)));
        const bool opened = OpenAndUse(bytes);
        EXPECT_FALSE(opened && (offset < 16 || vital.contains(offset))) << offset;
        refused += opened ? 0 : 1;
        ++tried;
    }
    EXPECT_GT(refused, tried / 10);
    EXPECT_LT(refused, tried) << "rows outside the keys may read on";
}

TEST_F(DamageTest, DamagedKeysOtherFilesAndFoldersDoNotOpen) {
    ASSERT_TRUE(OpenAndUse(whole_));
    std::string damagedKey = whole_;
    damagedKey[whole_.rfind("K1030E")] = 'X';  // in a page of rows or of the index, the other keeps it
    for (const std::string& bytes : {std::string("not a database\r\n"), std::string(whole_.size(), '\0'), damagedKey,
                                     "SQLite format 3" + std::string(1000, '\0'), whole_.substr(4096)}) {
        EXPECT_FALSE(OpenAndUse(bytes));
        EXPECT_FALSE(CheckDatabaseVersion(shop_.Program()));
        EXPECT_EQ(shop_.Tree.BytesOf(Workshop::MdbPath), bytes);
    }
    shop_.Tree.Erase(Workshop::MdbPath);
    shop_.Tree.PutFolder(Workshop::MdbPath);
    EXPECT_FALSE(shop_.StartProgram());
    EXPECT_FALSE(CheckDatabaseVersion(shop_.Program()));
    EXPECT_TRUE(shop_.Tree.HasFolder(Workshop::MdbPath));
}

}  // namespace
}  // namespace mip
