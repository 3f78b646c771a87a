#include "tests/native/archive/TestSystem.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>

namespace mip {

namespace fs = std::filesystem;

#ifdef _WIN32
fs::path PathOf(std::wstring path) {
    return path;
}
static std::wstring TextOf(const fs::path& path) {
    return path.wstring();
}
#else
fs::path PathOf(std::wstring path) {
    std::ranges::replace(path, L'\\', L'/');
    return std::u32string(path.begin(), path.end());
}
static std::wstring TextOf(const fs::path& path) {
    const std::u32string text = path.u32string();
    return {text.begin(), text.end()};
}
#endif

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    path_ = fs::temp_directory_path() / ("mip-archive-" + std::to_string(random()) + std::to_string(random()));
    fs::create_directory(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::wstring TemporaryFolder::Below(const std::wstring& name) const {
    return TextOf(path_) + L'\\' + name;
}

std::wstring TemporaryFolder::Write(const std::wstring& name, const std::string& bytes) const {
    std::ofstream(PathOf(Below(name)), std::ios::binary) << bytes;
    return Below(name);
}

Tree TreeOf(const fs::path& folder) {
    Tree tree;
    if (!fs::exists(folder)) {
        return tree;
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        std::wstring name = TextOf(entry.path().lexically_relative(folder));
        std::ranges::replace(name, L'/', L'\\');
        if (entry.is_directory()) {
            tree[name + L'\\'] = "";
        } else {
            std::ifstream file(entry.path(), std::ios::binary);
            tree[name] = std::string(std::istreambuf_iterator<char>(file), {});
        }
    }
    return tree;
}

}  // namespace mip
