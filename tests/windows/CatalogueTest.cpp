#include <windows.h>

#include <gtest/gtest.h>

#include "app/Program.h"
#include "app/modFile.h"
#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/ScopeGuard.h"
#include "platform/Files.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/Handle.h"
#include "startup/windows/WindowsPlatform.h"
#include "tests/ScratchFolder.h"
#include "tests/windows/automation/AdoStandIn.h"
#include "text/DateText.h"
#include "text/TextTools.h"

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
    ASSERT_TRUE(RegisterInstalledManual(program_, manual, scratch_.Path().wstring(), InstallState::New));
    ASSERT_EQ(FindInstalledRecord(program_, L"k'2").Status, MdbOk);
    EXPECT_EQ(program_.Installed.Model_desc, manual.Model_desc);
    EXPECT_EQ(program_.Installed.INSPath, scratch_.Path().wstring());
}

/// Stands in for Jet: a file of the embedded engine that begins as Jet's do whenever it is closed.
class JetFiles : public DatabaseEngine {
  public:
    explicit JetFiles(SqliteEngine& embedded) : embedded_(embedded) {}

    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override {
        Begin(path, SqliteStart);
        return std::make_unique<Connection>(embedded_.Open(path), path);
    }

    static void Begin(const std::wstring& path, const std::string& start) {
        WindowsFiles files;
        files.Write(path, start + files.Read(path).substr(start.size()));
    }

    inline static const std::string JetStart{"\0\1\0\0Standard Jet DB\0", 20};
    inline static const std::string SqliteStart{"SQLite format 3\0\x10\0\1\1", 20};

  private:
    struct Connection : DatabaseConnection {
        Connection(std::unique_ptr<DatabaseConnection> opened, std::wstring path)
            : Opened(std::move(opened)), Path(std::move(path)) {}
        ~Connection() override {
            Opened.reset();
            Begin(Path, JetStart);
        }
        void Execute(const std::wstring& sql) override { Opened->Execute(sql); }
        std::unique_ptr<Recordset> Query(const std::wstring& sql) override { return Opened->Query(sql); }
        void BeginTransaction() override { Opened->BeginTransaction(); }
        void CommitTransaction() override { Opened->CommitTransaction(); }
        void RollbackTransaction() override { Opened->RollbackTransaction(); }

        std::unique_ptr<DatabaseConnection> Opened;
        std::wstring Path;
    };

    SqliteEngine& embedded_;
};

TEST_F(CatalogueOnFiles, JetCatalogueIsUpgradedThroughAdoAndReleased) {
    const ComApartment apartment;
    Script script;
    JetFiles jet(engine_);
    AdoStandIn ado(script, jet);
    const RegisteredClass connections(L"ADODB.Connection", [&] { return ado.MakeConnection(); });
    const ScopeGuard close([&] { program_.CatalogDb.reset(); });
    files_.SetAttributes(newSource_, attributes::Normal);
    program_.CatalogDb = std::make_unique<clsMDB>(program_.Platform);
    JetFiles::Begin(newSource_, JetFiles::JetStart);
    JetFiles::Begin(database_, JetFiles::JetStart);
    ASSERT_TRUE(program_.CatalogDb->Pcls_MdbOpen(database_));
    ASSERT_EQ(program_.CatalogDb->Pcls_MdbExecute(L"INSERT INTO M_manage (Pub_No) VALUES ('K9')"), MdbOk);
    ASSERT_TRUE(CheckDatabaseVersion(program_)) << ToUtf8(program_.Log.Text());
    ExpectCatalogue(3);
    ASSERT_EQ(FindInstalledRecord(program_, L"K9").Status, MdbOk);
    EXPECT_EQ(program_.Installed.INSDate, ZeroDate);
    EXPECT_TRUE(MarkForAdjustment(*program_.CatalogDb, L"K9"));
    program_.CatalogDb.reset();
    EXPECT_EQ(script.LiveObjects, 0);
    EXPECT_TRUE(files_.Read(database_).starts_with(JetFiles::JetStart));
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
