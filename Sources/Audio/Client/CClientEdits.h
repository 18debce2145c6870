#pragma once

#include "Audio/Client/CClientSender.h"
#include "Audio/Client/CInterfaceUndo.h"

namespace tarv {

/// Packs the messages by which an editor sets elements of a parameter. The editor's thread.
class CClientEdits {
public:
    explicit CClientEdits(const CClientSender& sender) : sender_(sender) {}

    /// `elements` times `elementSize` numbers, element after element. Places and counts below 0 or beyond what a
    /// parameter holds fail.
    [[nodiscard]] CError* setNumbers(const CString& param, int32_t group, int32_t first, const double* numbers,
                                     int32_t elements, int32_t elementSize, const CInterfaceUndo& undo,
                                     bool isReplacing) const;
    [[nodiscard]] CError* setTexts(const CString& param, int32_t group, int32_t first, const CTextList& texts,
                                   const CInterfaceUndo& undo, bool isReplacing) const;

private:
    /// `put(COutputStream&)` writes the elements.
    template <class Put>
    [[nodiscard]] CError* send(const CString& param, int32_t group, int32_t first, int32_t count,
                               const CInterfaceUndo& undo, bool isReplacing, Put&& put) const;

    const CClientSender& sender_;
};

}  // namespace tarv
