#pragma once

#include "platform/Archives.h"
#include "platform/Computer.h"
#include "platform/windows/Handle.h"

namespace mip {

/// Extracts by the archive library "7-zip32.dll" where the program's folder or the system's holds one, else by the
/// embedded extractor. What an archive holds is always asked of the embedded one.
class WindowsArchives : public Archives {
  public:
    WindowsArchives(Computer& computer, Archives& embedded) : computer_(computer), embedded_(embedded) {}

    std::int32_t SevenZip(const std::wstring& commandLine) override;
    bool IsWhole(const std::wstring& archive) override { return embedded_.IsWhole(archive); }
    std::uint64_t DeclaredSize(const std::wstring& archive) override { return embedded_.DeclaredSize(archive); }

  private:
    /// The library's command entry.
    using Entry = int(WINAPI*)(HWND owner, LPCSTR commandLine, LPSTR output, DWORD outputSize);

    Entry FindEntry();

    Computer& computer_;
    Archives& embedded_;
    Library library_;
};

}  // namespace mip
