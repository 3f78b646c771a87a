#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "platform/Clock.h"
#include "platform/archive/ArchiveSystem.h"
#include "tests/ScratchFolder.h"

namespace mip {

constexpr unsigned UsCodePage = 437;
constexpr unsigned JapaneseCodePage = 932;

/// The extractor's view of this computer: the real adapter under Windows, the standard library's files elsewhere.
std::unique_ptr<ArchiveSystem> MakeTestSystem(unsigned codePage = UsCodePage);

/// A path of this computer from one that the program wrote.
std::filesystem::path PathOf(std::wstring path);

/// Relative path of every file with its content, and of every folder (with a backslash at its end).
using Tree = std::map<std::wstring, std::string>;
Tree TreeOf(const std::filesystem::path& folder);

/// Counts the turns that the message loop is given.
class CountingClock : public Clock {
  public:
    DateTime Now() override { return {}; }
    void Sleep(std::chrono::milliseconds) override {}
    void YieldToMessages() override { ++Yields; }

    int Yields = 0;
};

}  // namespace mip
