// Extracts arbitrary bytes as an archive, on a computer that is not there. Whatever they are: no crash, no path outside
// the output folder, no file besides those that the directory declares, and a tested archive extracts into a folder
// that is empty at first.

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "platform/Clock.h"
#include "platform/PlatformError.h"
#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/EmbeddedArchives.h"

namespace mip {
namespace {

constexpr std::uint64_t Room = 1 << 20;
constexpr std::wstring_view Folder = L"C:\\out";
constexpr wchar_t Command[] = L"x -aoa -hide fuzz.zip \"C:\\out\\\"";

std::optional<ArchiveFacts> FactsOf(const auto& look) {
    try {
        return look();
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

class NoClock : public Clock {
    DateTime Now() override { return {}; }
    void Sleep(std::chrono::milliseconds) override {}
    void YieldToMessages() override {}
};

class Bytes : public ArchiveBytes {
  public:
    explicit Bytes(std::span<const char> bytes) : bytes_(bytes) {}
    std::uint64_t Size() override { return bytes_.size(); }
    std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) override {
        const auto start = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes_.size()));
        const std::size_t size = std::min(buffer.size(), bytes_.size() - start);
        std::ranges::copy(bytes_.subspan(start, size), buffer.begin());
        return size;
    }

  private:
    std::span<const char> bytes_;
};

/// Every name is UTF-8 or ASCII here; the code pages are the computer's own affair.
class System : public ArchiveSystem {
  public:
    explicit System(std::span<const char> bytes) : bytes_(bytes) {}

    std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring&) override { return std::make_unique<Bytes>(bytes_); }
    void CreateFolder(const std::wstring& folder) override {
        const std::lock_guard lock(mutex_);
        Require(folder == Folder || IsInside(folder));
        if (Create(folder, Kind::Folder) == Kind::File) {
            throw PlatformError("CreateFolder", folder, errors::AlreadyExists);
        }
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        const std::lock_guard lock(mutex_);
        Require(IsInside(path));
        const std::optional<Kind> existing = Create(path, Kind::File);
        if (existing == Kind::Folder) {
            throw PlatformError("CreateNewFile", path, errors::AccessDenied);
        }
        Require(!existing);
        ++files_;
        return std::make_unique<File>(*this);
    }
    std::uint64_t Files() const { return files_; }
    std::uint64_t FreeBytes(const std::wstring&) override { return Room; }
    unsigned NameCodePage() override { return 65001; }
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned) override {
        std::wstring text(bytes.size(), L'\0');
        const std::string source(bytes);
        const std::size_t length = std::mbstowcs(text.data(), source.c_str(), text.size());
        if (length == static_cast<std::size_t>(-1) || source.find('\0') != std::string::npos) {
            return std::nullopt;
        }
        text.resize(length);
        return text;
    }
    std::wstring FoldCase(std::wstring name) override {
        std::ranges::transform(name, name.begin(), [](wchar_t c) { return c >= L'a' && c <= L'z' ? c - 32 : c; });
        return name;
    }

  private:
    class File : public ExtractedFile {
      public:
        explicit File(System& system) : system_(system) {}
        void Write(std::span<const char> bytes) override {
            const std::lock_guard lock(system_.mutex_);
            system_.written_ += bytes.size();
            Require(system_.written_ <= Room);
        }
        void Finish(const std::optional<FileTime>&) override {}

      private:
        System& system_;
    };

    enum class Kind { File, Folder };

    /// What stands there already; nothing when it was created. Throws where the parent is no folder.
    std::optional<Kind> Create(const std::wstring& path, Kind kind) {
        const auto parent = nodes_.find(FoldCase(path.substr(0, path.rfind(L'\\'))));
        if (parent == nodes_.end() || parent->second != Kind::Folder) {
            throw PlatformError("Create", path, errors::PathNotFound);
        }
        const auto [node, isNew] = nodes_.emplace(FoldCase(path), kind);
        return isNew ? std::nullopt : std::optional(node->second);
    }

    static bool IsInside(const std::wstring& path) {
        const std::wstring_view name = std::wstring_view(path).substr(std::min(path.size(), Folder.size() + 1));
        return path.starts_with(Folder) && path[Folder.size()] == L'\\' && !name.empty() &&
               name.find_first_of(L"/:*?\"<>|") == name.npos && name.find(L"..\\") == name.npos &&
               !name.ends_with(L'.') && !name.starts_with(L'\\');
    }

    std::span<const char> bytes_;
    std::mutex mutex_;  // for what follows: the extractor writes on several threads
    std::map<std::wstring, Kind> nodes_{{L"C:", Kind::Folder}};
    std::uint64_t files_ = 0;
    std::uint64_t written_ = 0;
};

}  // namespace
}  // namespace mip

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(reinterpret_cast<const char*>(data), size);
    mip::NoClock clock;
    mip::System system(bytes);
    mip::EmbeddedArchives archives(system, clock);
    const auto inspected = mip::FactsOf([&] { return archives.Inspect(mip::Command); });
    const auto tested = mip::FactsOf([&] { return archives.Test(mip::Command); });
    const bool extracted = archives.SevenZip(mip::Command, mip::NoFaultLog::Instance()) == 0;
    mip::Require(!tested || inspected == tested);
    mip::Require(!tested || extracted || tested->BytesOnDrive > mip::Room);
    mip::Require(!extracted || (tested && system.Files() == tested->Files));
    return 0;
}
