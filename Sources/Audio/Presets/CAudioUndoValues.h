#pragma once

#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

/// What a step of the history changed of one parameter: the elements whose numbers (or texts) differ, and the element
/// counts of groups that differ, each before and after the step. Everything else of the parameter is not part of the
/// step. No lock; the history's lock guards it.
class CAudioUndoValues {
public:
    enum class CSide { Before, After };

    CAudioUndoValues() = default;
    /// The difference of two values of one parameter.
    CAudioUndoValues(const CAudioParamData& before, const CAudioParamData& after);

    bool isEmpty() const { return elements_.isEmpty() && counts_.isEmpty(); }
    /// Adds what a later part of the same step changed: the union of the elements, of each the first value before and
    /// the last value after.
    void add(CAudioUndoValues&& later);
    /// Sets the elements of the step to their values on one side, by one change for each group that differs from them.
    /// Other elements keep their values. A group keeps its count if something else changed it since the step. Takes the
    /// parameter's lock; does not notify listeners. Returns whether a change was posted.
    bool assignTo(CAudioParam& param, CSide side) const;
    /// The text of element 0 of group 0, if the step changed it; otherwise null.
    const CString* firstText(CSide side) const;

private:
    /// One element; its numbers (or text) before and after lie in `numbers_` (or `texts_`) from `place` on. One beyond
    /// the count of its group is at its default.
    struct CElement {
        int32_t group = 0;
        int32_t element = 0;
        int32_t place = 0;
        bool isHeldBefore = false;  ///< the group holds the element
        bool isHeldAfter = false;
        bool isHeldOn(CSide side) const { return side == CSide::Before ? isHeldBefore : isHeldAfter; }
        bool isBehind(const CElement& other) const {
            return group != other.group ? group > other.group : element > other.element;
        }
    };
    struct CGroupCount {
        int32_t group = 0;
        int32_t before = 0;
        int32_t after = 0;
        int32_t on(CSide side) const { return side == CSide::Before ? before : after; }
    };

    void addGroup(const CAudioParamData& before, const CAudioParamData& after, const CGroupCount& count);
    /// Makes room for an element's numbers (or texts) and returns their place.
    int32_t makeRoom();
    void addElement(const CAudioUndoValues& later, const CElement& element);
    const double* numbersOn(CSide side, const CElement& element) const {
        return numbers_.data() + element.place + (side == CSide::Before ? 0 : elementSize_);
    }
    const CString& textOn(CSide side, const CElement& element) const {
        return texts_[element.place + (side == CSide::Before ? 0 : 1)];
    }
    void addCount(const CGroupCount& later);
    const CGroupCount* countOf(int32_t group) const;
    bool isPresent(const CAudioParamData& data, int32_t first, int32_t end, CSide side) const;
    int32_t countFor(const CAudioParamData& data, int32_t first, int32_t end, CSide side) const;
    bool assignGroup(CAudioParam& param, int32_t first, int32_t end, CSide side) const;

    int32_t elementSize_ = 1;
    bool isString_ = false;
    CArray<CElement, 1> elements_;  ///< by group, then element
    CArray<CGroupCount, 1> counts_;
    // Of all elements in one run each: a preset changes dozens of them at once.
    CArray<double, 2> numbers_;
    CArray<CString, 1> texts_;
};

}  // namespace tarv
