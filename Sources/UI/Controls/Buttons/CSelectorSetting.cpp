#include "UI/Controls/Buttons/CSelectorSetting.h"

#include "Core/CSharedAttribute.h"

namespace tarv {

CError* CSelectorSetting::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CSelectorSetting::settingChanged>("shared-attribute-value");
    return CSelector::initClass(descriptor);
}

CError* CSelectorSetting::init() {
    TARV_TRY(CSelector::init());
    const CString& given = getAttrString("shared-attribute");
    const CString path = given.isEmpty() ? CString(defaultSetting()) : given;
    shared_ = findObjectOf<CSharedAttribute>(path);
    if (!shared_) {
        TARV_FAIL("@tarvstr_CSelectorSetting_init_NoSharedAttribute Invalid selector shared attribute '%1'.", path);
    }
    shared_->linkObserver(*this, shared_->getAttrString("attribute"), "shared-attribute-value");
    return nullptr;
}

CError* CSelectorSetting::settingChanged() {
    return state() == CObjectState::Finished ? follow() : nullptr;
}

int32_t CSelectorSetting::sourceIndex() const {
    return indexOfText(shared_->getAttrString(shared_->getAttrString("attribute")));
}

CError* CSelectorSetting::choose(int32_t index) {
    return shared_->setAttributePlain(CString(shared_->getAttrString("attribute")), textOf(index));
}

}  // namespace tarv
