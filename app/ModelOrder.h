#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mip {

struct ModelOrderEntry {
    std::wstring Model_ID;
    std::wstring Model_desc;
    std::int16_t OrderNo = 0;

    bool operator==(const ModelOrderEntry&) const = default;
};

/// The display order of vehicle models; entry 0 is never filled.
struct ModelOrderList {
    std::vector<ModelOrderEntry> Entries{1};
    std::int16_t ModelOrderCount = 0;
};

}  // namespace mip
