#include "tools/mkcatalogue/Description.h"

#include <algorithm>
#include <optional>

#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::size_t LongestText = 255;  // characters of a text column

/// The lines of a description, read one by one.
class Parser {
  public:
    void ReadLine(std::wstring_view text) {
        ++line_;
        if (text.find(L'\uFFFD') != std::wstring_view::npos) {
            Fail("the text is not UTF-8");
        }
        if (text.empty() || text.starts_with(L'#')) {
            return;
        }
        const std::size_t end = std::min(text.find(L' '), text.size());
        const std::wstring_view keyword = text.substr(0, end);
        const std::wstring_view rest = TrimBlanks(text.substr(end));
        if (keyword == L"version") {
            ReadVersion(rest);
        } else if (keyword == L"model") {
            ReadModel(rest);
        } else {
            Fail("'" + ToUtf8(keyword) + "' is neither 'version' nor 'model'");
        }
    }

    Description Finish() {
        if (!version_) {
            Fail("the description has no 'version' line");
        }
        return {*version_, std::move(models_)};
    }

  private:
    [[noreturn]] void Fail(const std::string& text) const {
        throw DescriptionError(std::max<std::size_t>(line_, 1), text);
    }

    void ReadVersion(std::wstring_view text) {
        if (version_) {
            Fail("a second 'version' line");
        }
        version_ = Number(text, "the version");
    }

    void ReadModel(std::wstring_view text) {
        const std::vector<std::wstring> fields = Split(text, L'\t');
        if (fields.size() != 3) {
            Fail("a model is its ID, its description and its order number, separated by tabs");
        }
        const std::wstring& id = fields[0];
        if (TrimBlanks(id).empty()) {
            Fail("the model has no ID");
        }
        if (id.size() > LongestText || fields[1].size() > LongestText) {
            Fail("the model's ID or description is longer than 255 characters");
        }
        if (std::any_of(models_.begin(), models_.end(), [&](const auto& model) { return model.Model_ID == id; })) {
            Fail("model '" + ToUtf8(id) + "' comes a second time");
        }
        models_.push_back({id, fields[1], Number(fields[2], "the order number")});
    }

    std::int16_t Number(std::wstring_view text, const std::string& what) const {
        try {
            const std::int16_t number = TextToInt16(text);
            if (number >= 0) {
                return number;
            }
        } catch (const ConversionError&) {
        } catch (const OverflowError&) {
        }
        Fail(what + " '" + ToUtf8(text) + "' is not a number from 0 to 32767");
    }

    std::size_t line_ = 0;
    std::optional<std::int16_t> version_;
    std::vector<ModelOrderEntry> models_;
};

}  // namespace

Description ParseDescription(std::string_view bytes) {
    Parser parser;
    for (const std::wstring& line : SplitUtf8Lines(bytes)) {
        parser.ReadLine(line);
    }
    return parser.Finish();
}

}  // namespace mip
