#pragma once

#include "platform/Archives.h"
#include "platform/Computer.h"
#include "platform/windows/Handle.h"

namespace mip {

/// Extracts by the archive library "7-zip32.dll" where the program's folder or the system's holds one, else by the
/// embedded extractor. That one looks at every archive first, and what it refuses stays with it; so does what the
/// library would misread, which takes its command line in the system's code page and splits it at blanks.
class WindowsArchives : public Archives {
  public:
    WindowsArchives(Computer& computer, Archives& embedded) : computer_(computer), embedded_(embedded) {}

    std::int32_t SevenZip(const std::wstring& commandLine, FaultLog& log) override;
    ArchiveFacts Inspect(const std::wstring& commandLine) override { return embedded_.Inspect(commandLine); }
    /// The library that would extract makes its own test, too; a PlatformError of that has the library's result as its
    /// code.
    ArchiveFacts Test(const std::wstring& commandLine) override;

  private:
    /// The library's command entry.
    using Entry = int(WINAPI*)(HWND owner, LPCSTR commandLine, LPSTR output, DWORD outputSize);

    Entry FindEntry();
    /// Null where the embedded extractor is to serve.
    Entry EntryFor(const std::wstring& commandLine);
    std::int32_t Call(Entry entry, const std::wstring& commandLine);
    bool LibraryReads(const std::wstring& commandLine);
    bool IsAccepted(const std::wstring& commandLine);

    Computer& computer_;
    Archives& embedded_;
    LibraryHandle library_;
};

}  // namespace mip
