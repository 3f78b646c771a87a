#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

class ProfileContract : public ContractTest {
  protected:
    /// The value of key "Key" in section "S" of a file with this content, which is the same among several.
    std::wstring ValueIn(const std::string& content, std::size_t capacity = 256) {
        const std::wstring file = At(std::to_wstring(++count_) + L".ini");
        files_.Write(file, content);
        const std::wstring value = computer_.ProfileFiles.ReadString(L"S", L"Key", file, capacity);
        EXPECT_EQ((std::vector<std::wstring>{L"", value, value}),
                  computer_.ProfileFiles.ReadStrings(L"S", {L"None", L"Key", L"kEY"}, file, capacity));
        return value;
    }

    int count_ = 0;
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
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"[S]\r\nKey=value\r\n", L"value"},
        {"[S]\nKey=value\nOther=x\n", L"value"},
        {"[S]\r\nKey=value", L"value"},
        {"[s]\r\nKEY=Value\r\n", L"Value"},
        {"  [S]  \r\n  Key  =  a  b  \r\n", L"a  b"},
        {"[S]\r\nKey=\r\nOther=x\r\n", L""},
        {"[S]\r\nKey=   \r\n", L""},
        {"[S]\r\nKey\r\n", L""},
        {"[S]\r\nKey=\" a b \"\r\n", L" a b "},
        {"[S]\r\nKey=\"a\r\n", L"\"a"},
        {"[S]\r\nKey=a=b;c\r\n", L"a=b;c"},
        {"[S]\r\n;Key=no\r\nKey=yes\r\n", L"yes"},
        {"[S]\r\nKey=1\r\nKey=2\r\n", L"1"},
        {"[T]\r\nKey=no\r\n[S]\r\nKey=yes\r\n[U]\r\nKey=no\r\n", L"yes"},
        {"[S]\r\nOther=1\r\n[T]\r\nKey=no\r\n", L""},
        {"Key=no\r\n", L""},
        {"[S]\r\nKeys=no\r\nMyKey=no\r\n", L""},
        {"[S]\r\nKey\r\nKey=2\r\n", L""},
        {"[S]\r\n ; Key=no\r\nOther\r\n\r\n  Key\t=\t'a'\t\r\n", L"a"},
        {"[S]\r\nOther=1\r\n[S]\r\nKey=no\r\n", L""},
        {"", L""}};
    for (const auto& [content, value] : cases) {
        EXPECT_EQ(value, ValueIn(content)) << content;
    }
    EXPECT_EQ(L"", computer_.ProfileFiles.ReadString(L"S", L"Key", At(L"none.ini"), 256));
    EXPECT_EQ(L" 説明書 ", ValueIn(Utf16File(L"[S]\r\nKey=\" 説明書 \"\r\n")));
}

TEST_F(ProfileContract, LongValuesAreCutToTheBufferAndLongSectionsReadToTheirEnd) {
    const auto valueOf = [this](std::size_t size, std::size_t capacity) {
        return ValueIn("[S]\r\nKey=" + std::string(size, 'v') + "\r\n", capacity);
    };
    EXPECT_EQ(std::wstring(255, L'v'), valueOf(255, 256));
    EXPECT_EQ(std::wstring(255, L'v'), valueOf(300, 256));
    EXPECT_EQ(std::wstring(300, L'v'), valueOf(300, 512));
    EXPECT_EQ(std::wstring(255, L'文'), ValueIn(Utf16File(L"[S]\r\nKey=" + std::wstring(300, L'文') + L"\r\n")));
    for (const int lines : {61, 62, 63, 64, 65, 2047, 2048, 2100}) {
        std::string section = "[S]\r\n";
        for (int line = 0; line < lines; ++line) {
            section += "Other=123456789\r\n";
        }
        EXPECT_EQ(L"last", ValueIn(section + "Key=last\r\n")) << lines << " lines of 16 characters before it";
    }
}

}  // namespace
}  // namespace mip
