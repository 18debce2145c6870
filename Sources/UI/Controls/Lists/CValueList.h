#pragma once

#include "Core/CObject.h"
#include "UI/Text/CDynamicList.h"

namespace tarv {

/// Titles and values for other controls: arrays of controls, rulers, popup lists (`ui:value-list-manual`). The items
/// are the `content` children, each of a `title` and a `value` (without one, its position from 0). Sends
/// `values-changed` when they become others; `update-values` reads them anew. The editor's thread.
///
/// Attributes:
///   add-empty-value   begins with an item "---", whose value is 1 less than that of the next one
///   is-hide-reserve   leaves out items titled "Reserve": states without a name
///   value-count       most items, the empty one not counted; negative (default): as many as there are
///   max-capacity      most items of all; negative (default): no limit
///   separator-char    stands between the titles of `titles`; default ";"
///   titles            set by the list: all titles in one text
class CValueList : public CObject, public CDynamicList {
public:
    struct CItem {
        CString title;          ///< with marks; what a user has typed stands in it by CViewReader::withMarks
        double value = 0.0;     ///< what a param gets by this item: in the unit that a person reads
        bool isDimmed = false;  ///< what does not exist at present
        bool operator==(const CItem&) const = default;
    };
    using CItems = CArray<CItem, 1>;

    static constexpr const char* kChangedEvent = "values-changed";
    static constexpr const char* kEmptyTitle = "---";
    static constexpr const char* kReserveTitle = "Reserve";

    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* finishInit() override;

    int32_t count() const { return items_.count(); }
    const CItem& operator[](int32_t index) const { return items_[index]; }
    /// The first item of a value, -1 for none.
    int32_t indexOf(double value) const;
    /// The item of a value. A value that has none gives a dimmed item by itself, so that what is stored shows.
    CItem itemOf(double value) const;
    /// Items that code gives, in place of those of the children; up to the next `update-values`.
    [[nodiscard]] CError* setItems(CItems items);

    /// Rows of the items; the id is the position. There are no lists below.
    [[nodiscard]] CError* generateSubList(const CString& parentId, CDynamicListRows& rows) override;

protected:
    /// Reads the items anew. May destroy this object.
    [[nodiscard]] virtual CError* updateValues();
    /// Without items, for those that a class reads next: room of former ones.
    CItems roomForItems() { return std::move(room_); }
    /// Takes what a class has read, by the attributes above. May destroy this object.
    [[nodiscard]] CError* takeItems(CItems items);
    /// The item of a value that isn't among the items; its title is not empty.
    virtual CItem missingItem(double value) const;
    /// Most items that a class need make.
    int32_t itemLimit() const;
    /// What a user has typed, as a title or a part of one.
    CString typed(const CString& text) const;
    [[nodiscard]] CError* listChanged();

private:
    uint16_t separator() const;
    CString joinedTitles() const;
    void keepRoom(CItems& items);

    CItems items_;
    CItems room_;  ///< empty
    CAttributeMap changed_;
    uint16_t titlesSeparator_ = 0;  ///< between those of `titles`
};

}  // namespace tarv
