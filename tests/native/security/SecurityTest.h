#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/Security.h"
#include "tests/native/fakes/Workshop.h"

namespace mip {

/// Rights that read as "RWXD".
inline constexpr std::uint32_t ModifyMask = 0x001301BF;
inline constexpr std::uint32_t AllMask = 0x001F01FF;

/// With drives of other kinds, and a second group.
class SecurityTest : public testing::Test {
  protected:
    SecurityTest() {
        windows_.Tree.AddDrive({.Name = L"F:", .FileSystem = L"FAT32"});
        windows_.Tree.AddDrive({.Name = L"\\\\server\\share"});
        windows_.AccountNames.Accounts[Administrators] = {L"Administrators", L"BUILTIN"};
        windows_.AccessControl.SystemMessages[errors::AccessDenied] = L"Access is denied.";
    }

    FakeAccessControl::List& ListOf(const std::wstring& path) { return windows_.AccessControl.ListOf(path); }

    /// True when the list has one entry of the Users group, which gives exactly this.
    bool UsersHoldOnly(const std::wstring& path, std::uint32_t mask, std::uint32_t inheritance) {
        FakeAccessControl::List held = ListOf(path);
        std::erase_if(held, [&](const FakeAccessEntry& entry) { return entry.Account != Users; });
        return held.size() == 1 && held[0].Type == 0 && held[0].Mask == mask && held[0].Inheritance == inheritance;
    }

    /// A box without a title of its own bears the program's name.
    const std::vector<ShownBox> OneAccessDeniedBox = {{L"Access is denied.", boxes::Ok, L"Manual Install Program"}};
    const Sid Users = FakeAccountNames::UsersSid();
    const Sid Administrators = FakeAccountNames::NtAuthoritySid({32, 544});
    StartedWorkshop windows_;
    Program& program_ = windows_.Program();
};

}  // namespace mip
