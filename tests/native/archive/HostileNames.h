#pragma once

#include <string>
#include <vector>

namespace mip {

/// Names that would land outside the output folder, or that Windows would read as something else.
inline std::vector<std::wstring> HostileNames() {
    using namespace std::string_literals;
    std::vector<std::wstring> names = {
        // ways out, and roundabout ways
        L"", L"/", L"..", L"../evil", L"a/../../evil", L"..\\evil", L"a\\..\\..\\evil", L"a/..", L"./a", L"a/./b",
        L"a//b", L"/evil", L"\\evil", L"//server/share/evil", L"\\\\server\\share\\evil", L"\\\\?\\C:\\evil",
        L"\\??\\C:\\evil", L"C:/evil", L"C:evil", L"c:\\evil", L"a/C:/evil", L"a.txt:stream", L"a.txt::$DATA", L"a:",
        // devices
        L"CON", L"con", L"a/NUL", L"nul.txt", L"AUX.tar.gz", L"prn ", L"PRN .txt", L"COM1", L"com9.log", L"LPT1/a",
        L"LPT\u00B3.x", L"com\u00B2", L"COM\u00B9", L"CONIN$", L"conout$.x",
        // ends that Windows cuts off, and characters that it has no names with
        L"a.", L"a. ", L"a ", L"folder./a", L"folder /a", L"...", L"a\u0001b", L"a\nb", L"a\tb", L"a<b", L"a>b",
        L"a\"b", L"a|b", L"a?b", L"a*b", L"a\0b"s, L"a\0/../b"s, std::wstring(256, L'x'), std::wstring(5000, L'x')};
    std::wstring deep = L"bbb";
    for (int level = 0; level < 2047; ++level) {
        deep += L"/a";
    }
    names.push_back(deep.substr(1) + L"/a");
    names.push_back(deep);  // one character too long
    return names;
}

}  // namespace mip
