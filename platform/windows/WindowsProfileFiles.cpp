#include "platform/windows/WindowsProfileFiles.h"

#include <vector>

#include <windows.h>

namespace mip {

std::wstring WindowsProfileFiles::ReadString(const std::wstring& section, const std::wstring& key,
                                             const std::wstring& file, std::size_t capacity) {
    std::vector<wchar_t> buffer(capacity);
    const DWORD length = GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer.data(),
                                                  static_cast<DWORD>(capacity), file.c_str());
    return std::wstring(buffer.data(), length);
}

}  // namespace mip
