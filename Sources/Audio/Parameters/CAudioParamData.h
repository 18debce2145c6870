#pragma once

#include "Audio/Parameters/CAudioParamStringMap.h"
#include "Core/CArray.h"

namespace tarv {

class CAudioParamInfo;
struct CAudioParamChange;

/// The value of one parameter: groups of elements of elementSize numbers in real units, and for a string parameter the
/// texts whose ids the numbers are. A group holds a run of elements from 0; what it does not hold is at its default.
/// No lock; the owner guards it. apply and assignment allocate only beyond what reserve or former values made room for.
class CAudioParamData {
public:
    /// Group index of a change that is meant for all groups.
    static constexpr int32_t kAllGroups = 9999;
    /// Groups and elements that a stored record or a change may reach.
    static constexpr int32_t kGroupLimit = 1024;
    static constexpr int32_t kElementLimit = 65536;

    CAudioParamData() = default;
    CAudioParamData(const CAudioParamData& other) { *this = other; }
    CAudioParamData(CAudioParamData&& other) noexcept { *this = std::move(other); }
    CAudioParamData& operator=(const CAudioParamData& other);
    CAudioParamData& operator=(CAudioParamData&& other) noexcept;
    ~CAudioParamData() { freeGroups(); }

    /// Empties groups and texts and takes shape, flags and default row from `info`.
    void reset(const CAudioParamInfo& info);
    /// As reset, then fills `group` with the first default row, at least `elementHint` elements.
    void resetWithDefaults(const CAudioParamInfo& info, int32_t group, int32_t elementHint = 0);
    /// Makes room for `elements` elements of one group (kAllGroups: of `groups` groups), so that changes within it do
    /// not allocate.
    void reserve(int32_t group, int32_t elements, int32_t groups = 8);

    bool isValid() const { return isValid_ != 0; }
    int32_t elementSize() const { return elementSize_; }
    bool isString() const { return isString_ != 0; }
    /// The storage flags of the owner's info.
    int32_t itemType() const { return itemType_; }
    int32_t groupCount() const { return groupCount_; }
    /// Elements that the group holds, 0 if it does not exist.
    int32_t elementCount(int32_t group) const {
        return group >= 0 && group < groupCount_ ? groups_[group].elementCount : 0;
    }
    /// Number `index` of an element: the stored one, otherwise the default (the row's own element if it has it, else
    /// its first). A parameter of a single group is read at group 0 whatever `group` is. 0.0 when not valid, and for an
    /// index outside the element.
    double value(int32_t group, int32_t element, int32_t index = 0) const;
    /// The stored number, or id of a text, of an element that the group holds; a parameter of a single group is not
    /// read at group 0 for others.
    double storedNumber(int32_t group, int32_t element, int32_t index) const {
        return groups_[group].values[element * elementSize_ + index];
    }
    /// The default of a number.
    double defaultValue(int32_t element, int32_t index = 0) const;
    /// The text of an element of a string parameter; empty if there is none.
    CString text(int32_t group, int32_t element) const;

    /// Whether a group holds the same elements with the same numbers, bit for bit, or the same texts, as one of another
    /// store of this shape. A group that does not exist holds none.
    bool isSameGroup(int32_t group, const CAudioParamData& other, int32_t otherGroup) const;
    /// The same of all groups.
    bool isSame(const CAudioParamData& other) const;
    /// Clamps every number to the range of `info`; what is not a number becomes the default.
    void clampTo(const CAudioParamInfo& info);

    /// A new value whose group 0 is a copy of one group.
    CAudioParamData onlyGroup(int32_t group, const CAudioParamInfo& info) const;

    /// Applies a change; one whose shape does not fit is ignored. Ids of a string change are copied from the
    /// change's source pool.
    void apply(const CAudioParamChange& change);
    /// Whether shape and group of a change fit, so that apply does not ignore it.
    bool takes(const CAudioParamChange& change) const;

    /// Adds a text and returns its id (the first is 1).
    int32_t addString(const CString& text) { return strings_.add(text); }
    /// Drops one use of an id; the text is deleted with the last.
    void release(int32_t id) { strings_.release(id); }
    /// Copies a text of another store and returns its new id.
    int32_t copyString(int32_t id, const CAudioParamData& other) { return strings_.copy(id, other.strings_); }
    /// The text of an id, or null.
    const CString* getString(int32_t id) const { return strings_.get(id); }
    int32_t stringCount() const { return strings_.count(); }

    /// The string map alone, as the storage record holds it.
    [[nodiscard]] CError* load(CInputStream& stream) { return strings_.load(stream); }
    [[nodiscard]] CError* save(COutputStream& stream) const { return strings_.save(stream); }

private:
    friend class CAudioParamStorage;

    struct CGroup {
        double* values = nullptr;  ///< room for `capacity` numbers
        int32_t capacity = 0;
        int32_t elementCount = 0;
    };

    void freeGroups();
    void emptyGroups();
    void growGroups(int32_t count);
    void reserveGroup(int32_t group, int32_t elements);
    void applyToGroup(CGroup& group, const CAudioParamChange& change);
    void fillDefaults(CGroup& group, int32_t from, int32_t to);
    void releaseElements(const CGroup& group, int32_t from, int32_t to);

    int32_t elementSize_ = 1;
    int32_t isString_ = 0;
    int32_t itemType_ = 0;
    int32_t isValid_ = 0;
    CAudioParamStringMap strings_;
    // Groups beyond groupCount_ keep their room for later.
    CArray<CGroup, 4> groups_;
    int32_t groupCount_ = 0;
    CArray<double, 16> defaults_;
    CAudioParamStringMap defaultStrings_;
};

}  // namespace tarv
