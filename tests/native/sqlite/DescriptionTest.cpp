#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/sqlite/SqliteEngine.h"
#include "tests/ScratchFolder.h"
#include "tools/mkcatalogue/WriteCatalogue.h"

namespace mip {
namespace {

TEST(DescriptionTest, EntriesAreReadWhateverTheLineEndsAndTheMark) {
    const Description expected{4, {{L"KX 1", L"Kombi カバー", 20}, {L"KX2", L"", 0}}};
    const std::string model = "model KX 1\tKombi \xE3\x82\xAB\xE3\x83\x90\xE3\x83\xBC\t20";
    EXPECT_EQ(ParseDescription("version 4\n" + model + "\nmodel KX2\t\t0"), expected);
    EXPECT_EQ(ParseDescription("\xEF\xBB\xBF# order\r\n\r\n" + model + "\r\nversion  4\r\nmodel KX2\t\t 0\r\n"),
              expected);
}

TEST(DescriptionTest, FaultsNameTheirLine) {
    const std::string longName(256, 'x');
    const std::pair<std::string, const char*> cases[] = {
        {"", "line 1: the description has no"},
        {"# nothing\n\n", "line 2: the description has no"},
        {"version", "line 1: the version ''"},
        {"version 32768", "line 1: the version '32768'"},
        {"version -1", "line 1: the version '-1'"},
        {"version 1\nversion 2", "line 2: a second 'version'"},
        {"\nModel a\tb\t1", "line 2: 'Model' is neither"},
        {"model a\tb", "line 1: a model is"},
        {"model \tb\t1", "line 1: the model has no ID"},
        {"model a\tb\tfirst", "line 1: the order number 'first'"},
        {"model a\t" + longName + "\t1", "line 1: the model's ID or description is longer"},
        {"model a\tb\t1\nmodel a\tc\t2", "line 2: model 'a' comes a second time"},
        {"version 1\nmodel \xB6\t\t1", "line 2: the text is not UTF-8"}};
    for (const auto& [text, message] : cases) {
        try {
            ParseDescription(text);
            ADD_FAILURE() << "accepted: " << text;
        } catch (const DescriptionError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(message)) << error.what();
        }
    }
}

TEST(WriteCatalogueTest, ReplacesAnOldFileOnlyByAWholeOne) {
    const ScratchFolder scratch;
    const std::filesystem::path& folder = scratch.Path();
    std::filesystem::create_directories(folder / "taken.mdb" / "inside");
    const std::filesystem::path output = folder / "new.mdb";
    std::ofstream(output) << "an older file";
    WriteCatalogue({7, {{L"O'Hara", L"b", 5}}}, output);
    auto catalogue = SqliteEngine().Open(output.wstring());
    EXPECT_EQ(catalogue->Query(L"SELECT * FROM M_system")->Field(0), FieldValue(std::int64_t{7}));
    EXPECT_EQ(catalogue->Query(L"SELECT * FROM M_order")->Field(L"Model_ID"), FieldValue(L"O'Hara"));
    catalogue.reset();

    EXPECT_THROW(WriteCatalogue({7, {}}, folder / "taken.mdb"), std::filesystem::filesystem_error);
    EXPECT_FALSE(std::filesystem::exists(folder / "taken.mdb.new"));
}

}  // namespace
}  // namespace mip
