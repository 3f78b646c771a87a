#include "platform/windows/WindowsArchives.h"

#include <array>
#include <string>

namespace mip {

namespace {

constexpr wchar_t LibraryName[] = L"7-zip32.dll";

std::wstring SystemFolder() {
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return std::wstring(folder.data(), length < folder.size() ? length : 0);
}

/// By its full path, so that no other folder's library of that name is taken.
Library LoadFrom(std::wstring folder) {
    if (folder.empty()) {
        return Library();
    }
    if (folder.back() != L'\\') {
        folder += L'\\';
    }
    return Library(LoadLibraryExW((folder + LibraryName).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

}  // namespace

WindowsArchives::Entry WindowsArchives::FindEntry() {
    if (!library_) {
        library_ = LoadFrom(computer_.ProgramFolder());
    }
    if (!library_) {
        library_ = LoadFrom(SystemFolder());
    }
    if (!library_) {
        return nullptr;
    }
    return reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(library_.Get(), "SevenZip")));
}

std::int32_t WindowsArchives::SevenZip(const std::wstring& commandLine) {
    const Entry entry = FindEntry();
    if (!entry) {
        return embedded_.SevenZip(commandLine);
    }
    char noOutput[] = "";
    return entry(nullptr, computer_.ToSystemCodePage(commandLine).c_str(), noOutput, 0);
}

}  // namespace mip
