#include "tests/contract/ArchivesContract.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

class FakeArchivesHost : public ArchivesHost {
  public:
    mip::Archives& Archives() override { return windows_.Archives; }
    std::wstring At(const std::wstring& name) override { return windows_.Computer.Temporary + L"\\" + name; }

    void Put(const std::wstring& path, const std::vector<ArchiveEntry>& entries) override {
        FakeArchives::Entries content;
        bool isDamaged = false;
        for (const auto& [name, bytes, damaged] : entries) {
            content[name] = bytes;
            isDamaged = isDamaged || damaged;
        }
        windows_.Archives.Put(path, content);
        if (isDamaged) {
            windows_.Archives.Break(path);
        }
    }

    std::map<std::wstring, std::string> Tree(const std::wstring& folder) override {
        std::map<std::wstring, std::string> tree;
        for (const auto& [path, bytes] : windows_.Tree.Snapshot(folder)) {
            tree[path.substr(folder.size() + 1)] = bytes;
            for (std::size_t end = path.rfind(L'\\'); end > folder.size(); end = path.rfind(L'\\', end - 1)) {
                tree[path.substr(folder.size() + 1, end - folder.size())];
            }
        }
        tree.erase(L"");
        return tree;
    }

  private:
    InMemoryWindows windows_;
};

}  // namespace

std::unique_ptr<ArchivesHost> MakeArchivesHost() {
    return std::make_unique<FakeArchivesHost>();
}

}  // namespace mip
