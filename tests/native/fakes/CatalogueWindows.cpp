#include "tests/native/fakes/CatalogueWindows.h"

namespace mip {

void CatalogueWindows::PutCatalogue(const std::wstring& path, std::int16_t layoutVersion,
                                    const std::vector<std::wstring>& statements) {
    const std::wstring workFile = Computer.Temporary + L"\\new catalogue.mdb";
    {
        const auto connection = Embedded.Create(workFile, layoutVersion);
        connection->BeginTransaction();
        for (const std::wstring& statement : statements) {
            connection->Execute(statement);
        }
        connection->CommitTransaction();
    }
    Tree.PutFile(path, Tree.BytesOf(workFile));
    Tree.Erase(workFile);
}

}  // namespace mip
