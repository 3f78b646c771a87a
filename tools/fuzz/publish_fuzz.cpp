// Reads arbitrary bytes as a publisher's description and as an initialisation file. Whatever they are: no crash, faults
// that name a line, and values that a car_info.ci gives back as they were.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "publish/DiscDescription.h"
#include "publish/DiscPages.h"
#include "text/ProfileText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

std::wstring ProfileText(const std::string& bytes) {
    return IsUtf16Profile(bytes) ? Utf16ProfileText(bytes) : FromUtf8(bytes);
}

void CheckValues(const DiscCatalogueRecord& manual) {
    const std::wstring text = ProfileText(CarInfoFile(manual));
    for (const CarInfoField& field : CarInfoFields) {
        Require(ProfileValue(text, L"CAR_INFO", field.Key) == manual.*field.Value);
    }
}

void CheckDescriptionText(std::string_view bytes) {
    try {
        const DiscDescription description = ParseDiscDescription(bytes);
        std::vector<DescriptionFault> faults;
        CheckDescription(description, faults);
        CheckFieldLengths(description, {}, faults);
        for (const ManualDescription& manual : description.Manuals) {
            CheckValues(manual.Record);
            Require(!PdfPage(manual).empty());
        }
    } catch (const DescriptionFaults& faults) {
        Require(!faults.Faults().empty() && faults.Faults()[0].Line > 0);
    }
}

}  // namespace
}  // namespace mip

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    mip::CheckDescriptionText(bytes);
    (void)mip::ProfileValue(mip::ProfileText(bytes), L"CAR_INFO", L"Pub_No");
    return 0;
}
