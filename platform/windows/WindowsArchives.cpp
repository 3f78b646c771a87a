#include "platform/windows/WindowsArchives.h"

#include <array>
#include <exception>
#include <string>

#include "platform/PlatformError.h"
#include "platform/archive/SevenZipCommand.h"

namespace mip {

namespace {

constexpr wchar_t LibraryName[] = L"7-zip32.dll";

std::wstring SystemFolder() {
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return std::wstring(folder.data(), length < folder.size() ? length : 0);
}

/// By its full path, so that no other folder's library of that name is taken.
LibraryHandle LoadFrom(std::wstring folder) {
    if (folder.empty()) {
        return LibraryHandle();
    }
    if (folder.back() != L'\\') {
        folder += L'\\';
    }
    return LibraryHandle(LoadLibraryExW((folder + LibraryName).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
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

WindowsArchives::Entry WindowsArchives::EntryFor(const std::wstring& commandLine) {
    return LibraryReads(commandLine) ? FindEntry() : nullptr;
}

std::int32_t WindowsArchives::Call(Entry entry, const std::wstring& commandLine) {
    char noOutput[] = "";
    return entry(nullptr, computer_.ToSystemCodePage(commandLine).c_str(), noOutput, 0);
}

/// True when the library takes the command line as it is meant.
bool WindowsArchives::LibraryReads(const std::wstring& commandLine) {
    const auto command = ParseSevenZipCommand(commandLine);
    return command && command->Archive.find_first_of(L" \t") == std::wstring::npos &&
           computer_.FromSystemCodePage(computer_.ToSystemCodePage(commandLine)) == commandLine;
}

bool WindowsArchives::IsAccepted(const std::wstring& commandLine) {
    try {
        embedded_.Inspect(commandLine);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::int32_t WindowsArchives::SevenZip(const std::wstring& commandLine, FaultLog& log) {
    const Entry entry = EntryFor(commandLine);
    if (!entry || !IsAccepted(commandLine)) {
        return embedded_.SevenZip(commandLine, log);
    }
    const std::int32_t result = Call(entry, commandLine);
    if (result != 0) {
        log.Trapped("extracting an archive",
                    PlatformError("SevenZip of the library", commandLine, static_cast<std::uint32_t>(result)));
    }
    return result;
}

ArchiveFacts WindowsArchives::Test(const std::wstring& commandLine) {
    const ArchiveFacts facts = embedded_.Test(commandLine);
    if (const Entry entry = EntryFor(commandLine)) {
        const std::wstring archive = ParseSevenZipCommand(commandLine)->Archive;
        const std::int32_t result = Call(entry, L"t -hide " + archive);
        if (result != 0) {
            throw PlatformError("testing an archive by the library", archive, static_cast<std::uint32_t>(result));
        }
    }
    return facts;
}

}  // namespace mip
