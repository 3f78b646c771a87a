#include "catalogue/Statements.h"

#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {

namespace {

void AppendQuoted(std::wstring& text, std::wstring_view value) {
    text += L'\'';
    for (const wchar_t character : value) {
        text.append(character == L'\'' ? 2 : 1, character);
    }
    text += L'\'';
}

/// The same with more behind it.
void AppendListed(std::wstring& text, std::wstring_view value) {
    AppendQuoted(text, value);
    text += L",\n";
}

}  // namespace

std::wstring QuoteSql(const std::wstring& value) {
    std::wstring quoted;
    AppendQuoted(quoted, value);
    return quoted;
}

}  // namespace mip

namespace mip::statements {
namespace {

constexpr wchar_t ListColumns[] =
    L" MM.Pub_No AS Pub_No \r\n,Model_desc \r\n,Model_ID \r\n,Version \r\n,[Year] \r\n,Kubun \r\n,Country \r\n,Lang "
    L"\r\n,Ldup \r\n,InsUser \r\n,InsDate \r\n,InsPath \r\n,Adjust_flg \r\n,Memo_txt \r\n,Pdf_flg \r\n";

constexpr wchar_t InsertColumns[] =
    L" ( [Pub_No]\r\n,[Model_desc]\r\n,[Model_ID]\r\n,[Version]\r\n,[Year]\r\n,[Kubun]\r\n,[Country]\r\n,[Lang]"
    L"\r\n,[Ldup]\r\n,[InsUser]\r\n,[InsDate]\r\n,[InsPath]\r\n,[Adjust_flg]\r\n,[Memo_txt]\r\n ) ";

std::wstring WherePubNo(const std::wstring& pubNo) {
    return L" WHERE Pub_No = " + QuoteSql(pubNo);
}

}  // namespace

std::wstring FindInstalled(const std::wstring& pubNo) {
    return ReadAllInstalled + WherePubNo(pubNo);
}

std::wstring FindInstalledAmong(const std::vector<std::wstring>& pubNos) {
    std::wstring list;
    for (const std::wstring& pubNo : pubNos) {
        list += (list.empty() ? L"" : L",") + QuoteSql(pubNo);
    }
    return std::wstring(ReadAllInstalled) + L" WHERE Pub_No IN (" + list + L") ORDER BY Pub_No";
}

std::wstring InstalledList() {
    return std::wstring(L"SELECT ") + ListColumns + L" FROM M_manage MM LEFT JOIN M_type MT ON MM.PUB_NO = MT.PUB_NO ";
}

std::wstring DeleteInstalled(const std::wstring& pubNo) {
    return L"DELETE FROM M_manage" + WherePubNo(pubNo);
}

std::wstring DeleteType(const std::wstring& pubNo) {
    return L"DELETE FROM M_type" + WherePubNo(pubNo);
}

std::wstring InsertInstalled(const InstalledRecord& record) {
    constexpr std::size_t UsualLength = 512;
    std::wstring text = L"INSERT INTO M_manage";
    text.reserve(UsualLength);
    text.append(InsertColumns).append(L" VALUES(\n");
    for (const std::wstring* value :
         {&record.Pub_No, &record.Model_desc, &record.Model_ID, &record.Version, &record.Year, &record.Kubun,
          &record.Country, &record.Lang, &record.Ldup, &record.INSUser}) {
        AppendListed(text, *value);
    }
    text += L"Cdate(";
    AppendQuoted(text, FormatDateTime(record.INSDate));
    text += L"),\n";
    AppendListed(text, record.INSPath);
    AppendListed(text, record.Adjust_flg);
    AppendQuoted(text, record.Memo_txt);
    return text += L")\n";
}

std::wstring InsertNewType(const std::wstring& pubNo, const std::wstring& pdfFlag) {
    return L" INSERT INTO M_type (PUB_NO,PDF_FLG)  VALUES(\n" + QuoteSql(pubNo) + L",\n" + QuoteSql(pdfFlag) + L")\n";
}

std::wstring InsertCarriedType(const std::wstring& pubNo, const std::wstring& pdfFlag) {
    std::wstring text = L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ( ";
    AppendQuoted(text, pubNo);
    text += L',';
    AppendQuoted(text, pdfFlag);
    return text += L')';
}

std::wstring MarkForAdjustment(const std::wstring& pubNo) {
    return L"UPDATE M_manage SET  Adjust_flg = '1' " + WherePubNo(pubNo);
}

std::wstring ReregisterInstallPath(const std::wstring& pubNo, const std::wstring& path) {
    return L"UPDATE M_manage SET  INSPath = " + QuoteSql(path) + L", Adjust_flg = 0 " + WherePubNo(pubNo);
}

}  // namespace mip::statements
