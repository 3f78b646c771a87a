#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "app/Program.h"
#include "catalogue/clsMDB.h"
#include "tests/native/fakes/CatalogueWindows.h"
#include "tests/native/startup/Workshop.h"
#include "text/TextTools.h"

namespace mip {

/// A program past its start-up, on a computer with an empty catalogue. Every message reads "message N".
class ScreensTest : public testing::Test {
  protected:
    ScreensTest() {
        Paths& paths = program_.Paths;
        paths.ProgramFolder = L"D:\\programs\\setup";
        paths.SysDirPath = L"D:\\programs\\setup\\SysDir";
        paths.RmDirBatPath = L"D:\\programs\\setup\\SysDir\\RmDir.bat";
        paths.DiscRootPath = L"D:\\";
        paths.ProgramFilesDir = L"C:\\Program Files";
        paths.InstallDir = L"C:\\Manager";
        paths.UnZipTempPath = L"C:\\Library\\UnZipTemp";
        paths.MdbPath = L"C:\\Library\\kvx3.mdb";
        program_.Settings.McpExeName = L"Manager.exe";
        program_.Identity.LanguageCode = L"09";
        program_.WindowTitle = L"title";
        std::string messages = "[MESSAGE]\r\n";
        for (int number = 1; number <= 100; ++number) {
            const std::string digits = std::to_string(number);
            messages += "M" + std::string(3 - digits.size(), '0') + digits + "=message " + digits + "\r\n";
        }
        windows_.Tree.PutFile(paths.SysDirPath + L"\\M09.ini", messages);
        windows_.PutCatalogue(paths.MdbPath, 1);
        program_.CatalogDb = std::make_unique<clsMDB>(windows_.Platform);
        EXPECT_TRUE(program_.CatalogDb->Pcls_MdbOpen(paths.MdbPath));
    }

    /// A record of the disc catalogue, to be filled further; it becomes the current manual.
    DiscCatalogueRecord& AddManual(const std::wstring& pubNo) {
        DiscCatalogueRecord& manual = program_.DiscCatalogue.Records.emplace_back();
        manual.Pub_No = manual.FolderName = pubNo;
        manual.InstallFlag = Selection::Candidate;
        manual.InstallState = InstallState::New;
        manual.PdfForm = ManualForm::Archive;
        program_.Installation.CurrentManual = program_.DiscCatalogue.LastIndex();
        return manual;
    }

    /// The exit code with which the action ends the process, or nothing.
    std::optional<std::uint32_t> ExitCodeOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const ProcessEnded& end) {
            return end.ExitCode;
        }
        return {};
    }

    CatalogueWindows windows_;
    Program program_{windows_.Platform};
};

}  // namespace mip
