#include "publish/DiscArchiveSystem.h"

#include <clocale>
#include <fstream>
#include <utility>

#include "platform/PlatformError.h"
#include "publish/DiscFiles.h"
#include "publish/PathText.h"

namespace mip {
namespace {

constexpr unsigned Utf8CodePage = 65001;
constexpr std::uint32_t WriteProtected = 19;
constexpr std::uint32_t ReadFault = 30;

class ArchiveFile : public ArchiveBytes {
  public:
    explicit ArchiveFile(const std::filesystem::path& file) : path_(TextOf(file)), stream_(file, std::ios::binary) {
        if (!stream_) {
            throw PlatformError("opening an archive", path_, errors::FileNotFound);
        }
        size_ = std::filesystem::file_size(file);
    }

    std::uint64_t Size() override { return size_; }
    std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) override {
        stream_.clear();
        stream_.seekg(static_cast<std::streamoff>(offset));
        stream_.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        if (stream_.bad()) {
            throw PlatformError("reading an archive", path_, ReadFault);
        }
        return static_cast<std::size_t>(stream_.gcount());
    }

  private:
    std::wstring path_;
    std::ifstream stream_;
    std::uint64_t size_ = 0;
};

}  // namespace

DiscArchiveSystem::DiscArchiveSystem(const DiscFolder& disc) : disc_(disc) {
    // By it the reading library makes wide names; Windows has no such locale and needs none.
    std::setlocale(LC_CTYPE, "C.UTF-8");
}

std::unique_ptr<ArchiveBytes> DiscArchiveSystem::OpenArchive(const std::wstring& path) {
    const auto file = disc_.Find(path);
    if (!file) {
        throw PlatformError("opening an archive", path, errors::FileNotFound);
    }
    return OpenArchiveFile(*file);
}

void DiscArchiveSystem::CreateFolder(const std::wstring& folder) {
    throw PlatformError("writing to a disc", folder, WriteProtected);
}

std::unique_ptr<ExtractedFile> DiscArchiveSystem::CreateNewFile(const std::wstring& path) {
    throw PlatformError("writing to a disc", path, WriteProtected);
}

unsigned DiscArchiveSystem::NameCodePage() {
    return Utf8CodePage;
}

std::optional<std::wstring> DiscArchiveSystem::Decode(std::string_view bytes, unsigned) {
    std::wstring text = FromUtf8(bytes);
    return ToUtf8(text) == bytes ? std::optional(std::move(text)) : std::nullopt;
}

std::wstring DiscArchiveSystem::FoldCase(std::wstring name) {
    return ToUpper(name);
}

std::unique_ptr<ArchiveBytes> OpenArchiveFile(const std::filesystem::path& file) {
    return std::make_unique<ArchiveFile>(file);
}

}  // namespace mip
