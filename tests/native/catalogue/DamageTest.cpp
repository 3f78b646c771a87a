#include <gtest/gtest.h>
#include <sqlite3.h>

#include <set>

#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/PlatformError.h"
#include "tests/native/catalogue/Workshop.h"

namespace mip {
namespace {

class DamageTest : public testing::Test {
  protected:
    /// Puts these bytes in the catalogue's place and works with it as the program does. True when it opened.
    bool OpenAndUse(const std::string& bytes) {
        workshop_.Tree.PutFile(Workshop::CurrentDatabase, bytes);
        const bool opened = workshop_.StartProgram();
        if (opened) {
            (void)FindInstalledRecord(workshop_.Program(), L"K1030E");
            (void)ListedRows(workshop_.Program());
            (void)ReadDatabaseVersion(*workshop_.Program().CatalogDb);
        }
        EXPECT_EQ(workshop_.Tree.BytesOf(Workshop::CurrentDatabase), bytes);
        EXPECT_EQ(workshop_.Tree.Snapshot(Workshop::InstallDir).size(), 1u);
        return opened;
    }

    Workshop workshop_{SampleRecords(30)};
    const std::string whole_ = workshop_.Tree.BytesOf(Workshop::CurrentDatabase);
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
    std::set<std::size_t> vital{16, 17, 21, 22, 23, 28, 29, 30, 31};
    for (std::size_t offset = 0; offset < 16; ++offset) {
        vital.insert(offset);
    }
    ASSERT_TRUE(OpenAndUse(whole_));
    std::size_t refused = 0;
    std::size_t tried = 0;
    for (std::size_t offset = 0; offset < whole_.size(); offset += offset < 300 ? 1 : 61) {
        std::string bytes = whole_;
        bytes[offset] = static_cast<char>(bytes[offset] ^ (1 << (offset % 8)));
        const bool opened = OpenAndUse(bytes);
        EXPECT_FALSE(opened && vital.contains(offset)) << offset;
        refused += opened ? 0 : 1;
        ++tried;
    }
    EXPECT_GT(refused, tried / 10);
    EXPECT_LT(refused, tried) << "rows outside the keys may read on";
}

TEST_F(DamageTest, DamagedKeysAreFoundOut) {
    ASSERT_TRUE(OpenAndUse(whole_));
    const std::size_t key = whole_.rfind("K1030E");  // in a page of rows or of the index, the other keeps it
    std::string bytes = whole_;
    bytes[key] = 'X';
    EXPECT_FALSE(OpenAndUse(bytes));
}

TEST_F(DamageTest, OtherFilesAndFoldersDoNotOpen) {
    ASSERT_TRUE(OpenAndUse(whole_));
    const std::string text = "not a database\r\n";
    for (const std::string& bytes : {std::string(), text, std::string(whole_.size(), '\0'),
                                     "SQLite format 3" + std::string(1000, '\0'), whole_.substr(4096)}) {
        EXPECT_FALSE(OpenAndUse(bytes));
        EXPECT_FALSE(CheckDatabaseVersion(workshop_.Program()));
        EXPECT_EQ(workshop_.Tree.BytesOf(Workshop::CurrentDatabase), bytes);
    }
    workshop_.Tree.Erase(Workshop::CurrentDatabase);
    workshop_.Tree.PutFolder(Workshop::CurrentDatabase);
    EXPECT_FALSE(workshop_.StartProgram());
    EXPECT_FALSE(CheckDatabaseVersion(workshop_.Program()));
    EXPECT_TRUE(workshop_.Tree.HasFolder(Workshop::CurrentDatabase));
}

/// A change that the power cut short is undone at the next open; where that cannot be done, opening says why.
TEST_F(DamageTest, UnfinishedChangeIsUndoneAtTheNextOpenUnlessTheFileIsReadOnly) {
    const std::vector<InstalledRecord> rows = workshop_.Rows();
    const std::wstring journal = std::wstring(Workshop::CurrentDatabase) + L"-journal";
    std::string torn;
    for (std::size_t n = 1; torn.empty(); ++n) {
        workshop_.Faults.CutPowerAt(n);
        try {
            (void)workshop_.Program().CatalogDb->Pcls_MdbExecute(L"UPDATE M_manage SET Memo_txt = Pub_No || Memo_txt");
        } catch (const PowerCut&) {
        }
        ASSERT_TRUE(workshop_.Faults.Hit());
        workshop_.Program().CatalogDb.reset();
        workshop_.Faults.Reset();
        if (workshop_.Tree.HasFile(journal) && workshop_.Tree.BytesOf(Workshop::CurrentDatabase) != whole_) {
            torn = workshop_.Tree.BytesOf(Workshop::CurrentDatabase);
        } else {
            ASSERT_TRUE(workshop_.StartProgram());
        }
    }
    workshop_.Tree.Find(Workshop::CurrentDatabase)->Attributes = attributes::ReadOnly;
    try {
        workshop_.Embedded.Open(Workshop::CurrentDatabase);
        ADD_FAILURE() << "opened";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.Code(), static_cast<std::uint32_t>(SQLITE_READONLY_ROLLBACK));
    }
    EXPECT_EQ(workshop_.Tree.BytesOf(Workshop::CurrentDatabase), torn);
    workshop_.Tree.Find(Workshop::CurrentDatabase)->Attributes = 0;
    EXPECT_TRUE(workshop_.StartProgram());
    EXPECT_EQ(workshop_.Rows(), rows);
}

}  // namespace
}  // namespace mip
