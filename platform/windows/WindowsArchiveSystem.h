#pragma once

#include "platform/archive/ArchiveSystem.h"

namespace mip {

/// The embedded extractor's files over Win32.
class WindowsArchiveSystem : public ArchiveSystem {
  public:
    /// 0 takes the computer's OEM code page.
    explicit WindowsArchiveSystem(unsigned nameCodePage = 0);

    std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring& path) override;
    void CreateFolder(const std::wstring& folder) override;
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override;
    std::uint64_t FreeBytes(const std::wstring& folder) override;
    unsigned NameCodePage() override { return nameCodePage_; }
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned codePage) override;
    std::wstring FoldCase(std::wstring name) override;

  private:
    unsigned nameCodePage_;
};

}  // namespace mip
