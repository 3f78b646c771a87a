#include "app/PublicationNumber.h"

#include <cstddef>

#include "text/Checked.h"

namespace mip {
namespace {

constexpr std::size_t EditionDigit = 4;

bool HasEditionDigit(const std::wstring& pubNo) {
    return pubNo.size() > EditionDigit && pubNo[EditionDigit] >= L'0' && pubNo[EditionDigit] <= L'9';
}

}  // namespace

std::wstring BaseEditionOf(const std::wstring& pubNo) {
    if (!HasEditionDigit(pubNo)) {
        throw ConversionError();
    }
    if (pubNo[EditionDigit] == L'0') {
        return {};
    }
    std::wstring base = pubNo;
    base[EditionDigit] = L'0';
    return base;
}

std::vector<std::wstring> LaterEditionsOf(const std::wstring& pubNo) {
    std::vector<std::wstring> editions;
    if (HasEditionDigit(pubNo)) {
        for (std::wstring later = pubNo; later[EditionDigit] < L'9';) {
            ++later[EditionDigit];
            editions.push_back(later);
        }
    }
    return editions;
}

}  // namespace mip
