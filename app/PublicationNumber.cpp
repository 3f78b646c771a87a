#include "app/PublicationNumber.h"

#include <cstddef>

#include "text/Checked.h"

namespace mip {
namespace {

constexpr std::size_t RevisionPosition = 4;

bool HasRevision(const std::wstring& pubNo) {
    return pubNo.size() > RevisionPosition && pubNo[RevisionPosition] >= L'0' && pubNo[RevisionPosition] <= L'9';
}

}  // namespace

std::wstring BaseEditionOf(const std::wstring& pubNo) {
    if (!HasRevision(pubNo)) {
        throw ConversionError();
    }
    if (pubNo[RevisionPosition] == L'0') {
        return {};
    }
    std::wstring base = pubNo;
    base[RevisionPosition] = L'0';
    return base;
}

std::vector<std::wstring> LaterRevisionsOf(const std::wstring& pubNo) {
    std::vector<std::wstring> revisions;
    if (HasRevision(pubNo)) {
        for (std::wstring later = pubNo; later[RevisionPosition] < L'9';) {
            ++later[RevisionPosition];
            revisions.push_back(later);
        }
    }
    return revisions;
}

}  // namespace mip
