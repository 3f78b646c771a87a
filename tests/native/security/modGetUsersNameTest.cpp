#include <gtest/gtest.h>

#include "platform/PlatformError.h"
#include "security/modGetUsersName.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

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

class ThrowingNames : public FakeAccountNames {
  public:
    using FakeAccountNames::FakeAccountNames;
    bool LookupSid(const Sid&, std::wstring&, std::uint32_t&, std::wstring&, std::uint32_t&) override {
        throw PlatformError("LookupSid", L"", errors::AccessDenied);
    }
};

TEST(UsersName, FailuresGiveNoNameAndSayWhatFailed) {
    InMemoryWindows windows;
    auto& accounts = windows.AccountNames.Accounts;
    accounts[FakeAccountNames::UsersSid()].Name = std::wstring(255, L'n');
    const auto fails = [](Platform& platform, const std::wstring& text) {
        const UsersGroup group = ResolveUsersGroup(platform);
        EXPECT_EQ(group.UsersGroupName, L"");
        EXPECT_EQ(group.UsersNameErrorText, text);
    };
    fails(windows.Platform, L"Users name get return Error");
    accounts.clear();
    fails(windows.Platform, L"Users name get return Error");
    windows.Faults.FailCall(1);
    fails(windows.Platform, L"SID get program Error");

    ThrowingNames names(windows.Faults);
    const Platform& whole = windows.Platform;
    Platform throwing{whole.Files,         whole.Folders,     whole.Volumes,  whole.FileVersions, whole.ProfileFiles,
                      whole.Registry,      whole.Processes,   whole.Clock,    whole.Computer,     names,
                      whole.AccessControl, whole.Shell,       whole.Browsers, whole.Archives,     whole.JetEngine,
                      whole.SqliteEngine,  whole.MessageBoxes};
    fails(throwing, L"Users name get program Error");
}

}  // namespace
}  // namespace mip
