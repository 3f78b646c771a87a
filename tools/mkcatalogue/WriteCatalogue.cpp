#include "tools/mkcatalogue/WriteCatalogue.h"

#include <memory>

#include "app/TextTools.h"
#include "platform/ScopeGuard.h"
#include "platform/sqlite/SqliteEngine.h"

namespace mip {
namespace {

std::wstring Quoted(const std::wstring& text) {
    return L"'" + ReplaceAll(text, L"'", L"''") + L"'";
}

void FillModelOrder(DatabaseConnection& connection, const std::vector<ModelOrderEntry>& models) {
    connection.BeginTransaction();
    for (const ModelOrderEntry& model : models) {
        connection.Execute(L"INSERT INTO M_order (Model_ID,Model_desc,OrderNo) VALUES (" + Quoted(model.Model_ID) +
                           L"," + Quoted(model.Model_desc) + L"," + std::to_wstring(model.OrderNo) + L")");
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
    FillModelOrder(*SqliteEngine().Create(unfinished.wstring(), description.Version), description.Models);
    std::filesystem::rename(unfinished, output);
}

}  // namespace mip
