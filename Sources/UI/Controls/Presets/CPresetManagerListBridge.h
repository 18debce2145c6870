#pragma once

#include "UI/Text/CTextView.h"

namespace tarv {

/// Feeds a list view of a preset manager with the names of banks or presets. The view is looked up at each use, since
/// handlers may destroy it; without one nothing happens. Thread: that of the editor.
class CPresetManagerListBridge {
public:
    struct CRow {
        CString name;
        bool isMarked = false;  ///< with a picture behind the name
        bool operator==(const CRow&) const = default;
    };
    using CRows = CArray<CRow, 4>;

    /// `owner` has the attribute `pathAttribute`, the path of the list.
    CPresetManagerListBridge(CObject& owner, const char* pathAttribute) : owner_(owner), path_(pathAttribute) {}

    /// Null without a list.
    CTextView* view() const;
    /// Makes these the rows of the list, names as plain text. The same rows again leave it as it is.
    [[nodiscard]] CError* show(const CRows& rows);
    /// -1 ends the selection. Sends no event.
    [[nodiscard]] CError* select(int32_t row);
    /// -1 for none.
    int32_t selected() const;

private:
    [[nodiscard]] CError* rebuild(CTextView& list, const CRows& rows);

    CObject& owner_;
    const CString path_;
};

}  // namespace tarv
