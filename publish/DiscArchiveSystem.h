#pragma once

#include <filesystem>

#include "platform/archive/ArchiveSystem.h"

namespace mip {

class DiscFolder;

/// The embedded extractor's view of a disc, for looking and testing only: what would write throws PlatformError.
class DiscArchiveSystem : public ArchiveSystem {
  public:
    explicit DiscArchiveSystem(const DiscFolder& disc);

    std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring& path) override;
    void CreateFolder(const std::wstring& folder) override;
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override;
    std::uint64_t FreeBytes(const std::wstring&) override { return UINT64_MAX; }
    /// UTF-8: names in a workshop's code page are a finding of their own.
    unsigned NameCodePage() override;
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned codePage) override;
    std::wstring FoldCase(std::wstring name) override;

  private:
    const DiscFolder& disc_;
};

/// An archive by its path on this computer. Throws PlatformError.
std::unique_ptr<ArchiveBytes> OpenArchiveFile(const std::filesystem::path& file);

}  // namespace mip
