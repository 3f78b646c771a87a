#include "platform/windows/WindowsAccessControl.h"

#include <windows.h>
#include <aclapi.h>

#include <array>
#include <cstddef>
#include <utility>

#include "platform/windows/LastError.h"

namespace mip {

namespace {

PACL AclOf(const AccessList& list) {
    return dynamic_cast<const WindowsAccessList&>(list).Get();
}

void ThrowIfError(DWORD code, std::string_view operation, const std::wstring& object) {
    if (code != ERROR_SUCCESS) {
        throw PlatformError(operation, object, code);
    }
}

std::vector<std::byte> ReadDescriptor(const std::wstring& path) {
    DWORD size = 0;
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size) &&
        GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        ThrowLastError("GetFileSecurity", path);
    }
    std::vector<std::byte> descriptor(size);
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size)) {
        ThrowLastError("GetFileSecurity", path);
    }
    return descriptor;
}

/// Nothing when the entry's account does not lie whole within the entry, as in entries of other kinds.
std::optional<AccessEntry> ReadEntry(const ACE_HEADER& header) {
    constexpr std::size_t accountStart = offsetof(ACCESS_ALLOWED_ACE, SidStart);
    if (header.AceSize < accountStart + GetSidLengthRequired(0)) {
        return std::nullopt;
    }
    const auto& ace = reinterpret_cast<const ACCESS_ALLOWED_ACE&>(header);
    const auto* account = reinterpret_cast<const std::uint8_t*>(&header) + accountStart;
    const std::size_t accountSize = GetSidLengthRequired(reinterpret_cast<const SID*>(account)->SubAuthorityCount);
    if (header.AceSize < accountStart + accountSize) {
        return std::nullopt;
    }
    return AccessEntry{header.AceType, ace.Mask, Sid(account, account + accountSize)};
}

std::vector<AccessEntry> ReadEntriesOf(PACL list, const std::wstring& path) {
    ACL_SIZE_INFORMATION size{};
    if (!GetAclInformation(list, &size, sizeof size, AclSizeInformation)) {
        ThrowLastError("GetAclInformation", path);
    }
    std::vector<AccessEntry> entries;
    for (DWORD index = 0; index < size.AceCount; ++index) {
        void* ace = nullptr;
        if (!GetAce(list, index, &ace)) {
            continue;
        }
        if (auto entry = ReadEntry(*static_cast<const ACE_HEADER*>(ace))) {
            entries.push_back(std::move(*entry));
        }
    }
    return entries;
}

}  // namespace

std::unique_ptr<AccessList> WindowsAccessControl::ReadList(const std::wstring& path) {
    PACL list = nullptr;
    LocalMemory<void*> descriptor;
    const DWORD result = GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                               nullptr, &list, nullptr, descriptor.Receive());
    ThrowIfError(result, "GetNamedSecurityInfo", path);
    return std::make_unique<WindowsAccessList>(std::move(descriptor), list);
}

std::unique_ptr<AccessList> WindowsAccessControl::MergeEntry(const AccessList& current, const ExplicitAccess& entry) {
    std::wstring trustee = entry.Trustee;
    // The system takes an empty name for the domain of the built-in accounts, which is nobody's group.
    ThrowIfError(trustee[0] == L'\0' ? ERROR_NONE_MAPPED : ERROR_SUCCESS, "SetEntriesInAcl", trustee);
    EXPLICIT_ACCESSW access{};
    BuildExplicitAccessWithNameW(&access, trustee.data(), entry.Permissions, static_cast<ACCESS_MODE>(entry.AccessMode),
                                 entry.Inheritance);
    PACL merged = nullptr;
    const DWORD result = SetEntriesInAclW(1, &access, AclOf(current), &merged);
    ThrowIfError(result, "SetEntriesInAcl", entry.Trustee);
    return std::make_unique<WindowsAccessList>(LocalMemory<void*>(merged), merged);
}

void WindowsAccessControl::SetList(const std::wstring& path, const AccessList& list) {
    std::wstring object = path;
    const DWORD result = SetNamedSecurityInfoW(object.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                               nullptr, AclOf(list), nullptr);
    ThrowIfError(result, "SetNamedSecurityInfo", path);
}

std::optional<std::vector<AccessEntry>> WindowsAccessControl::ReadEntries(const std::wstring& path) {
    std::vector<std::byte> descriptor = ReadDescriptor(path);
    BOOL isPresent = FALSE;
    BOOL isDefaulted = FALSE;
    PACL list = nullptr;
    if (!GetSecurityDescriptorDacl(descriptor.data(), &isPresent, &list, &isDefaulted)) {
        ThrowLastError("GetSecurityDescriptorDacl", path);
    }
    if (!isPresent || !list) {
        return std::nullopt;
    }
    return ReadEntriesOf(list, path);
}

std::wstring WindowsAccessControl::MessageText(std::uint32_t code, const std::wstring& messageLibrary) {
    const DWORD wanted = code != 0 ? code : GetLastError();
    DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    LibraryHandle library;
    if (!messageLibrary.empty()) {
        library.Reset(LoadLibraryExW(messageLibrary.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        if (library) {
            flags |= FORMAT_MESSAGE_FROM_HMODULE;
        }
    }
    std::array<wchar_t, 256> text{};
    const DWORD length = FormatMessageW(flags, library.Get(), wanted, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                        text.data(), static_cast<DWORD>(text.size()), nullptr);
    return length == 0 ? L"" : text.data();
}

}  // namespace mip
