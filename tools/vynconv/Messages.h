#pragma once

#include "tools/vynconv/Losses.h"

#include <string>
#include <string_view>

namespace vynconv {

/// `text` as it can be shown: control bytes, and what is not ASCII in a text that is not UTF-8, are written "\xNN".
std::string printable(std::string_view text);

/// Tells where a loss stood, as one clause.
std::string describe(Loss const& loss);

/// Tells what an input lost, as one clause. There must be a loss.
std::string describe(Losses const& losses);

/// Writes a line to standard error.
void printMessage(std::string const& text);

} // namespace vynconv
