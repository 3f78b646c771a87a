#include <windows.h>

#include <gtest/gtest.h>

#include "app/Program.h"
#include "app/modFile.h"
#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/archive/EmbeddedArchives.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/AdoEngine.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsAccessControl.h"
#include "platform/windows/WindowsAccountNames.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsBrowsers.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "platform/windows/WindowsFileVersions.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsMessageBoxes.h"
#include "platform/windows/WindowsProcesses.h"
#include "platform/windows/WindowsProfileFiles.h"
#include "platform/windows/WindowsRegistry.h"
#include "platform/windows/WindowsShell.h"
#include "platform/windows/WindowsVolumes.h"
#include "tests/windows/ScratchFolder.h"
#include "text/DateText.h"

/// The catalogue on real files: what the in-memory Windows cannot show.
namespace mip {
namespace {

class InstantClock : public WindowsClock {
  public:
    void Sleep(std::chrono::milliseconds) override {}
};

class CatalogueOnFiles : public testing::Test {
  protected:
    CatalogueOnFiles() {
        program_.Paths.InstallDir = scratch_.Path() + L"\\カタログ";
        program_.Paths.ProgramFolder = scratch_.Path() + L"\\disc";
        program_.Settings.Kvx3MdbName = L"KVX3.mdb";
        program_.Settings.Kvx3NewMdbName = L"KVX3 NEW.mdb";
        program_.Identity.FullAccessTrustee = L"Users";
        database_ = program_.Paths.InstallDir + L"\\KVX3.mdb";
        backup_ = program_.Paths.InstallDir + L"\\BACK_KVX3.mdb";
        newSource_ = program_.Paths.ProgramFolder + L"\\KVX3 NEW.mdb";
        folders_.Create(program_.Paths.InstallDir);
        folders_.Create(program_.Paths.ProgramFolder);
        PutCatalogues();
        program_.CatalogDb = std::make_unique<clsMDB>(program_.Platform);
        EXPECT_TRUE(program_.CatalogDb->Pcls_MdbOpen(database_));
    }

    void PutCatalogues() {
        engine_.Create(newSource_, 3);
        files_.SetAttributes(newSource_, attributes::ReadOnly);
        const auto catalogue = engine_.Create(database_, 2);
        catalogue->Execute(
            L"INSERT INTO M_manage ([Pub_No],[InsDate],[InsPath],[Adjust_flg]) "
            L"VALUES ('K1000E',CDate('2021/03/04 05:06:07'),'C:\\カバー','1')");
        catalogue->Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('K1000E','1')");
    }

    /// The catalogue of a version with its row whole, open, and no other file beside it.
    void ExpectCatalogue(std::int16_t version) {
        EXPECT_EQ(ReadDatabaseVersion(*program_.CatalogDb), version);
        ASSERT_EQ(OpenInstalledList(program_, 0), MdbOk);
        EXPECT_EQ(program_.Installed.INSDate, ParseDateTime(L"2021/03/04 05:06:07"));
        EXPECT_EQ(program_.Installed.INSPath, L"C:\\カバー");
        EXPECT_EQ(program_.Installed.Adjust_flg, L"1");
        EXPECT_EQ(program_.Installed.Pdf_flg, L"1");
        EXPECT_EQ(folders_.List(program_.Paths.InstallDir).Files, std::vector<std::wstring>{L"KVX3.mdb"});
    }

    WindowsFiles files_;
    WindowsFolders folders_;
    WindowsVolumes volumes_;
    WindowsFileVersions fileVersions_;
    WindowsProfileFiles profileFiles_;
    WindowsRegistry registry_;
    WindowsProcesses processes_;
    InstantClock clock_;
    WindowsComputer computer_{L"CatalogueOnFiles"};
    WindowsAccountNames accountNames_;
    WindowsAccessControl accessControl_;
    WindowsShell shell_;
    WindowsBrowsers browsers_;
    WindowsArchiveSystem archiveSystem_;
    EmbeddedArchives archives_{archiveSystem_, clock_};
    AdoEngine jetEngine_;
    SqliteEngine engine_;
    WindowsMessageBoxes boxes_;
    ScratchFolder scratch_{L"目録 of K's"};
    Program program_{Platform{files_, folders_, volumes_, fileVersions_, profileFiles_, registry_, processes_, clock_,
                              computer_, accountNames_, accessControl_, shell_, browsers_, archives_, jetEngine_,
                              engine_, boxes_}};
    std::wstring database_;
    std::wstring backup_;
    std::wstring newSource_;
};

TEST_F(CatalogueOnFiles, ReadOnlySourceUpgradesTheCatalogueWhichStaysWritable) {
    ASSERT_TRUE(CheckDatabaseVersion(program_));
    ExpectCatalogue(3);
    EXPECT_TRUE(IsFileWritable(program_.Platform, database_));
    DiscCatalogueRecord manual;
    manual.Pub_No = L"K'2";
    manual.Model_desc = L"サービスマニュアル";
    ASSERT_TRUE(RegisterInstalledManual(program_, manual, scratch_.Path(), L"1"));
    ASSERT_EQ(FindInstalledRecord(program_, L"k'2"), MdbOk);
    EXPECT_EQ(program_.Installed.Model_desc, manual.Model_desc);
    EXPECT_EQ(program_.Installed.INSPath, scratch_.Path());
}

TEST_F(CatalogueOnFiles, CatalogueHeldByAnotherProgramIsNotUpgraded) {
    const FileHandle held(CreateFileW(database_.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_FALSE(CheckDatabaseVersion(program_));
    ExpectCatalogue(2);
}

TEST_F(CatalogueOnFiles, BackupOfAnInterruptedUpgradeIsPutBack) {
    program_.CatalogDb.reset();
    files_.Move(database_, backup_);
    files_.Write(database_ + L".upgrade", "1");
    files_.Write(program_.Paths.InstallDir + L"\\KVX3 NEW.mdb", "half a copy");
    RecoverInterruptedUpgrade(program_);
    program_.CatalogDb = std::make_unique<clsMDB>(program_.Platform);
    ASSERT_TRUE(program_.CatalogDb->Pcls_MdbOpen(database_));
    ExpectCatalogue(2);
}

TEST_F(CatalogueOnFiles, ReadOnlyCatalogueOpensAndIsSeenToBeReadOnly) {
    files_.SetAttributes(database_, attributes::ReadOnly);
    ASSERT_TRUE(program_.CatalogDb->Pcls_MdbOpen(database_));
    ExpectCatalogue(2);
    EXPECT_FALSE(IsFileWritable(program_.Platform, database_));
}

}  // namespace
}  // namespace mip
