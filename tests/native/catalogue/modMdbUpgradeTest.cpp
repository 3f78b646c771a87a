#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/PlatformError.h"
#include "tests/native/catalogue/Workshop.h"
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

std::string OldDatabase(Workshop& workshop) {
    return workshop.Tree.BytesOf(Workshop::CurrentDatabase);
}

void Execute(Workshop& workshop, const std::wstring& sql) {
    ASSERT_EQ(workshop.Program().CatalogDb->Pcls_MdbExecute(sql), MdbOk);
}

/// The old database is there byte for byte, alone in its folder, and open.
void ExpectUntouched(Workshop& workshop, const std::string& oldBytes) {
    const std::map<std::wstring, std::string> expected{{Workshop::CurrentDatabase, oldBytes}};
    EXPECT_EQ(workshop.Tree.Snapshot(Workshop::InstallDir), expected);
    EXPECT_EQ(ReadDatabaseVersion(*workshop.Program().CatalogDb), workshop.Version());
}

TEST(UpgradeTest, RowsAreCarriedOverWholeIntoTheNewLayout) {
    std::vector<InstalledRecord> records = SampleRecords(12);
    records[3].Pdf_flg = L"";  // no row in M_type: the files tell
    records[3].INSPath = L"C:\\Korvex\\Books\\K4";
    records[5].Adjust_flg = records[5].Pdf_flg = L" x";  // what is not known stays as it stands
    Workshop workshop(records);
    workshop.Tree.PutFile(records[3].INSPath + L"\\contents\\" + records[3].Pub_No + L".pdf");
    Execute(workshop, L"UPDATE M_manage SET INSDate = NULL WHERE Pub_No = 'K1040E'");
    records[4].INSDate = ZeroDate;
    ASSERT_TRUE(CheckDatabaseVersion(workshop.Program()));
    records[3].Pdf_flg = L"1";
    EXPECT_EQ(workshop.Rows(), records);
    EXPECT_EQ(workshop.Version(), 3);
    EXPECT_EQ(workshop.Tree.Snapshot(Workshop::InstallDir).size(), 1u);
    EXPECT_EQ(ReadDatabaseVersion(*workshop.Program().CatalogDb), 3);
    EXPECT_EQ(workshop.Program().Paths.MdbPath, Workshop::CurrentDatabase);
    EXPECT_EQ(workshop.Program().ModelOrder.Entries.at(1), (ModelOrderEntry{L"KX1", L"Kombi", 2}));
    const auto grants = workshop.AccessControl.ListOf(Workshop::CurrentDatabase);
    ASSERT_EQ(grants.size(), 1u);
    EXPECT_EQ(grants[0].Account, FakeAccountNames::UsersSid());
    const auto waited = workshop.Clock.Sleeps;
    EXPECT_EQ(std::count(waited.begin(), waited.end(), std::chrono::seconds(2)), 1);
    EXPECT_TRUE(CheckDatabaseVersion(workshop.Program()));  // and now it is current
}

TEST(UpgradeTest, CurrentOrNewerDatabaseIsLeftAloneButTheModelOrderIsRead) {
    for (const wchar_t* version : {L"3", L"4"}) {
        Workshop workshop(SampleRecords(2));
        Execute(workshop, std::wstring(L"UPDATE M_system SET MDB_Version = ") + version);
        const std::string old = OldDatabase(workshop);
        EXPECT_TRUE(CheckDatabaseVersion(workshop.Program()));
        ExpectUntouched(workshop, old);
        EXPECT_EQ(workshop.Program().ModelOrder.ModelOrderCount, 1);
        EXPECT_TRUE(workshop.Clock.Sleeps.empty());
        RecoverInterruptedUpgrade(workshop.Program());  // without a backup it does not even open the database
        ExpectUntouched(workshop, old);
        EXPECT_TRUE(workshop.MessageBoxes.Shown.empty());
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
        Workshop workshop(records);
        Execute(workshop, sql);
        workshop.Tree.PutFile(records[1].INSPath + L"\\contents\\" + records[1].Pub_No + L".pdf");
        EXPECT_TRUE(CheckDatabaseVersion(workshop.Program())) << ToUtf8(sql);
        EXPECT_EQ(workshop.Rows(), expected) << ToUtf8(sql);
    }
}

TEST(UpgradeTest, EveryFailureLeavesTheOldDatabaseInPlaceAndALineInTheLog) {
    const auto replaceSource = [](const std::string& bytes) {
        return [bytes](Workshop& workshop) { workshop.Tree.PutFile(Workshop::NewSource, bytes); };
    };
    const auto sourceWith = [](const std::wstring& sql) {
        return [sql](Workshop& workshop) { workshop.PutCatalogue(Workshop::NewSource, 3, {sql}); };
    };
    const struct {
        const char* Label;
        std::function<void(Workshop&)> Arrange;
    } cases[] = {
        {"no new database", [](Workshop& workshop) { workshop.Tree.Erase(Workshop::NewSource); }},
        {"new database is a text", replaceSource("text")},
        {"new database is empty", replaceSource("")},
        {"new database has no version", sourceWith(L"DELETE FROM M_system")},
        {"new database lacks the type table", sourceWith(L"DROP TABLE M_type")},
        {"an insert fails in the middle", sourceWith(L"INSERT INTO M_manage (Pub_No) VALUES ('K1050E')")},
        {"a row cannot be read",
         [](Workshop& workshop) { Execute(workshop, L"UPDATE M_manage SET INSDate='x' WHERE Pub_No='K1050E'"); }},
        {"no row can be read",
         [](Workshop& workshop) { Execute(workshop, L"ALTER TABLE M_manage DROP COLUMN Memo_txt"); }},
        {"no room for the copy", [](Workshop& workshop) { workshop.Tree.DriveOf(L"C:\\")->FreeBytes = 10'000; }},
        {"no room for the backup", [](Workshop& workshop) { workshop.Tree.DriveOf(L"C:\\")->FreeBytes = 45'000; }},
        {"the grant fails",
         [](Workshop& workshop) {
             workshop.AccessControl.FailWith = [&](const std::string& operation, const std::wstring&) {
                 EXPECT_TRUE(workshop.Tree.HasFile(Workshop::Backup));
                 return operation == "SetList" ? errors::AccessDenied : 0;
             };
         }},
        {"the new file does not open",
         [](Workshop& workshop) {
             workshop.AccessControl.FailWith = [&](const std::string&, const std::wstring&) {
                 if (workshop.Tree.HasFile(Workshop::Backup)) {
                     workshop.Tree.Find(Workshop::CurrentDatabase)->Bytes[0] = 'X';
                 }
                 return 0;
             };
         }},
        {"a Jet database in use, an SQLite one on the disc",
         [](Workshop& workshop) {
             JetStandIn::TakeOver(workshop, Workshop::CurrentDatabase);
             EXPECT_TRUE(workshop.StartProgram());
         }},
        {"an SQLite database in use, a Jet one on the disc",
         [](Workshop& workshop) { JetStandIn::TakeOver(workshop, Workshop::NewSource); }},
        {"old and new file have one name",
         [](Workshop& workshop) {
             workshop.PutCatalogue(L"D:\\programs\\setup\\kvx3.MDB", 3);
             workshop.Program().Settings.Kvx3NewMdbName = L"kvx3.MDB";
         }},
    };
    for (const auto& [label, arrange] : cases) {
        SCOPED_TRACE(label);
        Workshop workshop(SampleRecords(8));
        JetStandIn jet(workshop);
        arrange(workshop);
        const std::string old = OldDatabase(workshop);
        EXPECT_FALSE(CheckDatabaseVersion(workshop.Program()));
        EXPECT_NE(workshop.Program().Log.Text(), L"");
        ExpectUntouched(workshop, old);
    }
}

constexpr wchar_t NewCopyJournal[] = L"C:\\Korvex\\Manual\\KVX3_NEW.mdb-journal";

/// The journal that a power cut during the commit leaves beside the copy: the engine applies it to what has that name.
std::string JournalOfCutUpgrade() {
    const std::string oldDatabase = OldDatabase(*std::make_unique<Workshop>(SampleRecords(5)));
    for (std::size_t n = 1;; ++n) {
        Workshop workshop(oldDatabase);
        workshop.Faults.CutPowerAt(n);
        RunUntilPowerCut([&] { (void)CheckDatabaseVersion(workshop.Program()); });
        workshop.Program().CatalogDb.reset();
        workshop.Faults.Reset();
        const bool copyChanged = workshop.Tree.HasFile(Workshop::NewCopy) &&
                                 workshop.Tree.BytesOf(Workshop::NewCopy) != workshop.Tree.BytesOf(Workshop::NewSource);
        if (copyChanged && workshop.Tree.HasFile(NewCopyJournal)) {
            return workshop.Tree.BytesOf(NewCopyJournal);
        }
    }
}

TEST(UpgradeTest, LeftoversOfAnEarlierUpgradeDoNotSpoilTheNext) {
    Workshop workshop(SampleRecords(5));
    workshop.PutCatalogue(Workshop::NewSource, 4, {L"CREATE TABLE M_later (Pub_No TEXT)"});
    workshop.Tree.PutFile(Workshop::NewCopy, "half a copy", attributes::ReadOnly);
    workshop.Tree.PutFile(NewCopyJournal, JournalOfCutUpgrade());
    workshop.Tree.PutFile(Workshop::Mark, "1");
    workshop.Tree.PutFile(Workshop::Backup, "a backup that was held");
    workshop.Tree.PutFile(std::wstring(Workshop::Mark) + L"-part", "half a mark");
    ASSERT_TRUE(CheckDatabaseVersion(workshop.Program()));
    EXPECT_EQ(workshop.Rows(), SampleRecords(5));
    EXPECT_EQ(workshop.Version(), 4);
    EXPECT_EQ(workshop.Program().CatalogDb->Pcls_MdbCreate(0, L"SELECT * FROM M_later"), MdbEnd);
    EXPECT_EQ(workshop.Tree.Snapshot(Workshop::InstallDir).size(), 1u);
}

TEST(RecoveryTest, OwnBackupIsPutBackWhereNothingBetterIsLeft) {
    Workshop source(SampleRecords(3));
    const std::string whole = OldDatabase(source);
    const std::string torn = whole.substr(0, whole.size() / 2);
    Workshop other(SampleRecords(1));
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
        Files files{{Workshop::CurrentDatabase, current}, {Workshop::Backup, backup}, {Workshop::Mark, mark}};
        std::erase_if(files, [](const auto& file) { return file.second.empty(); });
        return files;
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.Label);
        Workshop workshop;
        workshop.Program().CatalogDb.reset();
        workshop.Tree.Erase(Workshop::CurrentDatabase);
        for (const auto& [path, bytes] : filesOf(test.Current, test.Backup, test.Mark)) {
            workshop.Tree.PutFile(path, bytes);
        }
        workshop.Tree.PutFile(Workshop::NewCopy, "half a copy");
        RecoverInterruptedUpgrade(workshop.Program());
        EXPECT_EQ(workshop.Tree.Snapshot(Workshop::InstallDir),
                  filesOf(test.Expected, test.BackupStays ? test.Backup : none, test.MarkAfterwards));
        const bool isMended = *test.Mark != '\0' && *test.MarkAfterwards == '\0';
        EXPECT_TRUE(!isMended || !workshop.AccessControl.ListOf(Workshop::CurrentDatabase).empty());
    }
}

/// The upgrade with a fault, or a power cut, at every single call to the computer, those of the database engine to its
/// files included. Afterwards the catalogue is the old one or the new one, with all rows.
class UpgradeFaults : public testing::Test {
  protected:
    /// In its folder a file of somebody else has the name that the backup would get.
    std::unique_ptr<Workshop> NewWorkshop() {
        auto workshop = std::make_unique<Workshop>(old_);
        workshop->Tree.PutFile(Workshop::Backup, NotOurs);
        return workshop;
    }

    /// For every call of the upgrade: `arm` sets the fault, the upgrade runs, `check` looks at what is left. The last
    /// upgrade met no fault.
    template <class Arm, class Check>
    void ForEveryCall(Arm arm, Check check) {
        bool hit = true;
        for (std::size_t n = 1; hit; ++n) {
            const auto workshop = NewWorkshop();
            arm(workshop->Faults, n);
            bool upgraded = false;
            RunUntilPowerCut([&] { upgraded = CheckDatabaseVersion(workshop->Program()); });
            SCOPED_TRACE("call " + std::to_string(n) + ", " + workshop->Faults.HitOperation());
            hit = workshop->Faults.Hit();
            check(*workshop, upgraded);
            EXPECT_TRUE(hit || (upgraded && n > FewestCalls));
        }
    }

    void ExpectOldOrNew(Workshop& workshop, bool isNew) {
        EXPECT_EQ(workshop.Version(), isNew ? 3 : 2);
        EXPECT_EQ(workshop.Rows(), records_);
        EXPECT_EQ(workshop.Tree.Snapshot(Workshop::InstallDir).size(), 2u);
        EXPECT_EQ(workshop.Tree.BytesOf(Workshop::Backup), NotOurs);
        EXPECT_TRUE(isNew || workshop.Tree.BytesOf(Workshop::CurrentDatabase) == old_);
    }

    /// What the next start finds: either of the two, whole and alone.
    void ExpectWholeAfterRestart(Workshop& workshop) {
        workshop.Faults.Reset();
        workshop.Program().CatalogDb.reset();
        RecoverInterruptedUpgrade(workshop.Program());
        ASSERT_TRUE(workshop.StartProgram());
        ExpectOldOrNew(workshop, workshop.Version() == 3);
    }

    static void ExpectNewIsGranted(Workshop& workshop) {
        EXPECT_TRUE(workshop.Version() == 2 || !workshop.AccessControl.ListOf(Workshop::CurrentDatabase).empty());
    }

    static void EndProcess(Workshop& workshop, FileTree::Unflushed unflushed) {
        workshop.Program().CatalogDb.reset();
        workshop.Faults.Reset();
        workshop.Tree.SettleAfterPowerCut(unflushed);
    }

    static constexpr std::size_t FewestCalls = 150;  // an upgrade makes more, or the loop has missed something
    static constexpr char NotOurs[] = "the workshop's own copy";
    const std::vector<InstalledRecord> records_ = SampleRecords(9);
    const std::string old_ = Workshop(records_).Tree.BytesOf(Workshop::CurrentDatabase);
};

TEST_F(UpgradeFaults, OneFailedCallGivesTheOldOrTheNewDatabase) {
    std::size_t refused = 0;
    ForEveryCall(std::mem_fn(&mip::Faults::FailCall), [&](Workshop& workshop, bool upgraded) {
        workshop.Faults.Reset();
        ExpectOldOrNew(workshop, upgraded);
        EXPECT_EQ(FindInstalledRecord(workshop.Program(), records_[4].Pub_No).Status, MdbOk);
        EXPECT_EQ(ReadDatabaseVersion(*workshop.Program().CatalogDb), upgraded ? 3 : 2);
        refused += upgraded ? 0 : 1;
    });
    EXPECT_GT(refused, FewestCalls / 2);
}

TEST_F(UpgradeFaults, EverythingFailingFromACallOnIsMendedByTheNextStart) {
    ForEveryCall(std::mem_fn(&mip::Faults::FailFrom), [&](Workshop& workshop, bool) {
        ExpectWholeAfterRestart(workshop);
        ExpectNewIsGranted(workshop);
    });
}

TEST_F(UpgradeFaults, PowerCutAtAnyCallIsMendedByTheNextStart) {
    for (const auto unflushed :
         {FileTree::Unflushed::Kept, FileTree::Unflushed::Lost, FileTree::Unflushed::EverySecondPage}) {
        ForEveryCall(std::mem_fn(&mip::Faults::CutPowerAt), [&](Workshop& workshop, bool) {
            EndProcess(workshop, unflushed);
            ExpectWholeAfterRestart(workshop);
            ExpectNewIsGranted(workshop);
        });
    }
}

/// The computer that lost its power loses it again while the next start mends.
TEST_F(UpgradeFaults, SecondPowerCutDuringTheMendingIsMendedToo) {
    std::set<std::map<std::wstring, std::string>> mended;
    ForEveryCall(std::mem_fn(&mip::Faults::CutPowerAt), [&](Workshop& first, bool) {
        EndProcess(first, FileTree::Unflushed::Kept);
        const auto left = first.Tree.Snapshot(Workshop::InstallDir);
        bool cutAgain = mended.insert(left).second;
        for (std::size_t m = 1; cutAgain; ++m) {
            SCOPED_TRACE("then at " + std::to_string(m));
            const auto workshop = NewWorkshop();
            workshop->Program().CatalogDb.reset();
            workshop->Tree.Erase(Workshop::CurrentDatabase);
            for (const auto& [path, bytes] : left) {
                workshop->Tree.PutFile(path, bytes);
            }
            workshop->Faults.CutPowerAt(m);
            RunUntilPowerCut([&] { RecoverInterruptedUpgrade(workshop->Program()); });
            cutAgain = workshop->Faults.Hit();
            EndProcess(*workshop, FileTree::Unflushed::Kept);
            ExpectWholeAfterRestart(*workshop);
        }
    });
}

}  // namespace
}  // namespace mip
