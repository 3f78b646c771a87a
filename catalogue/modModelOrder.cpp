#include "catalogue/modModelOrder.h"

#include <exception>

#include "catalogue/FieldValues.h"
#include "catalogue/Statements.h"
#include "text/Checked.h"

namespace mip {
namespace {

ModelOrderEntry ReadEntry(clsMDB& database) {
    const FieldValue emptyText{std::wstring()};
    return {FieldText(database.Pcls_MdbGetField(ModelOrderSlot, L"Model_ID", emptyText)),
            FieldText(database.Pcls_MdbGetField(ModelOrderSlot, L"Model_desc", emptyText)),
            FieldInt16(database.Pcls_MdbGetField(ModelOrderSlot, L"OrderNo", FieldValue{std::int64_t{0}}))};
}

}  // namespace

MdbStatus LoadModelOrder(clsMDB& database, ModelOrderList& list) {
    list = {};
    try {
        MdbStatus status = database.Pcls_MdbCreate(ModelOrderSlot, statements::ReadModelOrder);
        while (status == MdbOk) {
            ModelOrderEntry entry = ReadEntry(database);
            list.ModelOrderCount = Add16(list.ModelOrderCount, 1);
            list.Entries.push_back(std::move(entry));
            status = database.Pcls_MdbMoveNext(ModelOrderSlot);
        }
        return status;
    } catch (const std::exception& error) {
        database.TrapLog().Trapped("reading the model order", error);
        return MdbError;
    }
}

std::int16_t FindOrderNo(const ModelOrderList& list, const std::wstring& modelId) {
    for (std::size_t index = 1; index < list.Entries.size(); ++index) {
        if (list.Entries[index].Model_ID == modelId) {
            return list.Entries[index].OrderNo;
        }
    }
    return 0;
}

}  // namespace mip
