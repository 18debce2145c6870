#pragma once

#include "Core/CCheckedObject.h"
#include "Core/CStreams.h"

namespace tarv {

/// An item of a parameter's string map, counted by the elements that use its id.
class CAudioParamDataItem : public CCheckedObject {
public:
    virtual CAudioParamDataItem* clone() const = 0;
    [[nodiscard]] virtual CError* load(CInputStream& stream) = 0;
    [[nodiscard]] virtual CError* save(COutputStream& stream) const = 0;
    virtual uint32_t type() const = 0;

    /// Elements that hold the item's id.
    int32_t uses = 1;
};

/// Type 1: a text.
class CAudioParamDataItemString : public CAudioParamDataItem {
public:
    static constexpr uint32_t kType = 1;

    CAudioParamDataItemString() = default;
    explicit CAudioParamDataItemString(const CString& text) : text_(text) {}
    CAudioParamDataItem* clone() const override;
    [[nodiscard]] CError* load(CInputStream& stream) override;
    [[nodiscard]] CError* save(COutputStream& stream) const override;
    uint32_t type() const override { return kType; }
    const CString& text() const { return text_; }

private:
    CString text_;
};

}  // namespace tarv
