#pragma once

#include <string>

#include "CVstHost.h"

namespace tarv::host {

/// Finds the normalised value behind a text such as "+3dB" or "4x". A plug-in only gives the text of a position, so
/// the display is searched: a word by the stretch of positions that shows it, a number by halving, where the middle of
/// the stretch that shows it (or the line between two neighbours, for a number finer than the display) is taken.
class CParameterText {
public:
    explicit CParameterText(CVstHost& host);

    /// Normalised value of `text`: a plain number from 0 to 1 is the position, anything else is searched in the
    /// display. False with the reason. Leaves the parameter where it was.
    bool find(int32_t index, const std::string& text, float& value, std::string& error);

private:
    bool findWord(int32_t index, const std::string& word, float& value);
    bool findNumber(int32_t index, double number, float& value, std::string& error);
    bool askPlugin(int32_t index, const std::string& text, float& value);
    std::string displayAt(int32_t index, float value);
    /// The number that a position shows; false when it shows none.
    bool numberAt(int32_t index, float value, double& number);
    /// The least position that shows at least (`beyond`: more than) a number. The display rises with the position.
    double edge(int32_t index, double number, bool beyond);
    double middle(int32_t index, double number);

    CVstHost& host_;
    bool hasDisplayRequest_;
};

/// Reads a number with an optional sign, point or comma, and an optional unit behind it; "k" multiplies by 1000.
bool parseNumber(const std::string& text, double& number, std::string& unit);

}  // namespace tarv::host
