#include "publish/DiscPages.h"

#include <stdexcept>

#include "text/ProfileText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr char Mark[] = "<!-- manuals -->";

std::wstring Escaped(std::wstring text) {
    const std::pair<const wchar_t*, const wchar_t*> names[] = {
        {L"&", L"&amp;"}, {L"<", L"&lt;"}, {L">", L"&gt;"}, {L"\"", L"&quot;"}};
    for (const auto& [character, name] : names) {
        text = ReplaceAll(text, character, name);
    }
    return text;
}

/// An address on the disc: what would end it, or mean something in it, is given by number.
std::wstring Address(std::wstring path) {
    const std::pair<const wchar_t*, const wchar_t*> codes[] = {
        {L"%", L"%25"}, {L"#", L"%23"}, {L"?", L"%3F"}, {L" ", L"%20"}};
    for (const auto& [character, code] : codes) {
        path = ReplaceAll(path, character, code);
    }
    return Escaped(std::move(path));
}

/// The profile services take a pair of quotes off a value.
std::wstring ProfileLine(const std::wstring& key, const std::wstring& value) {
    const bool quoted = !value.empty() && (value.front() == L'"' || value.front() == L'\'');
    return key + L'=' + (quoted ? L'"' + value + L'"' : value) + L"\r\n";
}

/// Fields of a manual information file are told apart by commas alone.
std::wstring InfoField(const std::wstring& value) {
    return ReplaceAll(value, L",", L" ");
}

bool IsPdf(const ManualDescription& manual) {
    return manual.Record.PdfForm == ManualForm::Pdf;
}

std::wstring PageOf(const ManualDescription& manual) {
    const DiscCatalogueRecord& record = manual.Record;
    return record.FolderName + L"/contents/" + (IsPdf(manual) ? record.Pub_No + L".pdf" : L"index.html");
}

std::wstring Row(const ManualDescription& manual) {
    const DiscCatalogueRecord& record = manual.Record;
    return L"      <tr><td class=\"title\"><a href=\"" + Address(PageOf(manual)) + L"\">" + Escaped(manual.Title) +
           L"</a><small>" + Escaped(record.Kubun) + L"</small></td><td>" + Escaped(record.Pub_No) + L"</td><td>" +
           Escaped(record.Version) + L"</td><td>" + Escaped(record.Lang) + L"</td><td>" + Escaped(manual.Issued) +
           L"</td><td><span class=\"form" + (IsPdf(manual) ? L" pdf\">PDF" : L"\">HTML") + L"</span></td></tr>\n";
}

}  // namespace

std::string CarInfoFile(const DiscCatalogueRecord& manual) {
    std::wstring text = L"[CAR_INFO]\r\n";
    for (const CarInfoField& field : CarInfoFields) {
        text += ProfileLine(field.Key, manual.*field.Value);
    }
    return ProfileBytes(text);
}

std::string ManualInfoFile(const std::vector<const ManualDescription*>& manuals) {
    std::string bytes = "\xEF\xBB\xBF";
    for (const ManualDescription* manual : manuals) {
        const DiscCatalogueRecord& record = manual->Record;
        bytes += ToUtf8(InfoField(manual->Title) + L',' + InfoField(record.Kubun) + L',' + InfoField(record.Pub_No) +
                        L',' + record.FolderName + L',' + InfoField(record.Version) + L',' + manual->Issued + L"\r\n");
    }
    return bytes;
}

std::string PdfPage(const ManualDescription& manual) {
    const std::wstring address = Address(manual.Record.Pub_No + L".pdf");
    const std::wstring title = Escaped(manual.Title);
    return ToUtf8(L"<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title +
                  L"</title>\n<meta http-equiv=\"refresh\" content=\"0; url=" + address +
                  L"\">\n<style>body { font: 16px Arial, sans-serif; margin: 3em; color: #14293d; }</style>\n"
                  L"</head>\n<body>\n<h1>" +
                  title + L"</h1>\n<p><a href=\"" + address + L"\">Open the manual (PDF)</a></p>\n</body>\n</html>\n");
}

std::string StartPage(const std::string& pageTemplate, const std::vector<ManualDescription>& manuals) {
    const std::size_t mark = pageTemplate.find(Mark);
    if (mark == std::string::npos) {
        throw std::runtime_error("the start page's template has no line " + std::string(Mark));
    }
    std::wstring table =
        L"    <table>\n      <tr><th>Manual</th><th>Publication</th><th>Edition</th><th>Language</th>"
        L"<th>Issued</th><th>Form</th></tr>\n";
    for (const ManualDescription& manual : manuals) {
        table += Row(manual);
    }
    table += L"    </table>";
    return pageTemplate.substr(0, mark) + ToUtf8(table) + pageTemplate.substr(mark + sizeof(Mark) - 1);
}

}  // namespace mip
