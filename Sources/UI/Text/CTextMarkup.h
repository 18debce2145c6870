#pragma once

#include "UI/Text/CTextSource.h"

namespace tarv {

/// Reads the markup of texts: [B] bold, [SUP] superscript, [C1] and [C2] the colours of these numbers, each up to its
/// [/B], [/SUP], [/C1], [/C2]; [BR] breaks a line; [IMG=set#Range:Color] is an image, `#Range` and `:Color` may be left
/// out. Marks nest in any order; within several colours the innermost counts, and superscript counts more than bold. A
/// mark that is left open ends with its paragraph. What is no mark, or closes nothing, is text.
class CTextMarkup {
public:
    /// Adds the items of a text behind those of the source. A line feed ends a paragraph; other control characters but
    /// the tab are left out.
    static void append(CTextSource& source, const CString& text);
};

}  // namespace tarv
