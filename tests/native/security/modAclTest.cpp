#include "platform/PlatformError.h"
#include "security/modAcl.h"
#include "security/modGetUsersName.h"
#include "tests/native/security/SecurityTest.h"

namespace mip {
namespace {

constexpr auto Folder = L"C:\\Manuals\\K1";
constexpr std::uint32_t NoneMapped = 1332;

TEST(AccessRights, MasksBecomeLettersAndCountAsGrantOrNot) {
    const struct {
        const char* Label;
        std::uint8_t Type;
        std::uint32_t Mask;
        const wchar_t* Letters;
        const wchar_t* Counts;
    } cases[] = {
        {"nothing", 0, 0, L"", L"0"},
        {"full control", 0, AllMask, L"All", L"0"},
        {"full control and more", 0, AllMask | 0x10000000, L"All", L"0"},
        {"read", 0, 0x00120089, L"R", L"0"},
        {"read but one bit", 0, 0x00120081, L"", L"0"},
        {"write", 0, 0x00120116, L"W", L"0"},
        {"execute", 0, 0x001200A0, L"X", L"0"},
        {"delete alone", 0, 0x00010000, L"D", L"0"},
        {"write DAC alone", 0, 0x00040000, L"P", L"0"},
        {"write owner alone", 0, 0x00080000, L"O", L"0"},
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
    for (const auto& [label, type, mask, letters, counts] : cases) {
        EXPECT_EQ(MaskToLetters(mask), letters) << label;
        EXPECT_EQ(AceGrantsModify(type, mask), counts) << label;
    }
}

TEST_F(SecurityTest, OnlyNtfsVolumesOnDriveLettersCount) {
    windows_.Tree.AddDrive({.Name = L"G:", .FileSystem = L"ntfs"});
    windows_.Tree.AddDrive({.Name = L"H:", .FileSystem = L"NTF"});
    windows_.Tree.AddDrive({.Name = L"I:", .FileSystem = L"NTFS 5"});
    const std::pair<const wchar_t*, bool> cases[] = {
        {L"C:\\Manuals", true}, {L"c:\\", true},   {L"G:\\x", true},       {L"H:\\x", false},
        {L"I:\\x", true},       {L"F:\\x", false}, {L"Q:\\absent", false}, {L"\\\\server\\share\\x", false},
        {L"Manuals", false},    {L"", false}};
    for (const auto& [path, counts] : cases) {
        EXPECT_EQ(IsNtfsVolume(program_.Platform, path), counts) << ::testing::PrintToString(path);
    }
    EXPECT_NE(program_.Log.Text().find(L"asking for the file system: "), std::wstring::npos);
}

TEST_F(SecurityTest, FullAccessReplacesTheUsersEntryOnNtfsOnly) {
    windows_.Tree.PutFile(L"C:\\Kvx\\mam_man.fdf");
    ListOf(L"C:\\Kvx\\mam_man.fdf") = {{{0, AllMask, Administrators}, 0}, {{1, 0x2, Users}, 3}};
    EXPECT_TRUE(GrantFullAccess(program_.Platform, program_.Identity, L"C:\\Kvx\\mam_man.fdf"));
    EXPECT_TRUE(UsersHoldOnly(L"C:\\Kvx\\mam_man.fdf", AllMask, 0));
    EXPECT_EQ(ListOf(L"C:\\Kvx\\mam_man.fdf").size(), 2u);
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
    EXPECT_NE(program_.Log.Text().find(L"granting full access: "), std::wstring::npos);
}

TEST_F(SecurityTest, EmptyTrusteeFailsWithABoxForOneObjectAndSilentlyForAFolder) {
    windows_.AccessControl.SystemMessages[NoneMapped] = L"No mapping was done.";
    windows_.Tree.PutFolder(Folder);
    program_.Identity = {};
    EXPECT_FALSE(GrantModifyToUsers(program_.Platform, program_.Identity, Folder));
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
    EXPECT_NE(program_.Log.Text().find(L"opening a manual folder to users"), std::wstring::npos);
    EXPECT_FALSE(GrantFullAccess(program_.Platform, program_.Identity, Folder));
    EXPECT_EQ(windows_.MessageBoxes.Shown.at(0).Text, L"No mapping was done.");
}

TEST_F(SecurityTest, ErrorTextsOfTheNetworkComeFromTheirLibrary) {
    auto& system = windows_.AccessControl.SystemMessages;
    system = {{5, L"system 5"}, {2099, L"system 2099"}, {2102, L"system 2102"}, {3000, std::wstring(L"cut\0off", 7)}};
    const auto text = [this](std::uint32_t code) { return GetApiErrorText(windows_.Platform, code); };
    EXPECT_EQ(text(2102), L"system 2102") << "no library";
    windows_.AccessControl.LibraryMessages[L""] = std::exchange(system, {});
    auto& library = windows_.AccessControl.LibraryMessages[L"C:\\WINNT\\SYSTEM32\\NETMSG.DLL"];
    library = {{5, L"net 5"}, {2099, L"net 2099"}, {2100, L"net 2100"}, {2102, L"net 2102"}, {2999, L"net 2999"}};
    const std::pair<std::uint32_t, std::wstring> cases[] = {
        {5, L"system 5"},    {2099, L"system 2099"}, {2100, L"net 2100"}, {2102, L"net 2102"},
        {2999, L"net 2999"}, {3000, L"cut"},         {9999, L""}};
    for (const auto& [code, expected] : cases) {
        EXPECT_EQ(text(code), expected) << code;
    }
}

class ModifyAccess : public SecurityTest {
  protected:
    ModifyAccess() { windows_.Tree.PutFolder(Folder); }
};

TEST_F(ModifyAccess, OneQualifyingEntryOfTheUsersGroupIsEnough) {
    const Sid stranger = FakeAccountNames::NtAuthoritySid({21, 1, 2, 3, 1005});
    const FakeAccessEntry others[] = {{{0, ModifyMask, Administrators}, 3}, {{0, ModifyMask, stranger}, 3}};
    const std::pair<FakeAccessControl::List, bool> cases[] = {
        {{}, false},
        {{others[0], others[1]}, false},
        {{others[0], others[1], {{0, 0x00120089, Users}, 3}, {{0, ModifyMask, Users}, 3}}, true},
    };
    for (const auto& [entries, hasAccess] : cases) {
        ListOf(Folder) = entries;
        EXPECT_EQ(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder), hasAccess) << entries.size();
    }
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
}

TEST_F(ModifyAccess, GroupIsKnownByItsLocalNameOnly) {
    windows_.AccountNames.Accounts[Users] = {L"Utilisateurs", L"BUILTIN"};
    ListOf(Folder) = {{{0, ModifyMask, Users}, 3}};
    EXPECT_FALSE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
    program_.Identity.FullAccessTrustee = GetUsersGroupName(windows_.Platform);
    EXPECT_TRUE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
    program_.Identity.FolderTrustee = program_.Identity.FullAccessTrustee;
    EXPECT_TRUE(GrantModifyToUsers(program_.Platform, program_.Identity, Folder));
    program_.Identity = {};  // an account without a name is not the group that was not found
    ListOf(Folder) = {{{0, ModifyMask, FakeAccountNames::NtAuthoritySid({21, 7})}, 3}};
    EXPECT_FALSE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
}

TEST_F(ModifyAccess, FolderThatCannotBeAskedIsReportedAndCountsAsWithout) {
    windows_.AccessControl.FailWith = [](const std::string&, const std::wstring&) { return errors::AccessDenied; };
    EXPECT_FALSE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
    EXPECT_EQ(windows_.MessageBoxes.Shown, OneAccessDeniedBox);
    EXPECT_NE(program_.Log.Text().find(L"reading a folder's access list: "), std::wstring::npos);
}

TEST(UsersName, IsTheWholeBufferOfTheLookUp) {
    InMemoryWindows windows;
    for (const std::wstring& name : {std::wstring(L"Users"), std::wstring(L"Пользователи"), std::wstring(254, L'n')}) {
        windows.AccountNames.Accounts[FakeAccountNames::UsersSid()].Name = name;
        const UsersGroup group = ResolveUsersGroup(windows.Platform);
        std::wstring buffer = name + L'\0';
        buffer.resize(255, L' ');
        EXPECT_EQ(group.UsersGroupName, buffer);
        EXPECT_EQ(group.UsersNameErrorText, L"");
        EXPECT_EQ(GetUsersGroupName(windows.Platform), buffer);
    }
}

TEST_F(SecurityTest, FailedLookUpsOfTheNameGiveNoneAndSayWhatFailed) {
    auto& names = windows_.AccountNames;
    names.Accounts[Users].Name = std::wstring(255, L'n');
    const auto fails = [this](const std::wstring& text) {
        const UsersGroup group = ResolveUsersGroup(program_.Platform);
        EXPECT_EQ(group.UsersGroupName, L"");
        EXPECT_EQ(group.UsersNameErrorText, text);
    };
    fails(L"Users name get return Error");
    names.Accounts.clear();
    fails(L"Users name get return Error");
    windows_.Faults.FailCall(1);
    fails(L"SID get program Error");
    names.Throws = true;
    fails(L"Users name get program Error");
    for (const wchar_t* trapped :
         {L"making the SID of the Users group: ", L"looking up the name of the Users group: "}) {
        EXPECT_NE(program_.Log.Text().find(trapped), std::wstring::npos) << trapped;
    }
}

}  // namespace
}  // namespace mip
