#include <gtest/gtest.h>

#include <windows.h>
#include <aclapi.h>

#include <filesystem>
#include <fstream>

#include "platform/PlatformError.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsAccessControl.h"
#include "platform/windows/WindowsAccountNames.h"

namespace mip {
namespace {

constexpr std::uint32_t AllFileRights = 0x001F01FF;
constexpr std::uint32_t ModifyRights = 0xE0010000;

/// An access-control entry as it stands in memory.
struct BuiltEntry {
    int Type;
    int Flags;
    std::uint32_t Mask;
    Sid Account;
    bool operator==(const BuiltEntry&) const = default;
};

std::vector<BuiltEntry> EntriesOf(const AccessList& list) {
    const PACL acl = dynamic_cast<const WindowsAccessList&>(list).Get();
    std::vector<BuiltEntry> entries;
    for (DWORD index = 0; index < acl->AceCount; ++index) {
        void* found = nullptr;
        GetAce(acl, index, &found);
        const auto* ace = static_cast<const ACCESS_ALLOWED_ACE*>(found);
        const auto* account = reinterpret_cast<const std::uint8_t*>(&ace->SidStart);
        const DWORD size = GetLengthSid(const_cast<std::uint8_t*>(account));
        entries.push_back({ace->Header.AceType, ace->Header.AceFlags, ace->Mask, Sid(account, account + size)});
    }
    return entries;
}

/// A list of these entries, built by the system.
std::unique_ptr<AccessList> MakeList(const std::vector<BuiltEntry>& entries) {
    constexpr DWORD size = 1024;
    LocalMemory<void*> memory(LocalAlloc(LPTR, size));
    auto* const acl = static_cast<PACL>(memory.Get());
    InitializeAcl(acl, size, ACL_REVISION);
    for (const BuiltEntry& entry : entries) {
        Sid account = entry.Account;
        const auto flags = static_cast<DWORD>(entry.Flags);
        if (entry.Type == ACCESS_DENIED_ACE_TYPE) {
            AddAccessDeniedAceEx(acl, ACL_REVISION, flags, entry.Mask, account.data());
        } else {
            AddAccessAllowedAceEx(acl, ACL_REVISION, flags, entry.Mask, account.data());
        }
    }
    return std::make_unique<WindowsAccessList>(std::move(memory), acl);
}

class AccessControlTest : public testing::Test {
  protected:
    void SetUp() override {
        path_ = std::filesystem::temp_directory_path() / L"access 試験.txt";
        std::ofstream(path_) << "x";
    }
    void TearDown() override { std::filesystem::remove(path_); }

    WindowsAccessControl control_;
    WindowsAccountNames names_;
    const Sid users_ = names_.MakeSid({SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_USERS});
    const Sid administrators_ = names_.MakeSid({SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS});
    std::filesystem::path path_;
};

TEST_F(AccessControlTest, MergedEntryReplacesTheTrusteesOwnAndKeepsOthers) {
    const BuiltEntry others{ACCESS_ALLOWED_ACE_TYPE, 0, AllFileRights, administrators_};
    const BuiltEntry earlier{ACCESS_ALLOWED_ACE_TYPE, 0, 0x1, users_};
    struct Case {
        const char* Label;
        std::vector<BuiltEntry> Current;
        ExplicitAccess Entry;
        BuiltEntry Expected;
    };
    const Case cases[] = {
        {"one object", {others}, {L"Users", AllFileRights}, {ACCESS_ALLOWED_ACE_TYPE, 0, AllFileRights, users_}},
        {"a folder with what is below it",
         {others},
         {L"Users", ModifyRights, SET_ACCESS, SUB_CONTAINERS_AND_OBJECTS_INHERIT},
         {ACCESS_ALLOWED_ACE_TYPE, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE, ModifyRights, users_}},
        {"in place of an earlier grant",
         {earlier, others},
         {L"Users", AllFileRights},
         {ACCESS_ALLOWED_ACE_TYPE, 0, AllFileRights, users_}},
        {"a name with the rest of its buffer",
         {others},
         {std::wstring(L"Users\0   ", 9), AllFileRights},
         {ACCESS_ALLOWED_ACE_TYPE, 0, AllFileRights, users_}},
    };
    for (const Case& each : cases) {
        const auto current = MakeList(each.Current);
        const auto merged = control_.MergeEntry(*current, each.Entry);
        const auto entries = EntriesOf(*merged);
        ASSERT_EQ(entries.size(), 2u) << each.Label;
        EXPECT_TRUE(entries[0] == each.Expected || entries[1] == each.Expected) << each.Label;
        EXPECT_TRUE(entries[0] == others || entries[1] == others) << each.Label;
        EXPECT_EQ(EntriesOf(*current), each.Current) << each.Label;
    }
}

TEST_F(AccessControlTest, TrusteeThatIsNobodyIsRefused) {
    const auto current = MakeList({});
    EXPECT_EQ(CodeOf([&] {
                  control_.MergeEntry(*current, {L"", AllFileRights});
              }),
              static_cast<std::uint32_t>(ERROR_NONE_MAPPED));
    EXPECT_NE(CodeOf([&] { control_.MergeEntry(*current, {L"No such account", AllFileRights}); }), 0u);
}

TEST_F(AccessControlTest, ListOfAFileIsReadMergedAndSet) {
    const auto current = control_.ReadList(path_.wstring());
    control_.SetList(path_.wstring(), *control_.MergeEntry(*current, {L"Users", AllFileRights}));
    const auto entries = control_.ReadEntries(path_.wstring());
    ASSERT_TRUE(entries.has_value());
    EXPECT_FALSE(entries->empty());
    const Sid everyone{1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0};
    for (const AccessEntry& entry : *entries) {
        Sid account = entry.Account;
        EXPECT_TRUE(IsValidSid(account.data()));
        EXPECT_EQ(account.size(), GetLengthSid(account.data()));
        EXPECT_FALSE(account == everyone && (entry.Mask & FILE_WRITE_DATA) != 0) << "everybody may write";
    }
}

TEST_F(AccessControlTest, MissingObjectGivesTheSystemsCode) {
    const std::wstring absent = path_.wstring() + L".absent";
    const auto list = MakeList({});
    EXPECT_EQ(CodeOf([&] { control_.ReadList(absent); }), errors::FileNotFound);
    EXPECT_EQ(CodeOf([&] { control_.ReadEntries(absent); }), errors::FileNotFound);
    EXPECT_EQ(CodeOf([&] { control_.SetList(absent, *list); }), errors::FileNotFound);
}

TEST_F(AccessControlTest, MessageTextsComeFromTheSystemAndFromALibraryThatLoads) {
    const std::wstring denied = control_.MessageText(errors::AccessDenied, L"");
    EXPECT_FALSE(denied.empty());
    EXPECT_EQ(denied.find(L'\0'), std::wstring::npos);
    EXPECT_NE(control_.MessageText(errors::FileNotFound, L""), denied);
    EXPECT_EQ(control_.MessageText(errors::AccessDenied, L"C:\\WINNT\\SYSTEM32\\NETMSG.DLL"), denied);
    EXPECT_EQ(control_.MessageText(0xE1234567, L""), L"");

    wchar_t self[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    EXPECT_EQ(control_.MessageText(2102, self), L"net 2102\r\n");
    EXPECT_EQ(control_.MessageText(errors::AccessDenied, self), denied) << "not in the library";

    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(control_.MessageText(0, L""), denied) << "0 stands for the last error";
}

}  // namespace
}  // namespace mip
