#include "platform/sqlite/CatalogueSchema.h"

#include <string>

#include "platform/sqlite/SqliteHandle.h"

namespace mip {
namespace {

// Pub_No is looked up and joined without regard to case, so its index compares that way too.
constexpr char Tables[] = R"(
CREATE TABLE M_manage (
    Pub_No TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,
    Model_desc TEXT COLLATE NOCASE,
    Model_ID TEXT COLLATE NOCASE,
    Version TEXT COLLATE NOCASE,
    Year TEXT COLLATE NOCASE,
    Kubun TEXT COLLATE NOCASE,
    Country TEXT COLLATE NOCASE,
    Lang TEXT COLLATE NOCASE,
    Ldup TEXT COLLATE NOCASE,
    INSUser TEXT COLLATE NOCASE,
    INSDate DATETIME,
    INSPath TEXT COLLATE NOCASE,
    Adjust_flg TEXT COLLATE NOCASE,
    Memo_txt TEXT COLLATE NOCASE
);
CREATE TABLE M_type (
    PUB_NO TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,
    PDF_FLG TEXT COLLATE NOCASE
);
CREATE TABLE M_system (MDB_Version INTEGER);
CREATE TABLE M_order (
    Model_ID TEXT COLLATE NOCASE,
    Model_desc TEXT COLLATE NOCASE,
    OrderNo INTEGER
);
)";

}  // namespace

void CreateCatalogueTables(sqlite3* database, std::int16_t layoutVersion) {
    const std::string script = std::string("BEGIN;") + Tables + "INSERT INTO M_system (MDB_Version) VALUES (" +
                               std::to_string(layoutVersion) + ");COMMIT";
    RunStatement(database, script.c_str());
}

}  // namespace mip
