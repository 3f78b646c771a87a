#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "publish/FileTools.h"
#include "publish/MakeDisc.h"
#include "publish/PathText.h"
#include "tests/ScratchFolder.h"

namespace mip {

/// The files below a folder, with their bytes.
inline std::map<std::string, std::string> FilesOf(const std::filesystem::path& root) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) {
            files[Utf8Of(std::filesystem::relative(entry.path(), root))] = ReadWhole(entry.path());
        }
    }
    return files;
}

/// What the test's description says of a manual.
struct TestManual {
    std::string Folder;
    std::string PubNo;
    std::string Version = "2";
    bool Pdf = false;
};

/// A publisher's computer: the delivered program, companions, and sources that are written here.
class PublisherTest : public testing::Test {
  protected:
    void SetUp() override {
        Put("program/ManualInstall.exe", "program");
        CopyTree(std::filesystem::path(MIP_DISC_FOLDER) / "SysDir", At("program/SysDir"));
        Put("programs/man_manager/setup.exe", "setup");
        Put("index.html", "<html>\n<!-- manuals -->\n</html>\n");
        Put("install.html", "<html></html>\n");
    }

    std::filesystem::path At(const std::string& name) const { return scratch_.Path() / PathOf(FromUtf8(name)); }
    void Put(const std::string& name, const std::string& bytes) const { WriteWhole(At(name), bytes, DateTime{}); }

    /// Writes an HTML manual's pages or a PDF.
    void PutSource(const TestManual& manual) const {
        if (manual.Pdf) {
            return Put("sources/" + manual.Folder, "%PDF-1.4 " + manual.PubNo);
        }
        Put("sources/" + manual.Folder + "/index.html", "entrance");
        Put("sources/" + manual.Folder + "/contents/index.html", "contents of " + manual.PubNo);
        Put("sources/" + manual.Folder + "/contents/目次.html", std::string(5000, 'x'));
    }

    static std::string Section(const TestManual& manual) {
        return "[manual " + manual.Folder + "]\nPub_No = " + manual.PubNo + "\nVersion = " + manual.Version +
               "\nModel_desc = フユネ\nModel_ID = TLS\nLang = JA\nYear = 2021\nKubun = \"整備書\"\nCountry = JP\n"
               "Issued = 2023/07\nSource = " +
               manual.Folder + "\nForm = " + (manual.Pdf ? "pdf\n" : "html\n");
    }
    static std::string DescriptionOf(const std::vector<TestManual>& manuals) {
        std::string text =
            "# A disc\n[disc]\nLayout = 2\nDate = 2023/10/02 08:00:00\nStartPage = index.html\nGuide = install.html\n"
            "[models]\nTLS = Talis\n";
        for (const TestManual& manual : manuals) {
            text += Section(manual);
        }
        return text;
    }

    std::vector<std::string> Make(const std::string& description, const std::string& disc,
                                  const std::string& base = {}) const {
        const DiscParts parts{At("."), At("sources"), At("program"), At("programs"), base.empty() ? "" : At(base)};
        return MakeDisc(ParseDiscDescription(description), parts, At(disc));
    }

    ScratchFolder scratch_;
};

}  // namespace mip
