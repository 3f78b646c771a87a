#include <windows.h>

#include <gtest/gtest.h>

#include "app/Program.h"
#include "app/modFile.h"
#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/Files.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/Handle.h"
#include "startup/windows/WindowsPlatform.h"
#include "tests/ScratchFolder.h"
#include "tests/windows/automation/ScriptedObject.h"
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
        program_.Paths.InstallDir = scratch_.Below(L"カタログ");
        program_.Paths.ProgramFolder = scratch_.Below(L"disc");
        program_.Settings.Kvx3MdbName = L"KVX3.mdb";
        program_.Settings.Kvx3NewMdbName = L"KVX3 NEW.mdb";
        program_.Identity.FullAccessTrustee = L"Users";
        database_ = program_.Paths.InstallDir + L"\\KVX3.mdb";
        newSource_ = program_.Paths.ProgramFolder + L"\\KVX3 NEW.mdb";
        folders_.Create(program_.Paths.InstallDir);
        folders_.Create(program_.Paths.ProgramFolder);
        engine_.Create(newSource_, 3);
        files_.SetAttributes(newSource_, attributes::ReadOnly);
        const auto catalogue = engine_.Create(database_, 2);
        catalogue->Execute(
            L"INSERT INTO M_manage ([Pub_No],[InsDate],[InsPath],[Adjust_flg]) "
            L"VALUES ('K1000E',CDate('2021/03/04 05:06:07'),'C:\\カバー','1')");
        catalogue->Execute(L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ('K1000E','1')");
        program_.CatalogDb = std::make_unique<clsMDB>(program_.Platform);
        EXPECT_TRUE(program_.CatalogDb->Pcls_MdbOpen(database_));
    }

    /// The catalogue of a version with its row whole, open, and no other file beside it.
    void ExpectCatalogue(std::int16_t version) {
        EXPECT_EQ(ReadDatabaseVersion(*program_.CatalogDb), version);
        ASSERT_EQ(OpenInstalledList(program_, 0).Current().Status, MdbOk);
        EXPECT_EQ(program_.Installed.INSDate, ParseDateTime(L"2021/03/04 05:06:07"));
        EXPECT_EQ(program_.Installed.INSPath, L"C:\\カバー");
        EXPECT_EQ(program_.Installed.Adjust_flg, L"1");
        EXPECT_EQ(program_.Installed.Pdf_flg, L"1");
        EXPECT_EQ(folders_.List(program_.Paths.InstallDir).Files, std::vector<std::wstring>{L"KVX3.mdb"});
    }

    InstantClock clock_;
    WindowsPlatform computer_{L"CatalogueOnFiles", &clock_};
    Files& files_ = computer_.Platform().Files;
    Folders& folders_ = computer_.Platform().Folders;
    SqliteEngine engine_;
    ScratchFolder scratch_{L"目録 of K's"};
    Program program_{computer_.Platform()};
    std::wstring database_;
    std::wstring newSource_;
};

TEST_F(CatalogueOnFiles, ReadOnlySourceUpgradesTheCatalogueWhichStaysWritable) {
    ASSERT_TRUE(CheckDatabaseVersion(program_));
    ExpectCatalogue(3);
    EXPECT_TRUE(IsFileWritable(program_.Platform, database_));
    DiscCatalogueRecord manual;
    manual.Pub_No = L"K'2";
    manual.Model_desc = L"サービスマニュアル";
    ASSERT_TRUE(RegisterInstalledManual(program_, manual, scratch_.Path().wstring(), InstallState::New));
    ASSERT_EQ(FindInstalledRecord(program_, L"k'2").Status, MdbOk);
    EXPECT_EQ(program_.Installed.Model_desc, manual.Model_desc);
    EXPECT_EQ(program_.Installed.INSPath, scratch_.Path().wstring());
}

TEST_F(CatalogueOnFiles, AJetCatalogueIsOpenedThroughAdo) {
    const ComApartment apartment;
    Script script{{{L"put Connection.ConnectionString", {{}}},
                   {L"call Connection.Open", {{}}},
                   {L"call Connection.Close", {{}}}}};
    const RegisteredClass connections(L"ADODB.Connection", script, L"Connection");
    program_.CatalogDb.reset();
    files_.Write(database_, std::string("\0\1\0\0Standard Jet DB\0", 20));
    program_.CatalogDb = std::make_unique<clsMDB>(program_.Platform);
    ASSERT_TRUE(program_.CatalogDb->Pcls_MdbOpen(database_));
    ASSERT_EQ(script.Calls.size(), 2U);
    EXPECT_TRUE(script.Calls[0].ends_with(L"Data Source=" + database_ + L"\")"));
    program_.CatalogDb.reset();
    EXPECT_EQ(script.Calls.back(), L"call Connection.Close()");
    EXPECT_EQ(script.LiveObjects, 0);
}

TEST_F(CatalogueOnFiles, CatalogueHeldByAnotherProgramIsNotUpgraded) {
    const FileHandle held(CreateFileW(database_.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_FALSE(CheckDatabaseVersion(program_));
    ExpectCatalogue(2);
}

}  // namespace
}  // namespace mip
