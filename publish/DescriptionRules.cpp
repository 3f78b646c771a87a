#include <algorithm>
#include <exception>
#include <set>

#include "app/PublicationNumber.h"
#include "catalogue/modCarInfo.h"
#include "manualinfo/ManualInfoFile.h"
#include "platform/PlatformError.h"
#include "platform/archive/EntryName.h"
#include "publish/DiscDescription.h"
#include "publish/ManualFiles.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

bool IsWholeNumber(const std::wstring& text) {
    try {
        return TextToInt16(text) >= 0;
    } catch (const std::exception&) {
        return false;
    }
}

bool HasEditionDigit(const std::wstring& pubNo) {
    try {
        (void)BaseEditionOf(pubNo);
        return true;
    } catch (const ConversionError&) {
        return false;
    }
}

bool IsMonth(const std::wstring& issued) {
    try {
        (void)ReadManualInfoEntry(L",,,,," + issued);
        return issued.find(L',') == std::wstring::npos;
    } catch (const ConversionError&) {
        return false;
    }
}

/// What is wrong with a folder's name; "" when nothing is.
std::string FolderFault(const std::wstring& folder) {
    try {
        if (CheckedEntryName(folder) != folder || folder.find_first_of(L"\\/ ,") != std::wstring::npos) {
            return "has a blank, a comma or a slash in it";
        }
        return ToUpper(folder) == L"PROGRAMS" ? "is the folder of the disc's programs" : "";
    } catch (const PlatformError&) {
        return "is no name that Windows takes";
    }
}

/// Checks the values of one manual after another, with an eye on those before.
class Checker {
  public:
    Checker(const DiscDescription& description, std::vector<DescriptionFault>& faults)
        : description_(description), faults_(faults) {
        for (const ManualDescription& manual : description.Manuals) {
            all_.insert(ToUpper(manual.Record.Pub_No));
        }
    }

    void Check(const ManualDescription& manual) {
        const DiscCatalogueRecord& record = manual.Record;
        const std::string folder = FolderFault(record.FolderName);
        Require(manual, L"", folder.empty(), "the folder '" + ToUtf8(record.FolderName) + "' " + folder);
        Require(manual, L"", folders_.insert(ToUpper(record.FolderName)).second, "this folder comes a second time");
        CheckPublication(manual);
        Require(manual, L"Version", IsWholeNumber(record.Version), "is not a whole number from 0 to 32767");
        Require(manual, L"Issued", IsMonth(manual.Issued), "is not a month like 2023/10");
        Require(manual, L"Model_ID", IsModel(record.Model_ID), "is not among [models]");
    }

  private:
    void Require(const ManualDescription& manual, const std::wstring& key, bool condition, const std::string& text) {
        if (!condition) {
            faults_.push_back({manual.LineOf(key), ToUtf8(key), text});
        }
    }

    void CheckPublication(const ManualDescription& manual) {
        const std::wstring& pubNo = manual.Record.Pub_No;
        Require(manual, L"Pub_No", HasEditionDigit(pubNo), "the fifth character is not the edition's digit");
        Require(manual, L"Pub_No", NameFault(pubNo + L".pdf").empty(), "is no name for a file on a disc");
        Require(manual, L"Pub_No", publications_.insert(ToUpper(pubNo)).second,
                "another manual of this disc has this number");
        for (const std::wstring& later : LaterRevisionsOf(pubNo)) {
            Require(manual, L"Pub_No", !all_.contains(ToUpper(later)),
                    "the disc also has the later edition " + ToUtf8(later));
        }
    }

    bool IsModel(const std::wstring& id) const {
        const auto& models = description_.Catalogue.Models;
        return std::ranges::find(models, id, &ModelOrderEntry::Model_ID) != models.end();
    }

    const DiscDescription& description_;
    std::vector<DescriptionFault>& faults_;
    std::set<std::wstring> all_;
    std::set<std::wstring> folders_;
    std::set<std::wstring> publications_;
};

}  // namespace

void CheckDescription(const DiscDescription& description, std::vector<DescriptionFault>& faults) {
    Checker checker(description, faults);
    for (const ManualDescription& manual : description.Manuals) {
        checker.Check(manual);
    }
}

void CheckFieldLengths(const DiscDescription& description, const ColumnLengths& lengths,
                       std::vector<DescriptionFault>& faults) {
    for (const ManualDescription& manual : description.Manuals) {
        for (const CarInfoField& field : CarInfoFields) {
            const std::wstring& value = manual.Record.*field.Value;
            if (!CheckFieldLength(value, lengths.*field.Length, field.MayBeEmpty)) {
                faults.push_back({manual.LineOf(field.Key), ToUtf8(field.Key),
                                  "has " + std::to_string(value.size()) + " characters; the catalogue takes 1 to " +
                                      std::to_string(lengths.*field.Length)});
            }
        }
    }
}

}  // namespace mip
