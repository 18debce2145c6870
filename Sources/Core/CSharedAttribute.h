#pragma once

#include <atomic>

#include "Core/CApplicationData.h"
#include "Core/CObject.h"
#include "Core/CSettingRange.h"

namespace tarv {

class CSharedAttribute;
using CSharedAttributeBridge = CApplicationDataBridge<CSharedAttribute>;

/// One attribute of this object that outlives the session and is one for all instances (`core:shared-attribute`). Its
/// text lies in a store of the user's data as a block of id 'dstr'; each change is written at once. What another object
/// writes arrives here as a change of the attribute, followed by the event `update`.
/// With `min-value` and `max-value` the setting is a number from one to the other, a whole one with `is-integer`: any
/// other text counts as `def-value`, also one that is stored.
/// Thread: that of the tree. A write elsewhere comes as a post to the thread anchor above this object, also from the
/// same thread, so that no attribute is set under the store's lock; several writes may come as one. Without an anchor
/// above, the object receives none.
class CSharedAttribute : public CObject {
public:
    ~CSharedAttribute() override;
    /// Fails without a name in `attribute`. The value is the stored one or `def-value`; nothing is written.
    [[nodiscard]] CError* init() override;
    /// Empty for a setting of any text.
    const CSettingRange& range() const { return range_; }
    using CObject::setAttribute;
    /// Called after each change of the stored attribute, which the object observes at itself.
    [[nodiscard]] CError* setAttribute(CObject* sender, const CString& name, const CAttributeValue& value) override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

protected:
    void prepareAttribute(const CString& name, CAttributeValue& value) override;

private:
    /// On the thread that writes, with the store's lock held.
    void storeWritten(CCheckedObject* sender);
    /// A post about a write has arrived.
    [[nodiscard]] CError* storedValueChanged();
    void write(const CString& text);
    [[nodiscard]] CError* takeStored();

    CApplicationData* store_ = nullptr;
    CString attribute_;
    CString key_;
    CString fallback_;
    CString known_;
    CSettingRange range_;
    bool isTaking_ = false;
    std::atomic<uint64_t> writingThread_{0};
    std::atomic<bool> isTold_{false};
    CSharedAttributeBridge bridge_{this, &CSharedAttribute::storeWritten};
};

}  // namespace tarv
