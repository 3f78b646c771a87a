#pragma once

#include <cstdint>

#include "app/Program.h"
#include "app/modSysParameter.h"

namespace mip {

/// The numbers of the messages that an installation run uses.
namespace messages {
inline constexpr std::int16_t NotEnoughSpace = 22;
inline constexpr std::int16_t ExtractionFailed = 23;
inline constexpr std::int16_t WhatNow = 24;
inline constexpr std::int16_t Caption = 34;
inline constexpr std::int16_t CatalogueNotWritable = 67;
inline constexpr std::int16_t UpgradeFailed = 71;
inline constexpr std::int16_t ManualFailed = 83;
inline constexpr std::int16_t CompanionFailed = 90;
inline constexpr std::int16_t GoOnWithoutCompanion = 91;
inline constexpr std::int16_t DiscUnreadable = 97;
inline constexpr std::int16_t Unforeseen = 98;
}  // namespace messages

/// Sets the run's two result texts: what failed, and what the user can do about it.
inline void FailRun(Program& program, std::int16_t message) {
    program.Outcome.ResultMessage = GetMessageText(program, message);
    program.Outcome.ResultSubMessage = GetMessageText(program, messages::WhatNow);
}

}  // namespace mip
