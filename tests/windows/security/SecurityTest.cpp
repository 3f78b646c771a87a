#include <gtest/gtest.h>

#include <windows.h>
#include <aclapi.h>

#include "platform/PlatformError.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsAccessControl.h"
#include "platform/windows/WindowsAccountNames.h"
#include "tests/ScratchFolder.h"

namespace mip {
namespace {

constexpr std::uint32_t AllFileRights = 0x001F01FF;
constexpr std::uint32_t ModifyRights = 0xE0010000;

/// An access-control entry that allows, as it stands in memory.
struct BuiltEntry {
    int Flags;
    std::uint32_t Mask;
    Sid Account;
    int Type = ACCESS_ALLOWED_ACE_TYPE;
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
        entries.push_back({ace->Header.AceFlags, ace->Mask, Sid(account, account + size), ace->Header.AceType});
    }
    return entries;
}

/// A list of these entries, built by the system.
std::unique_ptr<AccessList> MakeList(const std::vector<BuiltEntry>& entries) {
    constexpr DWORD size = 1024;
    LocalMemory<void*> memory(LocalAlloc(LPTR, size));
    auto* const acl = static_cast<PACL>(memory.Get());
    InitializeAcl(acl, size, ACL_REVISION);
    for (BuiltEntry entry : entries) {
        AddAccessAllowedAceEx(acl, ACL_REVISION, static_cast<DWORD>(entry.Flags), entry.Mask, entry.Account.data());
    }
    return std::make_unique<WindowsAccessList>(std::move(memory), acl);
}

class SecurityTest : public testing::Test {
  protected:
    WindowsAccessControl control_;
    WindowsAccountNames names_;
    const Sid users_ = names_.MakeSid({SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_USERS});
    const Sid administrators_ = names_.MakeSid({SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS});
    const ScratchFolder folder_;
    const std::wstring file_ = folder_.Write(L"access 試験.txt", "x");
};

TEST_F(SecurityTest, MergedEntryReplacesTheTrusteesOwnAndKeepsOthers) {
    const BuiltEntry others{0, AllFileRights, administrators_};
    const BuiltEntry earlier{0, 0x1, users_};
    const BuiltEntry full{0, AllFileRights, users_};
    const BuiltEntry below{OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE, ModifyRights, users_};
    const std::tuple<const char*, std::vector<BuiltEntry>, ExplicitAccess, BuiltEntry> cases[] = {
        {"one object", {others}, {L"Users", AllFileRights}, full},
        {"a folder with what is below it",
         {others},
         {L"Users", ModifyRights, SET_ACCESS, SUB_CONTAINERS_AND_OBJECTS_INHERIT},
         below},
        {"in place of an earlier grant", {earlier, others}, {L"Users", AllFileRights}, full},
        {"a name with the rest of its buffer", {others}, {std::wstring(L"Users\0   ", 9), AllFileRights}, full}};
    for (const auto& [label, before, entry, expected] : cases) {
        SCOPED_TRACE(label);
        const auto current = MakeList(before);
        const auto entries = EntriesOf(*control_.MergeEntry(*current, entry));
        ASSERT_EQ(entries.size(), 2u);
        EXPECT_TRUE(entries[0] == expected || entries[1] == expected);
        EXPECT_TRUE(entries[0] == others || entries[1] == others);
        EXPECT_EQ(EntriesOf(*current), before);
    }
    const auto empty = MakeList({});
    const auto merge = [&](const wchar_t* trustee) {
        return CodeOf([&] { control_.MergeEntry(*empty, {trustee, AllFileRights}); });
    };
    EXPECT_EQ(merge(L""), static_cast<std::uint32_t>(ERROR_NONE_MAPPED));
    EXPECT_NE(merge(L"No such account"), 0u);
}

TEST_F(SecurityTest, ListOfAFileIsReadMergedAndSet) {
    const auto current = control_.ReadList(file_);
    control_.SetList(file_, *control_.MergeEntry(*current, {L"Users", AllFileRights}));
    const auto entries = control_.ReadEntries(file_);
    ASSERT_TRUE(entries.has_value());
    EXPECT_FALSE(entries->empty());
    const Sid everyone{1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0};
    for (const AccessEntry& entry : *entries) {
        Sid account = entry.Account;
        EXPECT_TRUE(IsValidSid(account.data()));
        EXPECT_EQ(account.size(), GetLengthSid(account.data()));
        EXPECT_FALSE(account == everyone && (entry.Mask & FILE_WRITE_DATA) != 0) << "everybody may write";
    }
    const std::wstring absent = folder_.Below(L"absent");
    EXPECT_EQ(CodeOf([&] { control_.ReadList(absent); }), errors::FileNotFound);
    EXPECT_EQ(CodeOf([&] { control_.ReadEntries(absent); }), errors::FileNotFound);
    EXPECT_EQ(CodeOf([&] { control_.SetList(absent, *current); }), errors::FileNotFound);
}

TEST_F(SecurityTest, MessageTextsComeFromTheSystemAndFromALibraryThatLoads) {
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

TEST_F(SecurityTest, AccountNamesFillTheStartOfTheirBuffers) {
    std::wstring name;
    std::wstring domain;
    std::uint32_t nameSize = 0;
    std::uint32_t domainSize = 0;
    names_.LookupSid(users_, name, nameSize, domain, domainSize);
    name.assign(nameSize, L' ');
    domain.assign(domainSize, L' ');
    ASSERT_TRUE(names_.LookupSid(users_, name, nameSize, domain, domainSize)) << "the sizes that it told";
    EXPECT_STREQ(domain.c_str(), L"BUILTIN");

    name.assign(255, L' ');
    domain.assign(255, L' ');
    ASSERT_TRUE(names_.LookupSid(users_, name, nameSize, domain, domainSize));
    EXPECT_EQ(name, std::wstring(L"Users\0", 6) + std::wstring(249, L' '));
    EXPECT_EQ(nameSize, 5u);
    EXPECT_EQ(domainSize, 7u);
    EXPECT_FALSE(names_.LookupSid(names_.MakeSid({21, 1, 2, 3, 9999}), name, nameSize, domain, domainSize));

    EXPECT_EQ(users_, (Sid{1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 0x21, 2, 0, 0}));
    EXPECT_THROW(names_.MakeSid({1, 2, 3, 4, 5, 6, 7, 8, 9}), PlatformError);
}

}  // namespace
}  // namespace mip
