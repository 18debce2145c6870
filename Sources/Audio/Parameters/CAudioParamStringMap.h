#pragma once

#include <map>

#include "Audio/Parameters/CAudioParamDataItem.h"

namespace tarv {

/// Texts by id, with a count of the elements that use each; ids start at 1 and are not reused. Copies are deep.
class CAudioParamStringMap {
public:
    CAudioParamStringMap() = default;
    CAudioParamStringMap(const CAudioParamStringMap& other) { *this = other; }
    CAudioParamStringMap(CAudioParamStringMap&& other) noexcept { *this = std::move(other); }
    CAudioParamStringMap& operator=(const CAudioParamStringMap& other);
    CAudioParamStringMap& operator=(CAudioParamStringMap&& other) noexcept;
    ~CAudioParamStringMap() { clear(); }

    /// A new id for a text, with one use.
    int32_t add(const CString& text);
    /// A new id for a copy of another map's item; an empty text if that map has none of that id.
    int32_t copy(int32_t id, const CAudioParamStringMap& other);
    /// One more use of an id; false if there is no such id.
    bool use(int32_t id);
    /// Drops one use; the item is deleted with the last. Ignores an unknown id.
    void release(int32_t id);
    /// Deletes the items that nothing uses.
    void dropUnused();
    /// The text of an id or null.
    const CString* get(int32_t id) const;
    int32_t count() const { return static_cast<int32_t>(items_.size()); }
    void clear();

    /// Count, then id, type and text of each, by id. Loaded items have no use yet. On failure the map is empty.
    [[nodiscard]] CError* load(CInputStream& stream);
    [[nodiscard]] CError* save(COutputStream& stream) const;

private:
    [[nodiscard]] CError* loadItem(CInputStream& stream);

    using CMap = std::map<int32_t, CAudioParamDataItem*, std::less<int32_t>,
                          CHeapAllocator<std::pair<const int32_t, CAudioParamDataItem*>>>;
    CMap items_;
    int32_t lastId_ = 0;
};

}  // namespace tarv
