#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "catalogue/clsMDB.h"
#include "tests/native/fakes/Workshop.h"

namespace mip {

class ScreensTest : public testing::Test {
  protected:
    ScreensTest() { program_.WindowTitle = L"title"; }

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

    bool Logged(const wchar_t* text) const { return program_.Log.Text().find(text) != std::wstring::npos; }

    StartedWorkshop windows_;
    Program& program_ = windows_.Program();
};

}  // namespace mip
