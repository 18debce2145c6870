#pragma once

#include "UI/Controls/Buttons/CSelector.h"

namespace tarv {

class CSharedAttribute;

/// A selector of a setting: the shared attribute at `shared-attribute`. Thread: that of the window.
class CSelectorSetting : public CSelector {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails for a path where no shared attribute stands.
    [[nodiscard]] CError* init() override;

protected:
    /// Path of the setting where `shared-attribute` is absent.
    virtual const char* defaultSetting() const = 0;
    /// Position of a stored text, -1 for none.
    virtual int32_t indexOfText(const CString& text) const = 0;
    /// What is stored for a position.
    virtual CString textOf(int32_t index) const = 0;

    int32_t sourceIndex() const override;
    [[nodiscard]] CError* choose(int32_t index) override;

private:
    [[nodiscard]] CError* settingChanged();

    CSharedAttribute* shared_ = nullptr;
};

}  // namespace tarv
