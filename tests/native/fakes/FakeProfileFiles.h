#pragma once

#include "platform/ProfileFiles.h"
#include "tests/native/fakes/FakeComputer.h"
#include "tests/native/fakes/FileTree.h"
#include "text/UnicodeText.h"

namespace mip {

/// Reads as the system's profile calls do: UTF-16 with the mark FF FE, or the system's code page. They know no other
/// mark, so the first line of a file that has one is not understood.
class FakeProfileFiles : public ProfileFiles, private OnTree {
  public:
    FakeProfileFiles(FileTree& tree, FakeComputer& computer, Faults& faults)
        : OnTree(tree, faults), computer_(computer) {}

    std::wstring ReadString(const std::wstring& section, const std::wstring& key, const std::wstring& file,
                            std::size_t capacity) override {
        if (faults_.Fails("ProfileFiles.ReadString") || !tree_.HasFile(file) || capacity == 0) {
            return L"";
        }
        const std::string bytes = tree_.BytesOf(file);
        const bool isUtf16 = bytes.starts_with("\xFF\xFE");
        const std::wstring text = isUtf16 ? FromUtf16(std::string_view(bytes).substr(2), ByteOrder::LowFirst)
                                          : computer_.FromSystemCodePage(bytes);
        return FindValue(text, ToUpper(section), ToUpper(key)).substr(0, capacity - 1);
    }

  private:
    static std::wstring Trim(const std::wstring& text) {
        const std::size_t start = std::min(text.find_first_not_of(L" \t"), text.size());
        return text.substr(start, text.find_last_not_of(L" \t") + 1 - start);
    }
    /// Of the first such key in such a section, without a pair of quotes around it.
    static std::wstring FindValue(std::wstring_view text, const std::wstring& section, const std::wstring& key) {
        bool inSection = false;
        for (const std::wstring& each : SplitLines(text)) {
            const std::wstring line = Trim(each);
            const std::size_t equals = std::min(line.find(L'='), line.size());
            if (line.starts_with(L'[')) {
                inSection = ToUpper(Trim(line.substr(1, line.rfind(L']') - 1))) == section;
            } else if (inSection && equals < line.size() && ToUpper(Trim(line.substr(0, equals))) == key) {
                const std::wstring value = Trim(line.substr(equals + 1));
                const bool quoted = value.size() > 1 && value.front() == value.back() &&
                                    (value.front() == L'"' || value.front() == L'\'');
                return quoted ? value.substr(1, value.size() - 2) : value;
            }
        }
        return L"";
    }

    FakeComputer& computer_;
};

}  // namespace mip
