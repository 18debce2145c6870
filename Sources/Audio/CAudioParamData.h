#pragma once

#include <map>

#include "Audio/CAudioParamDataItem.h"
#include "Core/CArray.h"
#include "Core/CHeap.h"
#include "Core/CStreams.h"

namespace tarv {

class CAudioParamInfo;
struct CAudioParamChange;

/// The value of one parameter: groups of elements of elementSize numbers in real units, and for a string parameter the
/// texts whose ids the numbers are. A group holds a run of elements from 0; what it does not hold is at its default.
/// No lock of its own. apply allocates only beyond what reserve made room for.
class CAudioParamData {
public:
    /// Group index of a change that is meant for all groups.
    static constexpr int32_t kAllGroups = 9999;
    /// Largest group count and element count that a stored record or a change may ask for.
    static constexpr int32_t kGroupLimit = 1024;
    static constexpr int32_t kElementLimit = 65536;

    CAudioParamData() = default;
    CAudioParamData(const CAudioParamData& other);
    CAudioParamData(CAudioParamData&& other) noexcept;
    CAudioParamData& operator=(const CAudioParamData& other);
    CAudioParamData& operator=(CAudioParamData&& other) noexcept;
    ~CAudioParamData();

    /// Empties groups and texts and takes shape, flags and default row from `info`.
    void reset(const CAudioParamInfo& info);
    /// As reset, then fills `group` with the first default row, at least `elementHint` elements.
    void resetWithDefaults(const CAudioParamInfo& info, int32_t group, int32_t elementHint = 0);
    /// Makes room for `elements` elements of one group (or of `groups` groups: kAllGroups), so that changes within it
    /// do not allocate.
    void reserve(int32_t group, int32_t elements, int32_t groups = 8);

    bool isValid() const { return isValid_ != 0; }
    int32_t elementSize() const { return elementSize_; }
    bool isString() const { return isString_ != 0; }
    /// The storage flags of the owner's info.
    int32_t itemType() const { return itemType_; }
    int32_t groupCount() const { return groupCount_; }
    /// Elements that the group holds, 0 if it does not exist.
    int32_t elementCount(int32_t group) const { return group >= 0 && group < groupCount_ ? counts_[group] : 0; }
    /// Number `index` of an element: the stored one, otherwise the default (the row's own element if it has it, else
    /// its first). A parameter of a single group is read at group 0 whatever is asked. 0.0 when not valid.
    double value(int32_t group, int32_t element, int32_t index = 0) const;
    /// The default alone.
    double defaultValue(int32_t element, int32_t index = 0) const;
    /// The text that value() stands for; empty if there is none.
    const CString& text(int32_t group, int32_t element) const;

    /// Carries a change out. Ids of a string change are copied from the change's source pool.
    void apply(const CAudioParamChange& change);

    /// Adds a text and gives its id (the first is 1).
    int32_t addString(const CString& text);
    /// Drops one use of an id; the text goes with the last.
    void release(int32_t id);
    /// Copies a text of another store and gives its new id.
    int32_t copyString(int32_t id, const CAudioParamData& other);
    /// The text of an id, or null.
    const CString* getString(int32_t id) const;
    int32_t stringCount() const { return static_cast<int32_t>(strings_.size()); }

    /// The string map: count, then id, type and text of each. Bounded against hostile counts; on failure the map is
    /// empty.
    [[nodiscard]] CError* load(CInputStream& stream);
    [[nodiscard]] CError* save(COutputStream& stream) const;

private:
    friend class CAudioParamStorage;
    using CStringMap = std::map<int32_t, CAudioParamDataItem*, std::less<int32_t>,
                                CHeapAllocator<std::pair<const int32_t, CAudioParamDataItem*>>>;

    void clear();
    void takeFrom(CAudioParamData& other);
    void growGroups(int32_t count);
    void reserveGroup(int32_t group, int32_t elements);
    void applyToGroup(int32_t group, const CAudioParamChange& change);
    void fillDefaults(int32_t group, int32_t from, int32_t to);
    void releaseElements(int32_t group, int32_t from, int32_t to);

    int32_t elementSize_ = 1;
    int32_t isString_ = 0;
    int32_t itemType_ = 0;
    CStringMap strings_;
    int32_t lastId_ = 0;
    CArray<double*, 4> groups_;
    CArray<int32_t, 8> counts_;
    CArray<int32_t, 8> capacities_;
    int32_t groupCount_ = 0;
    int32_t isValid_ = 0;
    CArray<double, 16> defaults_;
    CStringMap defaultStrings_;
};

}  // namespace tarv
