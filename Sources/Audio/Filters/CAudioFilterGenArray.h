#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// One entry of an array: the generator at the path `fltgen`, and its position `index`.
class CAudioFilterGenArrayItem : public CObject {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* initChildren() override;

    /// Null until the children are initialised.
    const CAudioFilterGen* generator() const { return generator_; }
    int32_t index() const { return index_; }

    /// The highest position that an item may take.
    static constexpr int32_t kMaxIndex = 1023;

private:
    const CAudioFilterGen* generator_ = nullptr;
    int32_t index_ = 0;
};

/// Maps the number of a filter type to a generator. Read-only once finished, then safe from any thread.
class CAudioFilterGenArray : public CObject {
public:
    [[nodiscard]] CError* finishInit() override;

    int32_t count() const { return generators_.count(); }
    /// The generator at a position; null in a hole, below 0 and beyond the end, which acts like a bypass.
    const CAudioFilterGen* at(int32_t index) const {
        return index >= 0 && index < generators_.count() ? generators_[index] : nullptr;
    }

private:
    CArray<const CAudioFilterGen*, 8> generators_;
};

}  // namespace tarv
