#include "publish/DiscImage.h"
#include "tests/native/publish/Publisher.h"

namespace mip {
namespace {

using DiscImageTest = PublisherTest;

TEST_F(DiscImageTest, HasTheFoldersFilesUnderTheirLongNamesAndIsRefusedWhenACutLosesOne) {
    const TestManual manual{"Fuyune_2021_整備書", "K7810JP"};
    PutSource(manual);
    ASSERT_EQ(Make(DescriptionOf({manual}), "disc"), std::vector<std::string>{});
    const auto files = FilesOf(At("disc"));
    WriteImage(At("disc"), At("disc.iso"), {L"TALIS 2023", DateTime{}}, ImageNames::Joliet);
    EXPECT_TRUE(HasJolietNames(At("disc.iso")));
    EXPECT_EQ(FilesOf(UnpackedImage(At("disc.iso")).Folder()), files);

    const std::string image = ReadWhole(At("disc.iso"));
    int refused = 0;
    for (std::size_t size = 0; size < image.size(); size += image.size() / 40) {
        Put("cut.iso", image.substr(0, size));
        try {
            EXPECT_EQ(FilesOf(UnpackedImage(At("cut.iso")).Folder()), files) << size << " bytes of it";
        } catch (const std::exception&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 10) << "the rest is what an image is filled up with";
}

TEST_F(DiscImageTest, IsNotReplacedByOneThatCannotBeMade) {
    Put("disc.iso", "the one before");
    EXPECT_THROW(WriteImage(At("none"), At("disc.iso"), {L"T", DateTime{}}, ImageNames::Joliet), std::runtime_error);
    try {
        WriteImage(At("a'\"b"), At("disc.iso"), {L"T", DateTime{}}, ImageNames::Joliet);
        ADD_FAILURE() << "the command interpreter was given a quote";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("quote"), std::string::npos) << error.what();
    }
    EXPECT_EQ(ReadWhole(At("disc.iso")), "the one before");
    EXPECT_FALSE(std::filesystem::exists(At("disc.iso.partial")));
    EXPECT_THROW(UnpackedImage(At("disc.iso")), std::exception);
}

}  // namespace
}  // namespace mip
