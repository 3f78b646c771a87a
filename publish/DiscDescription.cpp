#include "publish/DiscDescription.h"

#include <algorithm>
#include <exception>

#include "publish/PathText.h"
#include "text/Checked.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {

const std::array<CarInfoField, 9> CarInfoFields{{
    {L"Pub_No", &DiscCatalogueRecord::Pub_No, &ColumnLengths::Pub_No},
    {L"Version", &DiscCatalogueRecord::Version, &ColumnLengths::Version},
    {L"Model_desc", &DiscCatalogueRecord::Model_desc, &ColumnLengths::Model_desc},
    {L"Model_ID", &DiscCatalogueRecord::Model_ID, &ColumnLengths::Model_ID},
    {L"Lang", &DiscCatalogueRecord::Lang, &ColumnLengths::Lang},
    {L"Ldup", &DiscCatalogueRecord::Ldup, &ColumnLengths::Ldup},
    {L"Year", &DiscCatalogueRecord::Year, &ColumnLengths::Year},
    {L"Kubun", &DiscCatalogueRecord::Kubun, &ColumnLengths::Kubun, true},
    {L"Country", &DiscCatalogueRecord::Country, &ColumnLengths::Country},
}};

namespace {

constexpr std::size_t LongestText = 255;  // characters of a text column
constexpr std::wstring_view Blanks = L" \t\r";

std::wstring Trimmed(std::wstring_view text) {
    const std::size_t first = std::min(text.find_first_not_of(Blanks), text.size());
    return std::wstring(text.substr(first, text.find_last_not_of(Blanks) + 1 - first));
}

bool IsControl(wchar_t character) {
    return character < L' ' && character != L'\t';
}

/// A description's lines, one by one.
class Parser {
  public:
    void ReadLine(const std::wstring& text) {
        ++line_;
        const std::wstring line = Trimmed(text);
        if (line.find(L'\uFFFD') != std::wstring::npos) {
            Fail(L"", "the text is not UTF-8");
        } else if (std::ranges::any_of(line, IsControl)) {
            Fail(L"", "there is a control character in the line");
        } else if (line.starts_with(L'[')) {
            BeginSection(line);
        } else if (!line.empty() && !line.starts_with(L'#') && !line.starts_with(L';')) {
            ReadEntry(line);
        }
    }

    DiscDescription Finish() {
        line_ = std::max<std::size_t>(line_, 1);
        EndSection();
        RequireDisc();
        std::ranges::stable_sort(faults_, {}, &DescriptionFault::Line);
        ThrowFaults(std::move(faults_));
        return std::move(disc_);
    }

  private:
    void Fail(std::wstring_view field, const std::string& text) { FailAt(line_, field, text); }
    void FailAt(std::size_t line, std::wstring_view field, const std::string& text) {
        faults_.push_back({line, ToUtf8(field), text});
    }

    void BeginSection(const std::wstring& line) {
        EndSection();
        constexpr std::wstring_view manual = L"manual ";
        const std::wstring name = Trimmed(std::wstring_view(line).substr(1, line.rfind(L']') - 1));
        lines_ = {{L"", line_}};
        section_ = Section::Unknown;
        if (!line.ends_with(L']')) {
            Fail(L"", "the section's name does not end with ]");
        } else if (name == L"disc") {
            section_ = Section::Disc;
        } else if (name == L"models") {
            section_ = Section::Models;
        } else if (name.starts_with(manual)) {
            section_ = Section::Manual;
            manual_ = {};
            manual_.Record.FolderName = Trimmed(std::wstring_view(name).substr(manual.size()));
            manual_.Record.Ldup = L"1";
        } else {
            Fail(L"", "'" + ToUtf8(line) + "' is neither [disc], [models] nor [manual FOLDER]");
        }
    }

    void ReadEntry(const std::wstring& line) {
        const std::size_t equals = line.find(L'=');
        const std::wstring key = Trimmed(line.substr(0, equals));
        if (section_ == Section::None || equals == std::wstring::npos || key.empty()) {
            return Fail(L"", "'" + ToUtf8(line) + "' is no 'key = value' of a section");
        }
        if (!lines_.emplace(key, line_).second) {
            return Fail(key, "comes a second time in this section");
        }
        const std::wstring value = Trimmed(std::wstring_view(line).substr(equals + 1));
        switch (section_) {
            case Section::Disc:
                return ReadDiscValue(key, value);
            case Section::Models:
                return ReadModel(key, value);
            case Section::Manual:
                return ReadManualValue(key, value);
            default:
                return;
        }
    }

    void ReadDiscValue(const std::wstring& key, const std::wstring& value) {
        if (key == L"Layout") {
            ReadLayout(key, value);
        } else if (key == L"Date") {
            ReadDate(key, value);
        } else if (key == L"Label") {
            disc_.Label = value;
        } else if (key == L"StartPage") {
            disc_.StartPage = PathOf(value);
        } else if (key == L"Guide") {
            disc_.Guide = PathOf(value);
        } else if (key == L"UserLanguages") {
            for (const std::wstring& language : Split(value, L',')) {
                disc_.UserLanguages.push_back(Trimmed(language));
            }
        } else {
            Fail(key, "is no key of [disc]");
        }
    }

    void ReadLayout(const std::wstring& key, const std::wstring& value) {
        try {
            disc_.Catalogue.Version = TextToInt16(value);
        } catch (const std::exception&) {
        }
        if (disc_.Catalogue.Version <= 0) {
            Fail(key, "'" + ToUtf8(value) + "' is not a number from 1 to 32767");
        }
    }

    void ReadDate(const std::wstring& key, const std::wstring& value) {
        try {
            disc_.Date = ParseDateTime(value);
        } catch (const std::exception&) {
            Fail(key, "'" + ToUtf8(value) + "' is not a date like 2023/10/02 or 2023/10/02 08:00:00");
        }
    }

    void ReadModel(const std::wstring& key, const std::wstring& value) {
        if (key.size() > LongestText || value.size() > LongestText) {
            Fail(key, "the model's ID or description is longer than 255 characters");
        }
        auto& models = disc_.Catalogue.Models;
        if (models.size() == INT16_MAX) {
            return Fail(key, "comes after 32767 other models");
        }
        models.push_back({key, value, static_cast<std::int16_t>(models.size() + 1)});
    }

    void ReadManualValue(const std::wstring& key, const std::wstring& value) {
        const auto field = std::ranges::find(CarInfoFields, key, &CarInfoField::Key);
        if (field != CarInfoFields.end()) {
            manual_.Record.*field->Value = value;
        } else if (key == L"Title") {
            manual_.Title = value;
        } else if (key == L"Issued") {
            manual_.Issued = value;
        } else if (key == L"Source") {
            manual_.Source = PathOf(value);
        } else if (key != L"Form") {
            Fail(key, "is no key of a manual");
        } else if (value != L"html" && value != L"pdf") {
            Fail(key, "'" + ToUtf8(value) + "' is neither html nor pdf");
        } else {
            manual_.Record.PdfForm = value == L"pdf" ? ManualForm::Pdf : ManualForm::Archive;
        }
    }

    void Require(const wchar_t* key) {
        if (!lines_.contains(key)) {
            FailAt(lines_[L""], key, "is missing in this section");
        }
    }

    void EndSection() {
        if (section_ == Section::Disc) {
            hasDisc_ = true;
            for (const wchar_t* key : {L"Layout", L"Date", L"StartPage", L"Guide"}) {
                Require(key);
            }
        } else if (section_ == Section::Manual) {
            for (const CarInfoField& field : CarInfoFields) {
                if (!field.MayBeEmpty && field.Key != std::wstring_view(L"Ldup")) {
                    Require(field.Key);
                }
            }
            for (const wchar_t* key : {L"Issued", L"Source", L"Form"}) {
                Require(key);
            }
            if (manual_.Title.empty()) {
                manual_.Title = manual_.Record.Model_desc + L" " + manual_.Record.Year;
            }
            manual_.Lines = lines_;
            disc_.Manuals.push_back(std::move(manual_));
        }
    }

    void RequireDisc() {
        if (!hasDisc_) {
            Fail(L"", "the description has no section [disc]");
        }
        if (disc_.Manuals.empty()) {
            Fail(L"", "the description has no section [manual FOLDER]");
        }
        if (disc_.Label.empty()) {
            disc_.Label = L"MANUALS";
        }
    }

    enum class Section { None, Unknown, Disc, Models, Manual };

    std::size_t line_ = 0;
    Section section_ = Section::None;
    KeyLines lines_;
    ManualDescription manual_;
    DiscDescription disc_;
    bool hasDisc_ = false;
    std::vector<DescriptionFault> faults_;
};

std::string TextOfFaults(const std::vector<DescriptionFault>& faults) {
    std::string text;
    for (const DescriptionFault& fault : faults) {
        text += (text.empty() ? "line " : "\nline ") + std::to_string(fault.Line) + ": " +
                (fault.Field.empty() ? "" : fault.Field + ": ") + fault.Text;
    }
    return text;
}

}  // namespace

DescriptionFaults::DescriptionFaults(std::vector<DescriptionFault> faults)
    : std::runtime_error(TextOfFaults(faults)), faults_(std::move(faults)) {}

void ThrowFaults(std::vector<DescriptionFault> faults) {
    if (!faults.empty()) {
        throw DescriptionFaults(std::move(faults));
    }
}

std::size_t ManualDescription::LineOf(const std::wstring& key) const {
    const auto found = Lines.find(key);
    return found == Lines.end() ? Lines.at(L"") : found->second;
}

DiscDescription ParseDiscDescription(std::string_view bytes) {
    Parser parser;
    for (const std::wstring& line : SplitUtf8Lines(bytes)) {
        parser.ReadLine(line);
    }
    return parser.Finish();
}

}  // namespace mip
