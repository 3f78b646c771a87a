#include "tests/native/archive/TestSystem.h"

#include <algorithm>
#include <fstream>
#include <iterator>

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
