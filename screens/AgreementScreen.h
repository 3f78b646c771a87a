#pragma once

#include <string>

#include "app/Program.h"

namespace mip {

/// The terms of use in the user's language, else in English; Program::KeptTexts::Agreement when they cannot be read.
/// Every line ends in CR LF.
std::wstring LoadAgreementText(const Program& program);

}  // namespace mip
