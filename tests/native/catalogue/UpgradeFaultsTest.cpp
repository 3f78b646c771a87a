#include <gtest/gtest.h>

#include <map>
#include <set>

#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "tests/native/catalogue/Workshop.h"

/// The upgrade with a fault, or a power cut, at every single call to the computer, those of the database engine to its
/// files included. Afterwards the catalogue is the old one or the new one, with all rows.
namespace mip {
namespace {

const std::vector<InstalledRecord>& Records() {
    static const std::vector<InstalledRecord> records = SampleRecords(9);
    return records;
}

class UpgradeFaults : public testing::Test {
  protected:
    /// In its folder a file of somebody else has the name that the backup would get.
    std::unique_ptr<Workshop> NewWorkshop() {
        auto workshop = std::make_unique<Workshop>(old_);
        workshop->Tree.PutFile(Workshop::Backup, NotOurs);
        return workshop;
    }

    static bool Upgrade(Workshop& workshop) {
        try {
            return CheckDatabaseVersion(workshop.Program());
        } catch (const PowerCut&) {
            return false;
        }
    }

    static void Recover(Workshop& workshop) {
        try {
            RecoverInterruptedUpgrade(workshop.Program());
        } catch (const PowerCut&) {
        }
    }

    void ExpectOldOrNew(Workshop& workshop, bool isNew) {
        EXPECT_EQ(workshop.Version(), isNew ? 3 : 2);
        EXPECT_EQ(workshop.Rows(), Records());
        EXPECT_EQ(workshop.Tree.Snapshot(Workshop::InstallDir).size(), 2u);
        EXPECT_EQ(workshop.Tree.BytesOf(Workshop::Backup), NotOurs);
        if (!isNew) {
            EXPECT_EQ(workshop.Tree.BytesOf(Workshop::CurrentDatabase), old_);
        }
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

    /// The power goes at the n-th call of the upgrade. False when the upgrade ended before.
    bool CutUpgrade(Workshop& workshop, std::size_t n, FileTree::Unflushed unflushed) {
        workshop.Faults.CutPowerAt(n);
        Upgrade(workshop);
        const bool cut = workshop.Faults.Hit();
        EndProcess(workshop, unflushed);
        return cut;
    }

    static void EndProcess(Workshop& workshop, FileTree::Unflushed unflushed) {
        workshop.Program().CatalogDb.reset();
        workshop.Faults.Reset();
        workshop.Tree.SettleAfterPowerCut(unflushed);
    }

    static constexpr char NotOurs[] = "the workshop's own copy";
    const std::string old_ = Workshop(Records()).Tree.BytesOf(Workshop::CurrentDatabase);
};

constexpr std::size_t FewestCalls = 150;  // an upgrade makes more, or the loop has missed something

TEST_F(UpgradeFaults, OneFailedCallGivesTheOldOrTheNewDatabase) {
    std::size_t refused = 0;
    for (std::size_t n = 1;; ++n) {
        const auto workshop = NewWorkshop();
        workshop->Faults.FailCall(n);
        const bool upgraded = Upgrade(*workshop);
        SCOPED_TRACE("call " + std::to_string(n) + ", " + workshop->Faults.HitOperation());
        const bool hit = workshop->Faults.Hit();
        workshop->Faults.Reset();
        ExpectOldOrNew(*workshop, upgraded);
        EXPECT_EQ(FindInstalledRecord(workshop->Program(), Records()[4].Pub_No).Status, MdbOk);
        EXPECT_EQ(ReadDatabaseVersion(*workshop->Program().CatalogDb), upgraded ? 3 : 2);
        refused += upgraded ? 0 : 1;
        if (!hit) {
            EXPECT_TRUE(upgraded);
            EXPECT_GT(n, FewestCalls);
            break;
        }
    }
    EXPECT_GT(refused, FewestCalls / 2);
}

TEST_F(UpgradeFaults, EverythingFailingFromACallOnIsMendedByTheNextStart) {
    for (std::size_t n = 1;; ++n) {
        const auto workshop = NewWorkshop();
        workshop->Faults.FailFrom(n);
        Upgrade(*workshop);
        SCOPED_TRACE("from call " + std::to_string(n) + ", " + workshop->Faults.HitOperation());
        const bool hit = workshop->Faults.Hit();
        ExpectWholeAfterRestart(*workshop);
        ExpectNewIsGranted(*workshop);
        if (!hit) {
            EXPECT_GT(n, FewestCalls);
            break;
        }
    }
}

TEST_F(UpgradeFaults, PowerCutAtAnyCallIsMendedByTheNextStart) {
    for (const auto unflushed :
         {FileTree::Unflushed::Kept, FileTree::Unflushed::Lost, FileTree::Unflushed::EverySecondPage}) {
        bool cut = true;
        for (std::size_t n = 1; cut; ++n) {
            const auto workshop = NewWorkshop();
            cut = CutUpgrade(*workshop, n, unflushed);
            SCOPED_TRACE("cut at call " + std::to_string(n));
            ExpectWholeAfterRestart(*workshop);
            ExpectNewIsGranted(*workshop);
            EXPECT_TRUE(cut || n > FewestCalls);
        }
    }
}

/// The computer that lost its power loses it again while the next start mends.
TEST_F(UpgradeFaults, SecondPowerCutDuringTheMendingIsMendedToo) {
    std::set<std::map<std::wstring, std::string>> mended;
    bool cut = true;
    for (std::size_t n = 1; cut; ++n) {
        auto workshop = NewWorkshop();
        cut = CutUpgrade(*workshop, n, FileTree::Unflushed::Kept);
        const auto left = workshop->Tree.Snapshot(Workshop::InstallDir);
        if (!mended.insert(left).second) {
            continue;
        }
        bool cutAgain = true;
        for (std::size_t m = 1; cutAgain; ++m) {
            SCOPED_TRACE("cut at call " + std::to_string(n) + ", then at " + std::to_string(m));
            workshop = NewWorkshop();
            workshop->Program().CatalogDb.reset();
            workshop->Tree.Erase(Workshop::CurrentDatabase);
            for (const auto& [path, bytes] : left) {
                workshop->Tree.PutFile(path, bytes);
            }
            workshop->Faults.CutPowerAt(m);
            Recover(*workshop);
            cutAgain = workshop->Faults.Hit();
            EndProcess(*workshop, FileTree::Unflushed::Kept);
            ExpectWholeAfterRestart(*workshop);
        }
    }
}

}  // namespace
}  // namespace mip
