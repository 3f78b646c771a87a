#pragma once

#include <string>

namespace mip {

struct Program;

/// The terms of use in the user's language, else in English; Program::KeptTexts::Agreement when they cannot be read.
/// Every line ends in CR LF.
std::wstring LoadAgreementText(const Program& program);

}  // namespace mip
