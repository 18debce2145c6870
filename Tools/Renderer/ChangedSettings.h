#pragma once

#include <string>
#include <vector>

#include "CVstHost.h"

namespace tarv::host {

/// The normalised values of all parameters of an effect, in their order.
std::vector<float> settingsOf(const CVstHost& host);

/// The options `--set NAME=VALUE`, one for each parameter whose value is another one than in `before`, blanks between
/// them. A value is the plug-in's own text with its unit where that text is read as the same value, and a number from
/// 0 to 1 otherwise. Empty when nothing differs. May set parameters, and gives them back.
std::string changedSettings(CVstHost& host, const std::vector<float>& before);

}  // namespace tarv::host
