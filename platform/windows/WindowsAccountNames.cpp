#include "platform/windows/WindowsAccountNames.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "platform/windows/Handle.h"
#include "platform/windows/LastError.h"

namespace mip {

namespace {

struct SidTraits {
    using Value = PSID;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { FreeSid(value); }
};

}  // namespace

Sid WindowsAccountNames::MakeSid(const std::vector<std::uint32_t>& subAuthorities) {
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    std::array<DWORD, 8> parts{};
    if (subAuthorities.size() > parts.size()) {
        throw PlatformError("AllocateAndInitializeSid", L"", ERROR_INVALID_SID);
    }
    std::ranges::copy(subAuthorities, parts.begin());
    Handle<SidTraits> sid;
    if (!AllocateAndInitializeSid(&authority, static_cast<BYTE>(subAuthorities.size()), parts[0], parts[1], parts[2],
                                  parts[3], parts[4], parts[5], parts[6], parts[7], sid.Receive())) {
        ThrowLastError("AllocateAndInitializeSid", L"");
    }
    const auto* bytes = static_cast<const std::uint8_t*>(sid.Get());
    return Sid(bytes, bytes + GetLengthSid(sid.Get()));
}

bool WindowsAccountNames::LookupSid(const Sid& sid, std::wstring& name, std::uint32_t& nameSize, std::wstring& domain,
                                    std::uint32_t& domainSize) {
    Sid account = sid;
    DWORD nameLength = static_cast<DWORD>(name.size());
    DWORD domainLength = static_cast<DWORD>(domain.size());
    SID_NAME_USE use = SidTypeUnknown;
    const BOOL found =
        LookupAccountSidW(nullptr, account.data(), name.data(), &nameLength, domain.data(), &domainLength, &use);
    nameSize = nameLength;
    domainSize = domainLength;
    return found != FALSE;
}

}  // namespace mip
