#include "platform/windows/WindowsRegistry.h"

#include <windows.h>

#include "platform/PlatformError.h"
#include "platform/windows/Handle.h"

namespace mip {

namespace {

HKEY Root(Hive hive) {
    return hive == Hive::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

RegistryKey OpenKey(Hive hive, const std::wstring& key, REGSAM access) {
    RegistryKey opened;
    RegOpenKeyExW(Root(hive), key.c_str(), 0, access, opened.Receive());
    return opened;
}

bool IsText(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ;
}

/// A string value's bytes, which may lack the final NUL, as text.
std::wstring TextOf(const std::wstring& buffer, DWORD bytes) {
    const std::wstring stored = buffer.substr(0, bytes / sizeof(wchar_t));
    return stored.substr(0, stored.find(L'\0'));
}

/// Absence is what a removal wants.
void ThrowOnFailure(LSTATUS status, const char* operation, const std::wstring& key) {
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
        throw PlatformError(operation, key, static_cast<std::uint32_t>(status));
    }
}

}  // namespace

std::optional<std::wstring> WindowsRegistry::ReadString(Hive hive, const std::wstring& key, const std::wstring& name) {
    const RegistryKey opened = OpenKey(hive, key, KEY_READ);
    DWORD type = 0;
    DWORD bytes = 0;
    if (!opened || RegQueryValueExW(opened.Get(), name.c_str(), nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS ||
        !IsText(type)) {
        return std::nullopt;
    }
    std::wstring buffer(bytes / sizeof(wchar_t) + 1, L'\0');
    bytes = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
    if (RegQueryValueExW(opened.Get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &bytes) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return TextOf(buffer, bytes);
}

void WindowsRegistry::WriteString(Hive hive, const std::wstring& key, const std::wstring& name,
                                  const std::wstring& value) {
    RegistryKey opened;
    const LSTATUS created =
        RegCreateKeyExW(Root(hive), key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, opened.Receive(), nullptr);
    if (created != ERROR_SUCCESS) {
        throw PlatformError("RegCreateKeyEx", key, static_cast<std::uint32_t>(created));
    }
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    const LSTATUS set =
        RegSetValueExW(opened.Get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes);
    if (set != ERROR_SUCCESS) {
        throw PlatformError("RegSetValueEx", key, static_cast<std::uint32_t>(set));
    }
}

void WindowsRegistry::RemoveValue(Hive hive, const std::wstring& key, const std::wstring& name) {
    RegistryKey opened;
    ThrowOnFailure(RegOpenKeyExW(Root(hive), key.c_str(), 0, KEY_SET_VALUE, opened.Receive()), "RegOpenKeyEx", key);
    if (opened) {
        ThrowOnFailure(RegDeleteValueW(opened.Get(), name.c_str()), "RegDeleteValue", key);
    }
}

void WindowsRegistry::RemoveKey(Hive hive, const std::wstring& key) {
    ThrowOnFailure(RegDeleteKeyW(Root(hive), key.c_str()), "RegDeleteKey", key);
}

std::vector<std::pair<std::wstring, std::wstring>> WindowsRegistry::ListValues(Hive hive, const std::wstring& key) {
    std::vector<std::pair<std::wstring, std::wstring>> values;
    const RegistryKey opened = OpenKey(hive, key, KEY_READ);
    DWORD longestName = 0;
    DWORD longestValue = 0;
    if (!opened || RegQueryInfoKeyW(opened.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    &longestName, &longestValue, nullptr, nullptr) != ERROR_SUCCESS) {
        return values;
    }
    std::wstring name(longestName + 1, L'\0');
    std::wstring value(longestValue / sizeof(wchar_t) + 1, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = longestName + 1;
        DWORD type = 0;
        auto bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        if (RegEnumValueW(opened.Get(), index, name.data(), &nameLength, nullptr, &type,
                          reinterpret_cast<BYTE*>(value.data()), &bytes) != ERROR_SUCCESS) {
            return values;
        }
        if (IsText(type)) {
            values.emplace_back(name.substr(0, nameLength), TextOf(value, bytes));
        }
    }
}

}  // namespace mip
