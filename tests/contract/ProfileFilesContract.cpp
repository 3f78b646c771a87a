#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

class ProfileContract : public ContractTest {
  protected:
    /// The value of key "Key" in section "S" of a file with this content.
    std::wstring ValueIn(const std::string& content, std::size_t capacity = 256) {
        const std::wstring file = At(std::to_wstring(++files_) + L".ini");
        Files().Write(file, content);
        return host_->ProfileFiles().ReadString(L"S", L"Key", file, capacity);
    }

    int files_ = 0;
};

std::string Utf16File(const std::wstring& text) {
    std::string bytes = "\xFF\xFE";
    for (const wchar_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

TEST_F(ProfileContract, ValuesAreFoundAndCleaned) {
    const struct {
        const char* Label;
        std::string Content;
        std::wstring Value;
    } cases[] = {
        {"plain", "[S]\r\nKey=value\r\n", L"value"},
        {"line feeds only", "[S]\nKey=value\nOther=x\n", L"value"},
        {"no end of line", "[S]\r\nKey=value", L"value"},
        {"case", "[s]\r\nKEY=Value\r\n", L"Value"},
        {"blanks around", "  [S]  \r\n  Key  =  a  b  \r\n", L"a  b"},
        {"tabs around", "[S]\r\n\tKey\t=\tvalue\t\r\n", L"value"},
        {"empty value", "[S]\r\nKey=\r\nOther=x\r\n", L""},
        {"blank value", "[S]\r\nKey=   \r\n", L""},
        {"no equals sign", "[S]\r\nKey\r\n", L""},
        {"double quotes", "[S]\r\nKey=\" a b \"\r\n", L" a b "},
        {"single quotes", "[S]\r\nKey=' a b '\r\n", L" a b "},
        {"one pair only", "[S]\r\nKey=\"\"a\"\"\r\n", L"\"a\""},
        {"quote at one end", "[S]\r\nKey=\"a\r\n", L"\"a"},
        {"different quotes", "[S]\r\nKey=\"a'\r\n", L"\"a'"},
        {"equals and semicolon inside", "[S]\r\nKey=a=b;c\r\n", L"a=b;c"},
        {"comment before", "[S]\r\n;Key=no\r\nKey=yes\r\n", L"yes"},
        {"first of two keys", "[S]\r\nKey=1\r\nKey=2\r\n", L"1"},
        {"other section", "[T]\r\nKey=no\r\n[S]\r\nKey=yes\r\n[U]\r\nKey=no\r\n", L"yes"},
        {"key of another section", "[S]\r\nOther=1\r\n[T]\r\nKey=no\r\n", L""},
        {"no section", "Key=no\r\n", L""},
        {"longer name", "[S]\r\nKeys=no\r\nMyKey=no\r\n", L""},
        {"empty file", "", L""},
    };
    for (const auto& [label, content, value] : cases) {
        SCOPED_TRACE(label);
        EXPECT_EQ(value, ValueIn(content));
    }
    EXPECT_EQ(L"", host_->ProfileFiles().ReadString(L"S", L"Key", At(L"none.ini"), 256));
}

TEST_F(ProfileContract, LongValuesAreCutToTheBuffer) {
    EXPECT_EQ(std::wstring(255, L'v'), ValueIn("[S]\r\nKey=" + std::string(255, 'v') + "\r\n"));
    EXPECT_EQ(std::wstring(255, L'v'), ValueIn("[S]\r\nKey=" + std::string(300, 'v') + "\r\n"));
    EXPECT_EQ(std::wstring(300, L'v'), ValueIn("[S]\r\nKey=" + std::string(300, 'v') + "\r\n", 512));
    EXPECT_EQ(L"abc", ValueIn("[S]\r\nKey=abcdef\r\n", 4));
}

TEST_F(ProfileContract, Utf16FilesWithAMarkAreRead) {
    EXPECT_EQ(L"説明書を選んでください。", ValueIn(Utf16File(L"[S]\r\nKey=説明書を選んでください。\r\n")));
    EXPECT_EQ(std::wstring(255, L'文'), ValueIn(Utf16File(L"[S]\r\nKey=" + std::wstring(300, L'文') + L"\r\n")));
    EXPECT_EQ(L" 空白 ", ValueIn(Utf16File(L"[S]\r\nKey=\" 空白 \"\r\n")));
}

}  // namespace
}  // namespace mip
