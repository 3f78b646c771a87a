#include "security/modAcl.h"
#include "tests/native/security/SecurityTest.h"

namespace mip {
namespace {

constexpr auto Folder = L"C:\\Manuals\\K1";

class ModifyAccess : public SecurityTest {
  protected:
    ModifyAccess() { windows_.Tree.PutFolder(Folder); }
};

TEST_F(ModifyAccess, OneQualifyingEntryOfTheUsersGroupIsEnough) {
    const Sid stranger = FakeAccountNames::NtAuthoritySid({21, 1, 2, 3, 1005});
    struct Case {
        const char* Label;
        FakeAccessControl::List Entries;
        bool HasAccess;
    };
    const Case cases[] = {
        {"no entries", {}, false},
        {"modify", {{{0, ModifyMask, Users}, 3}}, true},
        {"full control", {{{0, AllMask, Users}, 3}}, false},
        {"denied", {{{1, 0x1, Users}, 0}}, true},
        {"of another group", {{{0, ModifyMask, Administrators}, 3}}, false},
        {"of an account without a name", {{{0, ModifyMask, stranger}, 3}}, false},
        {"the last of many",
         {{{0, AllMask, Administrators}, 3},
          {{0, ModifyMask, stranger}, 3},
          {{0, 0x00120089, Users}, 3},
          {{0, ModifyMask, Users}, 3}},
         true},
    };
    for (const Case& each : cases) {
        ListOf(Folder) = each.Entries;
        EXPECT_EQ(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder), each.HasAccess) << each.Label;
    }
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
}

TEST_F(ModifyAccess, GroupIsKnownByItsLocalName) {
    windows_.AccountNames.Accounts[Users] = {L"Utilisateurs", L"BUILTIN"};
    ListOf(Folder) = {{{0, ModifyMask, Users}, 3}};
    EXPECT_FALSE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
    SetTrustee(L"Utilisateurs");
    EXPECT_TRUE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
}

TEST_F(ModifyAccess, UnnamedAccountIsNotTakenForAGroupThatWasNotFound) {
    program_.Identity = {};
    ListOf(Folder) = {{{0, ModifyMask, FakeAccountNames::NtAuthoritySid({21, 7})}, 3}};
    EXPECT_FALSE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
}

TEST_F(ModifyAccess, FolderThatCannotBeAskedIsReportedAndCountsAsWithout) {
    windows_.AccessControl.FailWith = [](const std::string&, const std::wstring&) { return errors::AccessDenied; };
    EXPECT_FALSE(UsersHaveModifyAccess(program_.Platform, program_.Identity, Folder));
    EXPECT_EQ(windows_.MessageBoxes.Shown, OneAccessDeniedBox);
}

}  // namespace
}  // namespace mip
