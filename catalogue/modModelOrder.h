#pragma once

#include <cstdint>
#include <string>

#include "app/ModelOrder.h"
#include "catalogue/clsMDB.h"

namespace mip {

/// Loads M_order: MdbEnd when the table was read to its end, MdbError when the query or a read failed. The entries read
/// until then stay.
[[nodiscard]] MdbStatus LoadModelOrder(clsMDB& database, ModelOrderList& list);
/// The display order of a model, 0 when it is not in the list; exact match, first entry wins.
std::int16_t FindOrderNo(const ModelOrderList& list, const std::wstring& modelId);

}  // namespace mip
