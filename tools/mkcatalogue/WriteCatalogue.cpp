#include "tools/mkcatalogue/WriteCatalogue.h"

#include "catalogue/Statements.h"
#include "platform/ScopeGuard.h"
#include "platform/sqlite/SqliteEngine.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// Not by wstring(): that is bound to the C library's locale on some systems.
std::wstring WideText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return FromUtf8({reinterpret_cast<const char*>(text.data()), text.size()});
}

void FillModelOrder(DatabaseConnection& connection, const std::vector<ModelOrderEntry>& models) {
    connection.BeginTransaction();
    for (const ModelOrderEntry& model : models) {
        connection.Execute(L"INSERT INTO M_order (Model_ID,Model_desc,OrderNo) VALUES (" + QuoteSql(model.Model_ID) +
                           L"," + QuoteSql(model.Model_desc) + L"," + std::to_wstring(model.OrderNo) + L")");
    }
    connection.CommitTransaction();
}

}  // namespace

void WriteCatalogue(const Description& description, const std::filesystem::path& output) {
    std::filesystem::path unfinished = output;
    unfinished += ".new";
    std::filesystem::remove(unfinished);
    const ScopeGuard removeUnfinished([&] {
        std::error_code ignored;
        std::filesystem::remove(unfinished, ignored);
    });
    FillModelOrder(*SqliteEngine().Create(WideText(unfinished), description.Version), description.Models);
    std::filesystem::rename(unfinished, output);
}

}  // namespace mip
