#include "security/modAcl.h"
#include "tests/native/security/SecurityTest.h"

namespace mip {
namespace {

constexpr std::uint32_t NoneMapped = 1332;

TEST(AccessRights, MasksBecomeLettersAndCountAsGrantOrNot) {
    struct Case {
        const char* Label;
        std::uint8_t Type;
        std::uint32_t Mask;
        const wchar_t* Letters;
        const wchar_t* Counts;
    };
    const Case cases[] = {
        {"nothing", 0, 0, L"", L"0"},
        {"full control", 0, AllMask, L"All", L"0"},
        {"full control and more", 0, AllMask | 0x10000000, L"All", L"0"},
        {"read", 0, 0x00120089, L"R", L"0"},
        {"read but one bit", 0, 0x00120081, L"", L"0"},
        {"write", 0, 0x00120116, L"W", L"0"},
        {"execute", 0, 0x001200A0, L"X", L"0"},
        {"delete alone", 0, 0x00010000, L"D", L"0"},
        {"read and execute", 0, 0x001200A9, L"RX", L"0"},
        {"modify", 0, ModifyMask, L"RWXD", L"1"},
        {"modify without delete", 0, ModifyMask & ~0x00010000U, L"RWX", L"0"},
        {"modify and write DAC", 0, ModifyMask | 0x00040000, L"RWXDP", L"0"},
        {"modify and write owner", 0, ModifyMask | 0x00080000, L"RWXDO", L"0"},
        {"generic rights", 0, 0xE0000000, L"", L"0"},
        {"denied modify", 1, ModifyMask, L"RWXD", L"1"},
        {"denied something", 1, 0x1, L"", L"1"},
        {"audited modify", 2, ModifyMask, L"RWXD", L"1"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(MaskToLetters(each.Mask), each.Letters) << each.Label;
        EXPECT_EQ(AceGrantsModify(each.Type, each.Mask), each.Counts) << each.Label;
    }
}

TEST_F(SecurityTest, OnlyNtfsVolumesOnDriveLettersCount) {
    windows_.Tree.AddDrive({.Name = L"G:", .FileSystem = L"ntfs"});
    windows_.Tree.AddDrive({.Name = L"H:", .FileSystem = L"NTF"});
    const struct {
        const wchar_t* Path;
        bool Counts;
    } cases[] = {{L"C:\\Manuals", true},
                 {L"c:\\", true},
                 {L"G:\\x", true},
                 {L"H:\\x", false},
                 {L"F:\\x", false},
                 {L"Q:\\absent", false},
                 {L"\\\\server\\share\\x", false},
                 {L"Manuals", false},
                 {L"", false}};
    for (const auto& each : cases) {
        EXPECT_EQ(IsNtfsVolume(windows_.Platform, each.Path), each.Counts) << ::testing::PrintToString(each.Path);
    }
}

TEST_F(SecurityTest, FullAccessReplacesTheUsersEntryAndKeepsOthers) {
    windows_.Tree.PutFile(L"C:\\Kvx\\mam_man.fdf");
    ListOf(L"C:\\Kvx\\mam_man.fdf") = {{{0, AllMask, Administrators}, 0}, {{1, 0x2, Users}, 3}};
    EXPECT_TRUE(GrantFullAccess(program_.Platform, program_.Identity, L"C:\\Kvx\\mam_man.fdf"));
    EXPECT_TRUE(UsersHoldOnly(L"C:\\Kvx\\mam_man.fdf", AllMask, 0));
    EXPECT_EQ(ListOf(L"C:\\Kvx\\mam_man.fdf").size(), 2u);
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
}

TEST_F(SecurityTest, FullAccessElsewhereThanOnNtfsChangesNothing) {
    for (const std::wstring path : {L"F:\\manual.pdf", L"\\\\server\\share\\manual.pdf"}) {
        windows_.Tree.PutFile(path);
        EXPECT_TRUE(GrantFullAccess(program_.Platform, program_.Identity, path));
        EXPECT_TRUE(ListOf(path).empty());
    }
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
}

TEST_F(SecurityTest, FailedFullAccessShowsOnlyTheSystemsText) {
    windows_.Tree.PutFile(L"C:\\Kvx\\mam_man.fdf");
    for (const std::string failing : {"ReadList", "MergeEntry", "SetList"}) {
        windows_.MessageBoxes.Shown.clear();
        windows_.AccessControl.FailWith = [&](const std::string& operation, const std::wstring&) {
            return operation == failing ? errors::AccessDenied : 0;
        };
        EXPECT_FALSE(GrantFullAccess(program_.Platform, program_.Identity, L"C:\\Kvx\\mam_man.fdf")) << failing;
        EXPECT_EQ(windows_.MessageBoxes.Shown, OneAccessDeniedBox) << failing;
        EXPECT_TRUE(ListOf(L"C:\\Kvx\\mam_man.fdf").empty()) << failing;
    }
}

TEST_F(SecurityTest, EmptyTrusteeFailsWithABoxForOneObjectAndSilentlyForAFolder) {
    windows_.AccessControl.SystemMessages[NoneMapped] = L"No mapping was done.";
    windows_.Tree.PutFolder(L"C:\\Manuals\\K1");
    program_.Identity = {};
    EXPECT_FALSE(GrantModifyToUsers(program_.Platform, program_.Identity, L"C:\\Manuals\\K1"));
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
    EXPECT_FALSE(GrantFullAccess(program_.Platform, program_.Identity, L"C:\\Manuals\\K1"));
    EXPECT_EQ(windows_.MessageBoxes.Shown.at(0).Text, L"No mapping was done.");
}

TEST_F(SecurityTest, ErrorTextsOfTheNetworkComeFromTheirLibrary) {
    auto& system = windows_.AccessControl.SystemMessages;
    system = {{5, L"system 5"}, {2099, L"system 2099"}, {2102, L"system 2102"}, {3000, std::wstring(L"cut\0off", 7)}};
    const auto text = [this](std::uint32_t code) { return GetApiErrorText(windows_.Platform, code); };
    EXPECT_EQ(text(2102), L"system 2102") << "no library";

    auto& library = windows_.AccessControl.LibraryMessages[L"C:\\WINNT\\SYSTEM32\\NETMSG.DLL"];
    library = {{5, L"net 5"}, {2099, L"net 2099"}, {2100, L"net 2100"}, {2102, L"net 2102"}, {2999, L"net 2999"}};
    const std::pair<std::uint32_t, std::wstring> cases[] = {
        {5, L"system 5"},    {2099, L"system 2099"}, {2100, L"net 2100"}, {2102, L"net 2102"},
        {2999, L"net 2999"}, {3000, L"cut"},         {9999, L""}};
    for (const auto& [code, expected] : cases) {
        EXPECT_EQ(text(code), expected) << code;
    }
}

}  // namespace
}  // namespace mip
