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

}  // namespace tarv
