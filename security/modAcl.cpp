#include "security/modAcl.h"

#include <algorithm>
#include <optional>

#include "app/Program.h"
#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint8_t AccessDeniedAce = 1;
// GENERIC_READ, GENERIC_WRITE, GENERIC_EXECUTE and DELETE.
constexpr std::uint32_t ModifyRights = 0xE0010000;
constexpr std::uint32_t SetAccess = 2;
constexpr std::uint32_t ContainersAndObjectsInherit = 3;

/// Account name of a SID on the local system; nothing when it has none.
std::optional<std::wstring> LookupSidName(AccountNames& accountNames, const Sid& sid) {
    std::wstring name;
    std::wstring domain;
    std::uint32_t nameSize = 0;
    std::uint32_t domainSize = 0;
    bool found = accountNames.LookupSid(sid, name, nameSize, domain, domainSize);
    if (nameSize != 0) {
        name.assign(nameSize, L' ');
        domain.assign(domainSize, L' ');
        found = accountNames.LookupSid(sid, name, nameSize, domain, domainSize);
    }
    return found ? std::optional(CutAtNul(name)) : std::nullopt;
}

/// Whether an entry counts as the modify grant. One that denies was put there on purpose and is left to stand.
bool GrantsModify(std::uint8_t aceType, std::uint32_t mask) {
    return aceType == AccessDeniedAce || MaskToLetters(mask) == L"RWXD";
}

}  // namespace

bool UsersHaveModifyAccess(Platform& platform, const Identity& identity, const std::wstring& path) {
    const std::wstring users = CutAtNul(identity.FullAccessTrustee);
    try {
        const auto entries = platform.AccessControl.ReadEntries(path);
        return entries && std::ranges::any_of(*entries, [&](const AccessEntry& entry) {
                   return LookupSidName(platform.AccountNames, entry.Account) == users &&
                          GrantsModify(entry.Type, entry.Mask);
               });
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("reading a folder's access list", error);
        ShowApiError(platform, error.Code());
        return false;
    }
}

bool GrantModifyToUsers(Platform& platform, const Identity& identity, const std::wstring& path) {
    const ExplicitAccess modify{CutAtNul(identity.FolderTrustee), ModifyRights, SetAccess, ContainersAndObjectsInherit};
    try {
        MergeIntoAccessList(platform.AccessControl, path, modify);
        return true;
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("opening a manual folder to users", error);
        return false;
    }
}

std::wstring MaskToLetters(std::uint32_t mask) {
    struct Right {
        std::uint32_t Bits;
        wchar_t Letter;
    };
    // File generic read, write and execute, then delete, write DAC and write owner.
    constexpr Right rights[] = {{0x00120089, L'R'}, {0x00120116, L'W'}, {0x001200A0, L'X'},
                                {0x00010000, L'D'}, {0x00040000, L'P'}, {0x00080000, L'O'}};
    constexpr std::uint32_t allRights = 0x001F01FF;
    if ((mask & allRights) == allRights) {
        return L"All";
    }
    std::wstring letters;
    for (const Right& right : rights) {
        if ((mask & right.Bits) == right.Bits) {
            letters += right.Letter;
        }
    }
    return letters;
}

std::wstring AceGrantsModify(std::uint8_t aceType, std::uint32_t mask) {
    return GrantsModify(aceType, mask) ? L"1" : L"0";
}

}  // namespace mip
