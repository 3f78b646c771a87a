#include <gtest/gtest.h>

#include "catalogue/modCarInfo.h"
#include "catalogue/modMDB.h"
#include "tests/native/catalogue/CatalogueWorkshop.h"
#include "text/TextTools.h"

namespace mip {
namespace {

class CarInfoTest : public testing::Test {
  protected:
    CarInfoTest() { program_.Settings.Columns = {10, 20, 10, 4, 4, 4, 4, 4, 4}; }

    /// A manual folder on the disc; `lines` replace or add to the usual ones.
    void PutManual(const std::wstring& folder, const std::string& pubNo, const std::string& version,
                   const std::string& lines = "") {
        shop_.Tree.PutFile(L"D:\\" + folder + L"\\car_info.ci",
                           "[CAR_INFO]\r\nPub_No=" + pubNo + "\r\nVersion=" + version + "\r\n" + lines +
                               "Model_desc=Kombi\r\nModel_ID=KX1\r\nLang=EN\r\nLdup=1\r\nYear=2019\r\nCountry=GB\r\n");
    }

    void PutInstalled(const std::wstring& pubNo, const std::wstring& version, const std::wstring& adjust = L"0") {
        InstalledRecord record = SampleRecord(1);
        record.Pub_No = pubNo;
        record.Version = version;
        record.INSPath = L"C:\\Manuals\\" + pubNo;
        record.Adjust_flg = adjust;
        ASSERT_TRUE(InsertInstalledRecord(*program_.CatalogDb, record, L"0"));
    }

    const DiscCatalogueRecord& Scanned(const std::wstring& folder) {
        program_.DiscCatalogue.Clear();
        EXPECT_TRUE(ReadCatalogueRecord(program_, folder));
        return program_.DiscCatalogue.Records.back();
    }

    CatalogueWorkshop shop_;
    Program& program_ = shop_.Program();
};

TEST_F(CarInfoTest, ScanReadsEveryFolderThatHasACatalogueFile) {
    PutManual(L"A 1", "KA100E", "3", std::string("Kubun=整備") + '\0' + "cut\r\n");
    PutManual(L"b", "KB100E", "1");
    shop_.Tree.PutFile(L"D:\\programs\\readme.txt");
    shop_.Tree.PutFile(L"D:\\car_info.ci", "[CAR_INFO]\r\n");
    program_.ModelOrder.Entries.push_back({L"KX1", L"Kombi", 7});
    for (int run = 0; run < 2; ++run) {  // a second run starts afresh
        ASSERT_TRUE(ScanDiscCatalogue(program_));
        ASSERT_EQ(program_.DiscCatalogue.LastIndex(), 2);
    }
    const auto expected = Make<DiscCatalogueRecord>(
        Selection::Candidate, L"KA100E", L"3", L"Kombi", L"KX1", L"EN", L"1", L"2019", L"整備", L"GB", std::int16_t{7},
        InstallKind::Full, InstallState::New, L"D:\\A 1\\install\\condense\\manual.zip", L"D:\\A 1\\install\\compare",
        false, ManualForm::Archive, L"", L"A 1");
    EXPECT_EQ(program_.DiscCatalogue.Records[1], expected);
    EXPECT_EQ(program_.DiscCatalogue.Records[0], DiscCatalogueRecord{});
    shop_.Tree.PutFile(L"D:\\b\\contents\\KB100E.pdf");
    const DiscCatalogueRecord& pdf = Scanned(L"b");
    EXPECT_EQ(pdf.PdfForm, ManualForm::Pdf);
    EXPECT_EQ(pdf.SourcePath, L"D:\\b");
    EXPECT_EQ(pdf.ComparePath, L"");
}

TEST_F(CarInfoTest, ManualsAreClassifiedAgainstTheInstalledCopy) {
    using enum Selection;
    using InstallKind::Full, InstallKind::Differential, InstallState::New, InstallState::Update, InstallState::Nothing;
    enum Copy { None, NoFolder, NoIndex, Whole, WholePdf };
    const struct {
        const char* Label;
        Copy Installed;
        const wchar_t* InstalledVersion;
        const wchar_t* Adjust;
        const char* DiscVersion;
        bool DiscPdf;
        int Differences;  // files in the comparison set, -1: no such set
        Selection Flag;
        InstallKind Kind;
        InstallState State;
    } cases[] = {
        {"new", None, L"", L"", "1", false, 1, Candidate, Full, New},
        {"same version", Whole, L"3", L"0", "3", false, 1, UpToDate, {}, Nothing},
        {"older on disc", Whole, L"3", L"0", "2", false, 1, UpToDate, {}, Nothing},
        {"next version, differences", Whole, L"3", L"0", "4", false, 2, Candidate, Differential, Update},
        {"next version, no differences", Whole, L"3", L"0", "4", false, 0, Candidate, Full, Update},
        {"next version, no comparison set", Whole, L"3", L"0", "4", false, -1, Candidate, Full, Update},
        {"two versions on", Whole, L"3", L"0", "5", false, 2, Candidate, Full, Update},
        {"folder gone, same version", NoFolder, L"3", L"0", "3", false, 1, Candidate, Full, Update},
        {"start page gone, older on disc", NoIndex, L"3", L"0", "2", false, 1, Candidate, Full, Update},
        {"marked for adjustment", Whole, L"3", L"1", "3", false, 1, Candidate, Full, Update},
        {"marked as number", Whole, L"3", L" 01", "3", false, 1, Candidate, Full, Update},
        {"mark unreadable", Whole, L"3", L"x", "3", false, 1, UpToDate, {}, Nothing},
        {"PDF on disc, next version", Whole, L"3", L"0", "4", true, 2, Candidate, Full, Update},
        {"PDF installed, archive on disc", WholePdf, L"3", L"0", "4", false, 2, Candidate, Full, Update},
    };
    int number = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(test.Label);
        const std::wstring folder = L"M" + std::to_wstring(number);
        const std::string pubNo = "KM" + std::to_string(10 + number++) + "9E";
        const std::wstring widePubNo = FromUtf8(pubNo);
        const std::wstring copy = L"C:\\Manuals\\" + widePubNo;
        PutManual(folder, pubNo, test.DiscVersion);
        const auto put = [&](bool wanted, const std::wstring& path) {
            if (wanted) {
                shop_.Tree.PutFile(path);
            }
        };
        const std::wstring source = L"D:\\" + folder;
        put(test.DiscPdf, source + L"\\contents\\" + widePubNo + L".pdf");
        put(test.Differences > 0, source + L"\\install\\compare\\1");
        if (test.Differences == 0) {
            shop_.Tree.PutFolder(source + L"\\install\\compare\\empty");
        }
        if (test.Installed != None) {
            PutInstalled(widePubNo, test.InstalledVersion, test.Adjust);
        }
        put(test.Installed == NoIndex, copy + L"\\contents\\other.html");
        put(test.Installed == Whole || test.Installed == WholePdf, copy + L"\\contents\\index.html");
        put(test.Installed == WholePdf, copy + L"\\contents\\" + widePubNo + L".pdf");
        const DiscCatalogueRecord& record = Scanned(folder);
        EXPECT_EQ(record.InstallFlag, test.Flag);
        EXPECT_EQ(record.InstallKind, test.Kind);
        EXPECT_EQ(record.InstallState, test.State);
        EXPECT_FALSE(record.DoneFlag);
        const bool considered = record.InstallFlag == Selection::Candidate;
        EXPECT_EQ(record.InstalledPath, considered && test.Installed != None ? copy : L"");
        EXPECT_EQ(record.FolderName, considered ? folder : L"");
    }
}

TEST_F(CarInfoTest, SupersededPublicationIsNotOffered) {
    for (const wchar_t* installed : {L"ABCD5XY", L"EFGH2XY", L"IJKL9", L"IJKL:", L"MNOP3XX"}) {
        PutInstalled(installed, L"1");
    }
    const struct {
        const char* PubNo;
        bool Superseded;
    } cases[] = {{"ABCD3XY", true},  {"ABCD4XY", true},  {"ABCD5XY", false}, {"ABCD6XY", false},
                 {"EFGH3XY", false}, {"IJKL8", true},    {"IJKL9", false},   {"MNOP2XY", false},
                 {"abcd0xy", true},  {"ABCDXXY", false}, {"ABCD", false}};
    for (const auto& [pubNo, superseded] : cases) {
        PutManual(L"S", pubNo, "9");
        const DiscCatalogueRecord& record = Scanned(L"S");
        EXPECT_EQ(record.InstallFlag == Selection::Superseded, superseded) << pubNo;
        EXPECT_TRUE(!superseded || record.InstallState == InstallState::Nothing) << pubNo;
    }
}

TEST_F(CarInfoTest, LengthsAreCheckedTrimmedAndReportedAsRead) {
    EXPECT_TRUE(CheckFieldLength(L"  1234  ", 4, false));
    EXPECT_FALSE(CheckFieldLength(L"12345", 4, false));
    EXPECT_FALSE(CheckFieldLength(L"   ", 4, false));
    EXPECT_TRUE(CheckFieldLength(L"   ", 0, true));
    EXPECT_FALSE(CheckFieldLength(L"1", 0, true));

    PutManual(L"L", "K1", "1");
    const DiscCatalogueRecord whole = Scanned(L"L");
    const struct {
        std::wstring DiscCatalogueRecord::*Field;
        const wchar_t* Value;
        const wchar_t* Text;
    } cases[] = {
        {&DiscCatalogueRecord::Pub_No, L" 12345678901", L"PubNo =  12345678901 [ Pub_No length = 12 ]"},
        {&DiscCatalogueRecord::Model_desc, L"", L"PubNo = K1 [ Model_desc length = 0 ]"},
        {&DiscCatalogueRecord::Model_ID, L"  ", L"PubNo = K1 [ Model_ID length = 2 ]"},
        {&DiscCatalogueRecord::Version, L"12345", L"PubNo = K1 [ Version length = 5 ]"},
        {&DiscCatalogueRecord::Year, L"", L"PubNo = K1 [ Year length = 0 ]"},
        {&DiscCatalogueRecord::Kubun, L"整備整備整", L"PubNo = K1 [ Kubun length = 5 ]"},
        {&DiscCatalogueRecord::Country, L"", L"PubNo = K1 [ Country length = 0 ]"},
        {&DiscCatalogueRecord::Lang, L"ENGLI", L"PubNo = K1 [ Lang length = 5 ]"},
        {&DiscCatalogueRecord::Ldup, L"", L"PubNo = K1 [ Ldup length = 0 ]"},
    };
    EXPECT_EQ(ValidateCatalogueRecord(program_.Settings.Columns, whole), L"");
    for (const auto& [field, value, text] : cases) {
        DiscCatalogueRecord record = whole;
        record.*field = value;
        EXPECT_EQ(ValidateCatalogueRecord(program_.Settings.Columns, record), text);
    }
}

TEST_F(CarInfoTest, FirstFaultStopsTheScan) {
    PutManual(L"1", "KA100E", "3");
    PutManual(L"Folder 3", "KC100E", "3");
    constexpr wchar_t lengthError[] = L"car_info.ci data length Error program abort";
    constexpr wchar_t dataError[] = L"car_info.ci data Error program abort";
    const struct {
        const char* PubNo;
        const char* Version;
        const wchar_t* Caption;
        const wchar_t* Text;
    } cases[] = {
        {"KB100E-long", "3", lengthError, L"PubNo = KB100E-long [ Pub_No length = 11 ]"},
        {"KB100E", "3a", dataError, L"PubNo = KB100E [ Folder 2: Version = 3a ]"},
        {"KB100E", "40000", dataError, L"PubNo = KB100E [ Folder 2: Version = 40000 ]"},
        {"KB101E", "3", dataError, L"PubNo = KB101E [ Folder 2: installed Version = B ]"},
        {"KB102E", "32767", dataError, L"PubNo = KB102E [ Folder 2: Version = 32767, installed Version = -2 ]"},
        {nullptr, "", dataError, L"PubNo =  [ Folder 2: car_info.ci cannot be read ]"},
    };
    program_.Settings.Columns.Version = 5;
    for (const auto& [pubNo, version] :
         std::map<std::wstring, const wchar_t*>{{L"KB100E", L"1"}, {L"KB101E", L"B"}, {L"KB102E", L"-2"}}) {
        PutInstalled(pubNo, version);
        shop_.Tree.PutFile(L"C:\\Manuals\\" + pubNo + L"\\contents\\index.html");
    }
    for (const auto& test : cases) {
        SCOPED_TRACE(ToUtf8(test.Text));
        if (test.PubNo != nullptr) {
            PutManual(L"Folder 2", test.PubNo, test.Version);
        } else {
            shop_.Tree.Deny(L"D:\\Folder 2\\car_info.ci");
        }
        EXPECT_FALSE(ScanDiscCatalogue(program_));
        const DiscCatalogue& catalogue = program_.DiscCatalogue;
        EXPECT_TRUE(catalogue.CatalogueErrorFlag);
        EXPECT_EQ(catalogue.CatalogueErrorCaption, test.Caption);
        EXPECT_EQ(catalogue.CatalogueErrorText, test.Text);
        EXPECT_EQ(catalogue.LastIndex(), 2);
        EXPECT_EQ(catalogue.Records[1].InstallState, InstallState::New);
        EXPECT_NE(program_.Log.Text().find(L"Folder 2: " + catalogue.CatalogueErrorText), std::wstring::npos);
    }
}

TEST_F(CarInfoTest, DatabaseErrorStopsTheScanWithItsMessagesAMissingDiscWithout) {
    PutManual(L"1", "KA100E", "3");
    shop_.Tree.PutFile(L"D:\\programs\\setup\\SysDir\\M09.ini", "[MESSAGE]\r\nM020=no database\r\nM024=stopped\r\n");
    for (const bool inLaterRevision : {true, false}) {
        if (inLaterRevision) {
            PutInstalled(L"KA104E", L"1");
            ASSERT_EQ(program_.CatalogDb->Pcls_MdbExecute(L"UPDATE M_manage SET INSDate='x' WHERE Pub_No='KA104E'"),
                      MdbOk);
        } else {
            program_.CatalogDb = std::make_unique<clsMDB>(shop_.Platform);
        }
        EXPECT_FALSE(ScanDiscCatalogue(program_));
        EXPECT_EQ(program_.DiscCatalogue.CatalogueErrorCaption, L"no database");
        EXPECT_EQ(program_.DiscCatalogue.CatalogueErrorText, L"stopped");
    }
    JetStandIn jet(shop_);
    JetStandIn::TakeOver(shop_, Workshop::MdbPath);
    ASSERT_TRUE(program_.CatalogDb->Pcls_MdbOpen(Workshop::MdbPath));
    jet.OnSent = [] { throw std::bad_alloc(); };
    EXPECT_FALSE(ScanDiscCatalogue(program_));
    EXPECT_EQ(program_.DiscCatalogue.CatalogueErrorText, L"PubNo = KA100E [ 1 ]");
    EXPECT_NE(program_.Log.Text().find(L"classifying a manual of the disc: std::bad_alloc"), std::wstring::npos);
    shop_.Tree.DriveOf(L"D:\\")->Present = false;
    EXPECT_FALSE(ScanDiscCatalogue(program_));
    EXPECT_EQ(program_.DiscCatalogue.CatalogueErrorCaption, L"") << "a disc that cannot be listed has no text here";
}

}  // namespace
}  // namespace mip
