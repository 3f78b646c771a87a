#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/sqlite/SqliteEngine.h"
#include "tests/native/fakes/InMemoryWindows.h"
#include "tests/native/fakes/TreeVfs.h"

namespace mip {

/// An in-memory Windows whose embedded database engine works on its files.
struct CatalogueWindows : InMemoryWindows {
    CatalogueWindows() { SqliteEngine.Engine = &Embedded; }

    /// Puts a catalogue of a layout version there, filled by these statements. Works for the read-only disc too.
    void PutCatalogue(const std::wstring& path, std::int16_t layoutVersion,
                      const std::vector<std::wstring>& statements = {}) {
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

    TreeVfs Vfs{Tree, Faults};
    mip::SqliteEngine Embedded{Vfs.Name()};
};

}  // namespace mip
