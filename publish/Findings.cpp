#include "publish/Findings.h"

#include <array>
#include <cstdio>

namespace mip {
namespace {

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        if (static_cast<unsigned char>(c) < ' ') {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(c));
            quoted += code.data();
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

}  // namespace

std::string FindingsText(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += (finding.File.empty() ? "disc" : finding.File) + ": " + finding.Text + "; " + finding.Fix + " [" +
                finding.Code + "]\n";
    }
    return text;
}

std::string FindingsJson(const Findings& findings) {
    std::string json = "[";
    for (const Finding& finding : findings) {
        json += (json.size() == 1 ? "\n" : ",\n") + ("  {\"file\": " + Quoted(finding.File)) +
                ", \"code\": " + Quoted(finding.Code) + ", \"text\": " + Quoted(finding.Text) +
                ", \"fix\": " + Quoted(finding.Fix) + "}";
    }
    return json + "\n]\n";
}

}  // namespace mip
