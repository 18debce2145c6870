#pragma once

#include "Core/CString.h"

namespace tarv {

/// What may be typed into a field. A value.
struct CTextEditRules {
    CString acceptChars;         ///< characters that it takes; empty: all
    int32_t maxLength = 0;       ///< of each paragraph, in characters; 0: no limit
    bool isAcceptEnter = false;  ///< Enter ends a paragraph of the text
    bool isAcceptTab = false;    ///< Tab is a character of the text

    /// A field of numbers: it takes all figures and ".", and fewer letters than figures (those of units).
    bool isNumber() const;
    /// What of a text may enter the field. Left out are characters that it does not take, control characters and
    /// characters beyond 16 bits, both of whose halves go. Line breaks of any kind become line feeds; where Enter is no
    /// character, a text ends at the first one that has text before it. A tab counts as a blank where it is no
    /// character. In a field of numbers "," counts as ".", and a true minus as "-".
    CString filter(const CString& text) const;

private:
    uint16_t converted(uint16_t unit, bool isOfNumber) const;
    bool takes(uint16_t unit) const;
};

}  // namespace tarv
