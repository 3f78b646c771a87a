#include <gtest/gtest.h>

#include <windows.h>

#include "platform/PlatformError.h"
#include "platform/windows/WindowsAccountNames.h"

namespace mip {
namespace {

class AccountNamesTest : public testing::Test {
  protected:
    WindowsAccountNames names_;
    const Sid users_ = names_.MakeSid({SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_USERS});
};

TEST_F(AccountNamesTest, UsersGroupFillsTheStartOfTheBuffer) {
    std::wstring name(255, L' ');
    std::wstring domain(255, L' ');
    std::uint32_t nameSize = 0;
    std::uint32_t domainSize = 0;
    ASSERT_TRUE(names_.LookupSid(users_, name, nameSize, domain, domainSize));
    std::wstring expected = L"Users";
    expected += L'\0';
    expected.resize(255, L' ');
    EXPECT_EQ(name, expected);
    EXPECT_EQ(nameSize, 5u);
    EXPECT_EQ(domainSize, 7u) << "BUILTIN";
}

TEST_F(AccountNamesTest, EmptyBuffersLearnTheSizesThatAreEnough) {
    std::wstring name;
    std::wstring domain;
    std::uint32_t nameSize = 0;
    std::uint32_t domainSize = 0;
    names_.LookupSid(users_, name, nameSize, domain, domainSize);
    name.assign(nameSize, L' ');
    domain.assign(domainSize, L' ');
    ASSERT_TRUE(names_.LookupSid(users_, name, nameSize, domain, domainSize));
    EXPECT_STREQ(name.c_str(), L"Users");
    EXPECT_STREQ(domain.c_str(), L"BUILTIN");
}

TEST_F(AccountNamesTest, UnknownAccountHasNoName) {
    std::wstring name(255, L' ');
    std::wstring domain(255, L' ');
    std::uint32_t nameSize = 0;
    std::uint32_t domainSize = 0;
    EXPECT_FALSE(names_.LookupSid(names_.MakeSid({21, 1, 2, 3, 9999}), name, nameSize, domain, domainSize));
}

TEST_F(AccountNamesTest, SidHasTheSystemsBinaryForm) {
    const Sid expected = {1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 0x21, 2, 0, 0};
    EXPECT_EQ(users_, expected);
    EXPECT_THROW(names_.MakeSid({1, 2, 3, 4, 5, 6, 7, 8, 9}), PlatformError);
}

}  // namespace
}  // namespace mip
