#pragma once

#include <chrono>
#include <string>

namespace mip {

double SecondsOf(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// An argument of these tools, which is ASCII.
inline std::wstring Widen(const char* text) {
    return std::wstring(text, text + std::char_traits<char>::length(text));
}

}  // namespace mip
