#include <filesystem>
#include <map>

#include <unistd.h>

#include "platform/sqlite/SqliteEngine.h"
#include "catalogue/ManualFolderAccess.h"
#include "tests/native/security/SecurityTest.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::uint32_t ModifyRights = 0xE0010000;

/// Opens one real database file, whatever path the program knows it by.
class OneDatabase : public DatabaseEngine {
  public:
    explicit OneDatabase(std::wstring file) : file_(std::move(file)) {}

    std::unique_ptr<DatabaseConnection> Open(const std::wstring&) override { return engine_.Open(file_); }
    std::unique_ptr<DatabaseConnection> Create() { return engine_.Create(file_, 1); }

  private:
    std::wstring file_;
    SqliteEngine engine_;
};

class FolderWalk : public SecurityTest {
  protected:
    void SetUp() override {
        std::filesystem::remove(file_);
        catalogue_ = database_.Create();
        program_.Paths.MdbPath = L"C:\\Kvx\\KVX.mdb";
        windows_.Tree.PutFile(program_.Paths.MdbPath, std::string("SQLite format 3\0", 16));
        windows_.SqliteEngine.Engine = &database_;
    }
    void TearDown() override {
        catalogue_.reset();
        std::filesystem::remove(file_);
    }

    void Record(const std::wstring& pubNo, const std::wstring& path) {
        catalogue_->Execute(L"INSERT INTO M_manage (Pub_No,INSPath,INSDate,Adjust_flg) VALUES('" + pubNo + L"','" +
                            path + L"',CDate('2020/01/02 03:04:05'),'1')");
    }
    std::wstring Recorded(const std::wstring& column, const std::wstring& pubNo) {
        const auto rows = catalogue_->Query(L"SELECT " + column + L" FROM M_manage WHERE Pub_No = '" + pubNo + L"'");
        return std::get<std::wstring>(rows->Field(0));
    }

    const std::filesystem::path file_ =
        std::filesystem::temp_directory_path() / ("folder-walk-" + std::to_string(getpid()) + ".db");
    OneDatabase database_{file_.wstring()};
    std::unique_ptr<DatabaseConnection> catalogue_;
};

TEST_F(FolderWalk, GrantsWhereTheUsersGroupHoldsNothingYet) {
    for (const auto& [pubNo, path] : std::map<std::wstring, std::wstring>{{L"K1", L"C:\\Manuals\\K1"},
                                                                          {L"K2", L"C:\\Manuals\\K2"},
                                                                          {L"K3", L"C:\\Manuals\\K3"},
                                                                          {L"K4", L"C:\\Manuals\\K4"},
                                                                          {L"K5", L"F:\\K5"},
                                                                          {L"K6", L"\\\\server\\share\\K6"}}) {
        Record(pubNo, path);
        windows_.Tree.PutFolder(path + L"\\contents");
    }
    Record(L"K7", L"C:\\Manuals\\removed");
    Record(L"K8", L"C:\\Precious");
    windows_.Tree.PutFile(L"C:\\Precious\\data.txt");
    ListOf(L"C:\\Manuals\\K2") = {{{0, ModifyMask, Users}, 0}};
    ListOf(L"C:\\Manuals\\K3") = {{{1, 0x1, Users}, 0}};
    ListOf(L"C:\\Manuals\\K4") = {{{0, AllMask, Users}, 0}, {{0, AllMask, Administrators}, 0}};

    EXPECT_TRUE(SecureInstalledManualFolders(program_));

    EXPECT_TRUE(UsersHoldOnly(L"C:\\Manuals\\K1", ModifyRights, 3));
    EXPECT_TRUE(UsersHoldOnly(L"C:\\Manuals\\K2", ModifyMask, 0)) << "held already";
    EXPECT_EQ(ListOf(L"C:\\Manuals\\K3").at(0).Type, 1) << "denied on purpose";
    EXPECT_TRUE(UsersHoldOnly(L"C:\\Manuals\\K4", ModifyRights, 3)) << "full control is granted again";
    EXPECT_EQ(ListOf(L"C:\\Manuals\\K4").size(), 2u);
    EXPECT_TRUE(ListOf(L"F:\\K5").empty());
    EXPECT_TRUE(ListOf(L"C:\\Precious").empty()) << "no manual's folder";
    EXPECT_TRUE(ListOf(L"\\\\server\\share\\K6").empty());
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
}

TEST_F(FolderWalk, FolderThatRefusesTheGrantDoesNotStopTheWalk) {
    for (const std::wstring pubNo : {L"K1", L"K2"}) {
        Record(pubNo, L"C:\\Manuals\\" + pubNo);
        windows_.Tree.PutFolder(L"C:\\Manuals\\" + pubNo + L"\\contents");
    }
    windows_.AccessControl.FailWith = [](const std::string& operation, const std::wstring& object) {
        return operation == "SetList" && object == L"C:\\Manuals\\K1" ? errors::AccessDenied : 0;
    };
    EXPECT_TRUE(SecureInstalledManualFolders(program_));
    EXPECT_TRUE(UsersHoldOnly(L"C:\\Manuals\\K2", ModifyRights, 3));
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
}

TEST_F(FolderWalk, FollowsAManualIntoItsVariantsFolder) {
    struct Case {
        const char* Label;
        std::wstring PubNo;
        std::wstring Folder;
        std::vector<std::wstring> Pages;
        std::wstring Path;
    };
    const Case cases[] = {
        {"delivered as the variant",
         L"K4710MM",
         L"C:\\A\\K4710MM",
         {L"C:\\A\\K4710MMD\\index.html"},
         L"C:\\A\\K4710MMD"},
        {"the other number", L"K4750MM", L"C:\\B\\K4750MM", {L"C:\\B\\K4750MMA\\index.html"}, L"C:\\B\\K4750MMA"},
    };
    for (const Case& each : cases) {
        Record(each.PubNo, each.Folder);
        for (const std::wstring& page : each.Pages) {
            windows_.Tree.PutFile(page);
            windows_.Tree.PutFolder(each.Path + L"\\contents");
        }
    }
    EXPECT_TRUE(SecureInstalledManualFolders(program_));
    for (const Case& each : cases) {
        EXPECT_EQ(Recorded(L"INSPath", each.PubNo), each.Path) << each.Label;
        EXPECT_EQ(Recorded(L"Adjust_flg", each.PubNo), L"0") << each.Label;
        EXPECT_TRUE(UsersHoldOnly(each.Path, ModifyRights, 3)) << each.Label;
    }
    EXPECT_EQ(program_.Installed.INSPath, L"C:\\B\\K4750MMA") << "the row read last";
    EXPECT_EQ(program_.Installed.Adjust_flg, L"0");
}

TEST_F(FolderWalk, OtherManualsStayWhereTheyAreRecorded) {
    struct Case {
        const char* Label;
        std::wstring PubNo;
        std::vector<std::wstring> Files;
    };
    const Case cases[] = {
        {"its own page is there", L"K4710MM", {L"C:\\A\\K4710MM\\index.html", L"C:\\A\\K4710MMD\\index.html"}},
        {"the variant has no page", L"K4710MM", {L"C:\\A\\K4710MMD\\other.html"}},
        {"the other number's variant", L"K4710MM", {L"C:\\A\\K4710MMA\\index.html", L"C:\\A\\K4750MMA\\index.html"}},
        {"the variant itself", L"K4710MMD", {L"C:\\A\\K4710MM\\index.html"}},
        {"another case", L"k4710mm", {L"C:\\A\\K4710MMD\\index.html"}},
    };
    for (const Case& each : cases) {
        const std::wstring path = L"C:\\A\\" + each.PubNo;
        Record(each.PubNo, path);
        for (const std::wstring& file : each.Files) {
            windows_.Tree.PutFile(file);
        }
        EXPECT_TRUE(SecureInstalledManualFolders(program_)) << each.Label;
        EXPECT_EQ(Recorded(L"INSPath", each.PubNo), path) << each.Label;
        EXPECT_EQ(Recorded(L"Adjust_flg", each.PubNo), L"1") << each.Label;
        catalogue_->Execute(L"DELETE FROM M_manage");
        windows_.Tree.Erase(L"C:\\A");
    }
}

TEST_F(FolderWalk, CatalogueThatDoesNotOpenSecuresNothing) {
    Record(L"K1", L"C:\\Manuals\\K1");
    windows_.Tree.PutFolder(L"C:\\Manuals\\K1");
    windows_.Tree.Erase(program_.Paths.MdbPath);
    EXPECT_FALSE(SecureInstalledManualFolders(program_));
    EXPECT_TRUE(ListOf(L"C:\\Manuals\\K1").empty());
}

}  // namespace
}  // namespace mip
