#include "catalogue/ManualFolderAccess.h"
#include "tests/native/security/SecurityTest.h"

namespace mip {
namespace {

constexpr std::uint32_t ModifyRights = 0xE0010000;

class FolderWalk : public SecurityTest {
  protected:
    void Record(const std::wstring& pubNo, const std::wstring& path) {
        catalogue_->Execute(L"INSERT INTO M_manage (Pub_No,INSPath,INSDate,Adjust_flg) VALUES('" + pubNo + L"','" +
                            path + L"',CDate('2020/01/02 03:04:05'),'1')");
    }
    /// The path and the mark of a row.
    std::wstring Recorded(const std::wstring& pubNo) {
        const auto rows =
            catalogue_->Query(L"SELECT INSPath || ' ' || Adjust_flg FROM M_manage WHERE Pub_No = '" + pubNo + L"'");
        return std::get<std::wstring>(rows->Field(0));
    }

    std::unique_ptr<DatabaseConnection> catalogue_ = windows_.Embedded.Open(Workshop::MdbPath);
};

TEST_F(FolderWalk, GrantsWhereTheUsersGroupHoldsNothingYet) {
    for (const std::wstring path : {L"C:\\Manuals\\K0", L"C:\\Manuals\\K1", L"C:\\Manuals\\K2", L"C:\\Manuals\\K3",
                                    L"C:\\Manuals\\K4", L"F:\\K5", L"\\\\server\\share\\K6"}) {
        Record(path.substr(path.size() - 2), path);
        windows_.Tree.PutFolder(path + L"\\contents");
    }
    Record(L"K7", L"C:\\Manuals\\removed");
    Record(L"K8", L"C:\\Precious");
    windows_.Tree.PutFile(L"C:\\Precious\\data.txt");
    ListOf(L"C:\\Manuals\\K2") = {{{0, ModifyMask, Users}, 0}};
    ListOf(L"C:\\Manuals\\K3") = {{{1, 0x1, Users}, 0}};
    ListOf(L"C:\\Manuals\\K4") = {{{0, AllMask, Users}, 0}, {{0, AllMask, Administrators}, 0}};

    windows_.AccessControl.FailWith = [](const std::string& operation, const std::wstring& object) {
        return operation == "SetList" && object == L"C:\\Manuals\\K0" ? errors::AccessDenied : 0;
    };
    EXPECT_TRUE(SecureInstalledManualFolders(program_));

    EXPECT_TRUE(ListOf(L"C:\\Manuals\\K0").empty()) << "refuses the grant, which does not stop the walk";
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

TEST_F(FolderWalk, FollowsAManualIntoItsVariantsFolderOnly) {
    const struct {
        const char* Label;
        std::wstring PubNo;
        std::vector<std::wstring> Files;
        std::wstring Recorded;
    } cases[] = {
        {"delivered as the variant", L"K4710MM", {L"K4710MMD\\index.html"}, L"C:\\A\\K4710MMD 0"},
        {"the other number", L"K4750MM", {L"K4750MMA\\index.html"}, L"C:\\A\\K4750MMA 0"},
        {"its own page", L"K4710MM", {L"K4710MM\\index.html", L"K4710MMD\\index.html"}, L"C:\\A\\K4710MM 1"},
        {"no page", L"K4710MM", {L"K4710MMD\\other.html"}, L"C:\\A\\K4710MM 1"},
        {"other variant", L"K4710MM", {L"K4710MMA\\index.html", L"K4750MMA\\index.html"}, L"C:\\A\\K4710MM 1"},
        {"the variant itself", L"K4710MMD", {L"K4710MM\\index.html"}, L"C:\\A\\K4710MMD 1"},
        {"another case", L"k4710mm", {L"K4710MMD\\index.html"}, L"C:\\A\\k4710mm 1"},
    };
    for (const auto& [label, pubNo, files, recorded] : cases) {
        Record(pubNo, L"C:\\A\\" + pubNo);
        for (const std::wstring& file : files) {
            windows_.Tree.PutFile(L"C:\\A\\" + file);
        }
        const std::wstring folder = recorded.substr(0, recorded.size() - 2);
        const bool moved = recorded.back() == L'0';
        if (moved) {
            windows_.Tree.PutFolder(folder + L"\\contents");
        }
        EXPECT_TRUE(SecureInstalledManualFolders(program_)) << label;
        EXPECT_EQ(Recorded(pubNo), recorded) << label;
        EXPECT_EQ(program_.Installed.INSPath + L" " + program_.Installed.Adjust_flg, recorded) << label;
        EXPECT_TRUE(!moved || UsersHoldOnly(folder, ModifyRights, 3)) << label;
        catalogue_->Execute(L"DELETE FROM M_manage");
        windows_.Tree.Erase(L"C:\\A");
    }
}

TEST_F(FolderWalk, CatalogueThatDoesNotOpenSecuresNothing) {
    Record(L"K1", L"C:\\Manuals\\K1");
    windows_.Tree.PutFolder(L"C:\\Manuals\\K1");
    catalogue_.reset();
    windows_.Tree.Erase(Workshop::MdbPath);
    EXPECT_FALSE(SecureInstalledManualFolders(program_));
    EXPECT_TRUE(ListOf(L"C:\\Manuals\\K1").empty());
}

}  // namespace
}  // namespace mip
