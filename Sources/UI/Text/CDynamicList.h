#pragma once

#include "Core/CError.h"
#include "Core/CString.h"

namespace tarv {

/// Rows of a list, as CDynamicList makes them.
class CDynamicListRows {
public:
    struct CRow {
        CString text;
        CString id;               ///< given back with the choice, and to generateSubList
        bool isPlain = false;     ///< without marks, as a user has typed it
        bool hasSubList = false;  ///< choosing it opens a list beside this one
        bool isChecked = false;   ///< shown with a check mark
    };
    void add(const CString& text, const CString& id, bool hasSubList = false) {
        rows_.append({text, id, false, hasSubList, false});
    }
    /// Of a text that a user has typed.
    void addPlain(const CString& text, const CString& id, bool hasSubList = false) {
        rows_.append({text, id, true, hasSubList, false});
    }
    /// Gives the row that was added last a check mark.
    void check() { rows_.last().isChecked = true; }
    int32_t count() const { return rows_.count(); }
    const CRow& operator[](int32_t index) const { return rows_[index]; }

private:
    CArray<CRow, 1> rows_;
};

/// An object that makes the rows of a popup list on request, and of the lists below its rows. Thread: that of the
/// window.
class CDynamicList {
public:
    /// Adds the rows of the list below the row with that id; empty: of the first list. Fails for an id that it did not
    /// give.
    [[nodiscard]] virtual CError* generateSubList(const CString& parentId, CDynamicListRows& rows) = 0;

protected:
    ~CDynamicList() = default;
};

}  // namespace tarv
