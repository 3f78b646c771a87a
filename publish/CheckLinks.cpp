#include <algorithm>
#include <charconv>
#include <string_view>

#include "platform/Files.h"
#include "publish/CheckDisc.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::size_t CodeLength = 3;  // of "%2F"

/// An address's bytes with "%2F" and the like as what they stand for.
std::string Decoded(std::string_view address) {
    std::string bytes;
    for (std::size_t i = 0; i < address.size(); ++i) {
        unsigned code = 0;
        const char* const end = address.data() + std::min(i + CodeLength, address.size());
        if (address[i] == '%' && std::from_chars(address.data() + i + 1, end, code, 16).ptr == address.data() + i + 3) {
            bytes += static_cast<char>(code);
            i += CodeLength - 1;
        } else {
            bytes += address[i];
        }
    }
    return bytes;
}

/// Addresses within the disc; "" for those that lead elsewhere and for a place on the page itself.
std::string FileOf(std::string_view address) {
    address = address.substr(0, address.find_first_of("#?"));
    const bool isElsewhere = address.find(':') != std::string_view::npos || address.starts_with("//");
    return isElsewhere ? std::string() : Decoded(address);
}

void CheckPage(DiscProgram& disc, const std::wstring& page, Findings& findings) {
    const std::string text = disc.Program.Platform.Files.Read(page);
    for (const std::string_view attribute : {"href=\"", "src=\""}) {
        for (std::size_t at = text.find(attribute); at != std::string::npos; at = text.find(attribute, at)) {
            at += attribute.size();
            const std::string file = FileOf(std::string_view(text).substr(at, text.find('"', at) - at));
            const std::wstring path = L"D:\\" + ReplaceAll(FromUtf8(file), L"/", L"\\");
            if (!file.empty() && !disc.Program.Platform.Files.Exists(path)) {
                findings.push_back({OnDisc(page), "link", "leads to " + file + ", which is not there",
                                    "correct the address, or put the page there"});
            }
        }
    }
}

}  // namespace

void CheckLinks(DiscProgram& disc, Findings& findings) {
    for (const wchar_t* page : {L"D:\\index.html", L"D:\\install.html"}) {
        if (disc.Program.Platform.Files.Exists(page)) {
            CheckPage(disc, page, findings);
        }
    }
}

}  // namespace mip
