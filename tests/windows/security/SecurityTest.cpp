#include <gtest/gtest.h>

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include "platform/PlatformError.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsAccessControl.h"
#include "platform/windows/WindowsAccountNames.h"
#include "tests/ScratchFolder.h"

namespace mip {
namespace {

constexpr std::uint32_t AllFileRights = 0x001F01FF;
constexpr std::uint32_t ModifyRights = 0xE0010000;

/// A list in the system's own notation: "D:(kind;inheritance;rights;;;account)...".
std::unique_ptr<AccessList> ListOf(const std::wstring& text) {
    LocalMemory<void*> descriptor;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1, descriptor.Receive(), nullptr);
    BOOL flag = FALSE;
    PACL list = nullptr;
    EXPECT_TRUE(GetSecurityDescriptorDacl(descriptor.Get(), &flag, &list, &flag));
    return std::make_unique<WindowsAccessList>(std::move(descriptor), list);
}

std::wstring TextOf(const AccessList& list) {
    SECURITY_DESCRIPTOR descriptor{};
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor, TRUE, dynamic_cast<const WindowsAccessList&>(list).Get(), FALSE);
    LocalMemory<wchar_t*> text;
    ConvertSecurityDescriptorToStringSecurityDescriptorW(&descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                         text.Receive(), nullptr);
    return text.Get();
}

class SecurityTest : public testing::Test {
  protected:
    WindowsAccessControl control_;
    WindowsAccountNames names_;
    const Sid users_ = names_.MakeSid({SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_USERS});
    const ScratchFolder folder_;
    const std::wstring file_ = folder_.Write(L"access 試験.txt", "x");
};

TEST_F(SecurityTest, MergedEntryReplacesTheTrusteesOwnAndKeepsOthers) {
    const std::wstring others = L"(A;;FA;;;BA)";
    const std::wstring full = L"(A;;FA;;;BU)";
    const std::tuple<const char*, std::wstring, ExplicitAccess, std::wstring> cases[] = {
        {"one object", L"", {L"Users", AllFileRights}, full},
        {"a folder with what is below it",
         L"",
         {L"Users", ModifyRights, SET_ACCESS, SUB_CONTAINERS_AND_OBJECTS_INHERIT},
         L"(A;OICI;SDGXGWGR;;;BU)"},
        {"in place of an earlier grant", L"(A;;CC;;;BU)", {L"Users", AllFileRights}, full},
        {"a name with the rest of its buffer", L"", {std::wstring(L"Users\0   ", 9), AllFileRights}, full}};
    for (const auto& [label, earlier, entry, expected] : cases) {
        SCOPED_TRACE(label);
        const auto current = ListOf(L"D:" + earlier + others);
        const std::wstring merged = TextOf(*control_.MergeEntry(*current, entry));
        EXPECT_TRUE(merged == L"D:" + expected + others || merged == L"D:" + others + expected)
            << testing::PrintToString(merged);
        EXPECT_EQ(TextOf(*current), L"D:" + earlier + others);
    }
    const auto empty = ListOf(L"D:");
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
