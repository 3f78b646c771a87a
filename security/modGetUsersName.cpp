#include "security/modGetUsersName.h"

#include "platform/PlatformError.h"
#include "platform/Security.h"

namespace mip {

namespace {

constexpr std::uint32_t BuiltinDomain = 32;
constexpr std::uint32_t UsersAlias = 545;
constexpr std::size_t BufferSize = 255;

void LookupUsersGroupName(Platform& platform, const Sid& sid, UsersGroup& group) {
    std::wstring name(BufferSize, L' ');
    std::wstring domain(BufferSize, L' ');
    std::uint32_t nameSize = BufferSize;
    std::uint32_t domainSize = BufferSize;
    try {
        if (platform.AccountNames.LookupSid(sid, name, nameSize, domain, domainSize)) {
            group.UsersGroupName = name;
        } else {
            group.UsersNameErrorText = L"Users name get return Error";
        }
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("looking up the name of the Users group", error);
        group.UsersNameErrorText = L"Users name get program Error";
    }
}

}  // namespace

UsersGroup ResolveUsersGroup(Platform& platform) {
    UsersGroup group;
    Sid sid;
    try {
        sid = platform.AccountNames.MakeSid({BuiltinDomain, UsersAlias});
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("making the SID of the Users group", error);
        group.UsersNameErrorText = L"SID get program Error";
        return group;
    }
    LookupUsersGroupName(platform, sid, group);
    return group;
}

std::wstring GetUsersGroupName(Platform& platform) {
    return ResolveUsersGroup(platform).UsersGroupName;
}

}  // namespace mip
