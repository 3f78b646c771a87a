#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/PlatformError.h"
#include "tests/native/catalogue/CatalogueWorkshop.h"
#include "text/TextTools.h"

namespace mip {
namespace {

template <class Run>
void RunUntilPowerCut(Run run) {
    try {
        run();
    } catch (const PowerCut&) {
    }
}

std::string OldDatabase(CatalogueWorkshop& shop) {
    return shop.Tree.BytesOf(Workshop::MdbPath);
}

void Execute(CatalogueWorkshop& shop, const std::wstring& sql) {
    ASSERT_EQ(shop.Program().CatalogDb->Pcls_MdbExecute(sql), MdbOk);
}

/// The old database is there byte for byte, alone in its folder, and open.
void ExpectUntouched(CatalogueWorkshop& shop, const std::string& oldBytes) {
    const std::map<std::wstring, std::string> expected{{Workshop::MdbPath, oldBytes}};
    EXPECT_EQ(shop.LibraryFiles(), expected);
    EXPECT_EQ(ReadDatabaseVersion(*shop.Program().CatalogDb), shop.Version());
}

TEST(UpgradeTest, RowsAreCarriedOverWholeIntoTheNewLayout) {
    std::vector<InstalledRecord> records = SampleRecords(12);
    records[3].Pdf_flg = L"";  // no row in M_type: the files tell
    records[3].INSPath = L"C:\\Korvex\\Books\\K4";
    records[5].Adjust_flg = records[5].Pdf_flg = L" x";  // what is not known stays as it stands
    CatalogueWorkshop shop(records);
    shop.Tree.PutFile(records[3].INSPath + L"\\contents\\" + records[3].Pub_No + L".pdf");
    Execute(shop, L"UPDATE M_manage SET INSDate = NULL WHERE Pub_No = 'K1040E'");
    records[4].INSDate = ZeroDate;
    ASSERT_TRUE(CheckDatabaseVersion(shop.Program()));
    records[3].Pdf_flg = L"1";
    EXPECT_EQ(shop.Rows(), records);
    EXPECT_EQ(shop.Version(), 3);
    EXPECT_EQ(shop.LibraryFiles().size(), 1u);
    EXPECT_EQ(ReadDatabaseVersion(*shop.Program().CatalogDb), 3);
    EXPECT_EQ(shop.Program().Paths.MdbPath, Workshop::MdbPath);
    EXPECT_EQ(shop.Program().ModelOrder.Entries.at(1), (ModelOrderEntry{L"KX1", L"Kombi", 2}));
    const auto grants = shop.AccessControl.ListOf(Workshop::MdbPath);
    ASSERT_EQ(grants.size(), 1u);
    EXPECT_EQ(grants[0].Account, FakeAccountNames::UsersSid());
    const auto waited = shop.Clock.Sleeps;
    EXPECT_EQ(std::count(waited.begin(), waited.end(), std::chrono::seconds(2)), 1);
    EXPECT_TRUE(CheckDatabaseVersion(shop.Program()));  // and now it is current
}

TEST(UpgradeTest, CurrentOrNewerDatabaseIsLeftAloneButTheModelOrderIsRead) {
    for (const wchar_t* version : {L"3", L"4"}) {
        CatalogueWorkshop shop(SampleRecords(2));
        Execute(shop, std::wstring(L"UPDATE M_system SET MDB_Version = ") + version);
        const std::string old = OldDatabase(shop);
        EXPECT_TRUE(CheckDatabaseVersion(shop.Program()));
        ExpectUntouched(shop, old);
        EXPECT_EQ(shop.Program().ModelOrder.ModelOrderCount, 1);
        EXPECT_TRUE(shop.Clock.Sleeps.empty());
        RecoverInterruptedUpgrade(shop.Program());  // without a backup it does not even open the database
        ExpectUntouched(shop, old);
        EXPECT_TRUE(shop.MessageBoxes.Shown.empty());
    }
}

TEST(UpgradeTest, UnreadableVersionCountsAsOlderAndFilesTellTheFormsWhereNoTableDoes) {
    const std::vector<InstalledRecord> records = SampleRecords(2);
    std::vector<InstalledRecord> byFiles = records;
    std::swap(byFiles[0].Pdf_flg, byFiles[1].Pdf_flg);
    const std::pair<const wchar_t*, const std::vector<InstalledRecord>&> cases[] = {
        {L"DELETE FROM M_system", records},
        {L"UPDATE M_system SET MDB_Version = NULL", records},
        {L"UPDATE M_system SET MDB_Version = 'x'", records},
        {L"DROP TABLE M_system", records},
        {L"DROP TABLE M_type", byFiles},
    };
    for (const auto& [sql, expected] : cases) {
        CatalogueWorkshop shop(records);
        Execute(shop, sql);
        shop.Tree.PutFile(records[1].INSPath + L"\\contents\\" + records[1].Pub_No + L".pdf");
        EXPECT_TRUE(CheckDatabaseVersion(shop.Program())) << ToUtf8(sql);
        EXPECT_EQ(shop.Rows(), expected) << ToUtf8(sql);
    }
}

TEST(UpgradeTest, EveryFailureLeavesTheOldDatabaseInPlaceAndALineInTheLog) {
    const auto replaceSource = [](const std::string& bytes) {
        return [bytes](CatalogueWorkshop& shop) { shop.Tree.PutFile(Workshop::NewSource, bytes); };
    };
    const auto sourceWith = [](const std::wstring& sql) {
        return [sql](CatalogueWorkshop& shop) { shop.PutCatalogue(Workshop::NewSource, 3, {sql}); };
    };
    const struct {
        const char* Label;
        std::function<void(CatalogueWorkshop&)> Arrange;
    } cases[] = {
        {"no new database", [](auto& shop) { shop.Tree.Erase(Workshop::NewSource); }},
        {"new database is a text", replaceSource("text")},
        {"new database is empty", replaceSource("")},
        {"new database has no version", sourceWith(L"DELETE FROM M_system")},
        {"new database lacks the type table", sourceWith(L"DROP TABLE M_type")},
        {"an insert fails in the middle", sourceWith(L"INSERT INTO M_manage (Pub_No) VALUES ('K1050E')")},
        {"a row cannot be read",
         [](auto& shop) { Execute(shop, L"UPDATE M_manage SET INSDate='x' WHERE Pub_No='K1050E'"); }},
        {"no row can be read", [](auto& shop) { Execute(shop, L"ALTER TABLE M_manage DROP COLUMN Memo_txt"); }},
        {"no room for the copy", [](auto& shop) { shop.Tree.DriveOf(L"C:\\")->FreeBytes = 10'000; }},
        {"no room for the backup", [](auto& shop) { shop.Tree.DriveOf(L"C:\\")->FreeBytes = 45'000; }},
        {"the grant fails",
         [](auto& shop) {
             shop.AccessControl.FailWith = [&](const std::string& operation, const std::wstring&) {
                 EXPECT_TRUE(shop.Tree.HasFile(CatalogueWorkshop::Backup));
                 return operation == "SetList" ? errors::AccessDenied : 0;
             };
         }},
        {"the new file does not open",
         [](auto& shop) {
             shop.AccessControl.FailWith = [&](const std::string&, const std::wstring&) {
                 if (shop.Tree.HasFile(CatalogueWorkshop::Backup)) {
                     shop.Tree.Find(Workshop::MdbPath)->Bytes[0] = 'X';
                 }
                 return 0;
             };
         }},
        {"a Jet database in use, an SQLite one on the disc",
         [](auto& shop) {
             JetStandIn::TakeOver(shop, Workshop::MdbPath);
             EXPECT_TRUE(shop.StartProgram());
         }},
        {"an SQLite database in use, a Jet one on the disc",
         [](auto& shop) { JetStandIn::TakeOver(shop, Workshop::NewSource); }},
        {"old and new file have one name",
         [](auto& shop) {
             shop.PutCatalogue(L"D:\\programs\\setup\\KVX3.mdb", 3);
             shop.Program().Settings.Kvx3NewMdbName = L"KVX3.mdb";
         }},
    };
    for (const auto& [label, arrange] : cases) {
        SCOPED_TRACE(label);
        CatalogueWorkshop shop(SampleRecords(8));
        JetStandIn jet(shop);
        arrange(shop);
        const std::string old = OldDatabase(shop);
        EXPECT_FALSE(CheckDatabaseVersion(shop.Program()));
        EXPECT_NE(shop.Program().Log.Text(), L"");
        const std::string_view failed = label;
        EXPECT_EQ(shop.Program().Log.Text().find(L"local users got no access") != std::wstring::npos,
                  failed == "the grant fails");
        EXPECT_EQ(!shop.AccessControl.ListOf(Workshop::MdbPath).empty(), failed == "the new file does not open");
        ExpectUntouched(shop, old);
    }
    CatalogueWorkshop closed;
    closed.Program().CatalogDb.reset();
    EXPECT_FALSE(CheckDatabaseVersion(closed.Program()));
    EXPECT_NE(closed.Program().Log.Text().find(L"no catalogue is open"), std::wstring::npos);
}

constexpr wchar_t NewCopyJournal[] = L"C:\\Vantor\\kvx3new.mdb-journal";

/// The journal that a power cut during the commit leaves beside the copy: the engine applies it to what has that name.
std::string JournalOfCutUpgrade() {
    const std::string oldDatabase = OldDatabase(*std::make_unique<CatalogueWorkshop>(SampleRecords(5)));
    for (std::size_t n = 1;; ++n) {
        CatalogueWorkshop shop(oldDatabase);
        shop.Faults.CutPowerAt(n);
        RunUntilPowerCut([&] { (void)CheckDatabaseVersion(shop.Program()); });
        shop.Program().CatalogDb.reset();
        shop.Faults.Reset();
        const bool copyChanged =
            shop.Tree.HasFile(CatalogueWorkshop::NewCopy) &&
            shop.Tree.BytesOf(CatalogueWorkshop::NewCopy) != shop.Tree.BytesOf(Workshop::NewSource);
        if (copyChanged && shop.Tree.HasFile(NewCopyJournal)) {
            return shop.Tree.BytesOf(NewCopyJournal);
        }
    }
}

TEST(UpgradeTest, LeftoversOfAnEarlierUpgradeDoNotSpoilTheNext) {
    CatalogueWorkshop shop(SampleRecords(5));
    shop.PutCatalogue(Workshop::NewSource, 4, {L"CREATE TABLE M_later (Pub_No TEXT)"});
    shop.Tree.PutFile(CatalogueWorkshop::NewCopy, "half a copy", attributes::ReadOnly);
    shop.Tree.PutFile(NewCopyJournal, JournalOfCutUpgrade());
    shop.Tree.PutFile(CatalogueWorkshop::Mark, "1");
    shop.Tree.PutFile(CatalogueWorkshop::Backup, "a backup that was held");
    shop.Tree.PutFile(std::wstring(CatalogueWorkshop::Mark) + L"-part", "half a mark");
    ASSERT_TRUE(CheckDatabaseVersion(shop.Program()));
    EXPECT_EQ(shop.Rows(), SampleRecords(5));
    EXPECT_EQ(shop.Version(), 4);
    EXPECT_EQ(shop.Program().CatalogDb->Pcls_MdbCreate(0, L"SELECT * FROM M_later"), MdbEnd);
    EXPECT_EQ(shop.LibraryFiles().size(), 1u);
}

TEST(RecoveryTest, OwnBackupIsPutBackWhereNothingBetterIsLeft) {
    CatalogueWorkshop source(SampleRecords(3));
    const std::string whole = OldDatabase(source);
    const std::string torn = whole.substr(0, whole.size() / 2);
    CatalogueWorkshop other(SampleRecords(1));
    const std::string newer = OldDatabase(other);
    const std::string none;  // no such file
    const struct {
        const char* Label;
        const std::string& Current;
        const std::string& Backup;
        const char* Mark;
        const std::string& Expected;
        bool BackupStays;
        const char* MarkAfterwards;
    } cases[] = {
        {"database missing", none, whole, "1", whole, false, ""},
        {"database torn", torn, whole, "1", whole, false, ""},
        {"database whole", newer, whole, "1", newer, false, ""},
        {"database whole, backup torn", newer, torn, "1", newer, false, ""},
        {"database torn, backup torn", torn, torn, "1", torn, true, "1"},
        {"database missing, backup torn", none, torn, "1", none, true, "1"},
        {"somebody else's backup", newer, whole, "", newer, true, ""},
        {"somebody else's backup, database missing", none, whole, "", none, true, ""},
        {"somebody else's backup, our own is another", newer, whole, "2", newer, true, ""},
        {"somebody else's mark", newer, whole, "x", newer, true, "x"},
    };
    using Files = std::map<std::wstring, std::string>;
    const auto filesOf = [](const std::string& current, const std::string& backup, const std::string& mark) {
        Files files{{Workshop::MdbPath, current}, {CatalogueWorkshop::Backup, backup}, {CatalogueWorkshop::Mark, mark}};
        std::erase_if(files, [](const auto& file) { return file.second.empty(); });
        return files;
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.Label);
        CatalogueWorkshop shop;
        shop.Program().CatalogDb.reset();
        shop.Tree.Erase(Workshop::MdbPath);
        for (const auto& [path, bytes] : filesOf(test.Current, test.Backup, test.Mark)) {
            shop.Tree.PutFile(path, bytes);
        }
        shop.Tree.PutFile(CatalogueWorkshop::NewCopy, "half a copy");
        RecoverInterruptedUpgrade(shop.Program());
        EXPECT_EQ(shop.LibraryFiles(),
                  filesOf(test.Expected, test.BackupStays ? test.Backup : none, test.MarkAfterwards));
        const bool isMended = *test.Mark != '\0' && *test.MarkAfterwards == '\0';
        EXPECT_TRUE(!isMended || !shop.AccessControl.ListOf(Workshop::MdbPath).empty());
    }
}

/// The upgrade with a fault, or a power cut, at every single call to the computer, those of the database engine to its
/// files included. Afterwards the catalogue is the old one or the new one, with all rows.
class UpgradeFaults : public testing::Test {
  protected:
    /// In its folder a file of somebody else has the name that the backup would get.
    std::unique_ptr<CatalogueWorkshop> NewWorkshop() {
        auto shop = std::make_unique<CatalogueWorkshop>(old_);
        shop->Tree.PutFile(CatalogueWorkshop::Backup, NotOurs);
        return shop;
    }

    /// For every call of the upgrade: `arm` sets the fault, the upgrade runs, `check` looks at what is left. The last
    /// upgrade met no fault.
    template <class Arm, class Check>
    void ForEveryCall(Arm arm, Check check) {
        bool hit = true;
        for (std::size_t n = 1; hit; ++n) {
            const auto shop = NewWorkshop();
            arm(shop->Faults, n);
            bool upgraded = false;
            RunUntilPowerCut([&] { upgraded = CheckDatabaseVersion(shop->Program()); });
            SCOPED_TRACE("call " + std::to_string(n) + ", " + shop->Faults.HitOperation());
            hit = shop->Faults.Hit();
            check(*shop, upgraded);
            EXPECT_TRUE(hit || (upgraded && n > FewestCalls));
        }
    }

    void ExpectOldOrNew(CatalogueWorkshop& shop, bool isNew) {
        EXPECT_EQ(shop.Version(), isNew ? 3 : 2);
        EXPECT_EQ(shop.Rows(), records_);
        EXPECT_EQ(shop.LibraryFiles().size(), 2u);
        EXPECT_EQ(shop.Tree.BytesOf(CatalogueWorkshop::Backup), NotOurs);
        EXPECT_TRUE(isNew || shop.Tree.BytesOf(Workshop::MdbPath) == old_);
    }

    /// What the next start finds: either of the two, whole and alone.
    void ExpectWholeAfterRestart(CatalogueWorkshop& shop) {
        shop.Faults.Reset();
        shop.Program().CatalogDb.reset();
        RecoverInterruptedUpgrade(shop.Program());
        ASSERT_TRUE(shop.StartProgram());
        ExpectOldOrNew(shop, shop.Version() == 3);
    }

    static void ExpectNewIsGranted(CatalogueWorkshop& shop) {
        EXPECT_TRUE(shop.Version() == 2 || !shop.AccessControl.ListOf(Workshop::MdbPath).empty());
    }

    static void EndProcess(CatalogueWorkshop& shop, FileTree::Unflushed unflushed) {
        shop.Program().CatalogDb.reset();
        shop.Faults.Reset();
        shop.Tree.SettleAfterPowerCut(unflushed);
    }

    static constexpr std::size_t FewestCalls = 150;  // an upgrade makes more, or the loop has missed something
    static constexpr char NotOurs[] = "the shop's own copy";
    const std::vector<InstalledRecord> records_ = SampleRecords(9);
    const std::string old_ = CatalogueWorkshop(records_).Tree.BytesOf(Workshop::MdbPath);
};

TEST_F(UpgradeFaults, OneFailedCallGivesTheOldOrTheNewDatabase) {
    std::size_t refused = 0;
    ForEveryCall(std::mem_fn(&mip::Faults::FailCall), [&](CatalogueWorkshop& shop, bool upgraded) {
        shop.Faults.Reset();
        ExpectOldOrNew(shop, upgraded);
        EXPECT_EQ(FindInstalledRecord(shop.Program(), records_[4].Pub_No).Status, MdbOk);
        EXPECT_EQ(ReadDatabaseVersion(*shop.Program().CatalogDb), upgraded ? 3 : 2);
        refused += upgraded ? 0 : 1;
    });
    EXPECT_GT(refused, FewestCalls / 2);
}

TEST_F(UpgradeFaults, EverythingFailingFromACallOnIsMendedByTheNextStart) {
    ForEveryCall(std::mem_fn(&mip::Faults::FailFrom), [&](CatalogueWorkshop& shop, bool) {
        ExpectWholeAfterRestart(shop);
        ExpectNewIsGranted(shop);
    });
}

TEST_F(UpgradeFaults, PowerCutAtAnyCallIsMendedByTheNextStart) {
    for (const auto unflushed :
         {FileTree::Unflushed::Kept, FileTree::Unflushed::Lost, FileTree::Unflushed::EverySecondPage}) {
        ForEveryCall(std::mem_fn(&mip::Faults::CutPowerAt), [&](CatalogueWorkshop& shop, bool) {
            EndProcess(shop, unflushed);
            ExpectWholeAfterRestart(shop);
            ExpectNewIsGranted(shop);
        });
    }
}

/// The computer that lost its power loses it again while the next start mends.
TEST_F(UpgradeFaults, SecondPowerCutDuringTheMendingIsMendedToo) {
    std::set<std::map<std::wstring, std::string>> mended;
    ForEveryCall(std::mem_fn(&mip::Faults::CutPowerAt), [&](CatalogueWorkshop& first, bool) {
        EndProcess(first, FileTree::Unflushed::Kept);
        const auto left = first.LibraryFiles();
        bool cutAgain = mended.insert(left).second;
        for (std::size_t m = 1; cutAgain; ++m) {
            SCOPED_TRACE("then at " + std::to_string(m));
            const auto shop = NewWorkshop();
            shop->Program().CatalogDb.reset();
            shop->Tree.Erase(Workshop::MdbPath);
            for (const auto& [path, bytes] : left) {
                shop->Tree.PutFile(path, bytes);
            }
            shop->Faults.CutPowerAt(m);
            RunUntilPowerCut([&] { RecoverInterruptedUpgrade(shop->Program()); });
            cutAgain = shop->Faults.Hit();
            EndProcess(*shop, FileTree::Unflushed::Kept);
            ExpectWholeAfterRestart(*shop);
        }
    });
}

}  // namespace
}  // namespace mip
