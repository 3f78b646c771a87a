#include <iconv.h>

#include "tests/native/archive/ArchiveComputer.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

class CodePageSystem : public FakeArchiveSystem {
  public:
    CodePageSystem(InMemoryWindows& windows, unsigned codePage)
        : FakeArchiveSystem(windows.Tree, windows.Faults), codePage_(codePage) {}

    unsigned NameCodePage() override { return codePage_; }
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned codePage) override {
        if (codePage != codePage_) {
            return FakeArchiveSystem::Decode(bytes, codePage);
        }
        const iconv_t converter = iconv_open("WCHAR_T", ("CP" + std::to_string(codePage)).c_str());
        std::wstring text(bytes.size(), L'\0');
        char* input = const_cast<char*>(bytes.data());
        char* output = reinterpret_cast<char*>(text.data());
        std::size_t inputLeft = bytes.size();
        std::size_t outputLeft = text.size() * sizeof(wchar_t);
        const std::size_t result = iconv(converter, &input, &inputLeft, &output, &outputLeft);
        iconv_close(converter);
        text.resize(text.size() - outputLeft / sizeof(wchar_t));
        return result == static_cast<std::size_t>(-1) ? std::nullopt : std::optional(text);
    }

  private:
    unsigned codePage_;
};

class MemoryArchiveComputer : public ArchiveComputer {
  public:
    explicit MemoryArchiveComputer(unsigned codePage) : system_(windows_, codePage) {}

    mip::Files& Files() override { return windows_.Files; }
    mip::Folders& Folders() override { return windows_.Folders; }
    ArchiveSystem& System() override { return system_; }
    std::wstring At(const std::wstring& name) override { return windows_.Computer.Temporary + L'\\' + name; }

  private:
    InMemoryWindows windows_;
    CodePageSystem system_;
};

}  // namespace

std::unique_ptr<ArchiveComputer> MakeArchiveComputer(unsigned codePage) {
    return std::make_unique<MemoryArchiveComputer>(codePage);
}

}  // namespace mip
