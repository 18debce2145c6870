#include "UI/Controls/Buttons/CGroupLabel.h"

#include "UI/Controls/Lists/CValueList.h"

namespace tarv {

namespace {

constexpr const char* kList = "value-list";

}  // namespace

CGroupLabel::~CGroupLabel() {
    endInput();
}

CError* CGroupLabel::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CGroupLabel::listChanged>("update-group-label");
    return CTextViewAutoScroll::initClass(descriptor);
}

CError* CGroupLabel::finishInit() {
    list_ = dynamic_cast<CValueList*>(findChild(kList));
    if (!list_) {
        TARV_TRY(makeList());
    }
    TARV_TRY(CTextViewAutoScroll::finishInit());
    listenObject(list_->fullName(), CValueList::kChangedEvent, "update-group-label");
    return listChanged();
}

CError* CGroupLabel::makeList() {
    CAttributeMap attributes;
    // A path that begins at this view means another object one step below.
    const CString& path = getAttrString("group-selector");
    const CObject* selector = path.isEmpty() ? nullptr : findObject(path);
    attributes["group-selector"] = CAttributeValue::fromString(selector ? selector->fullName() : path);
    attributes["mode"] = CAttributeValue::fromString("audio-routing-labels");
    attributes["routing-label-mode"] = CAttributeValue::fromString(getAttrString("routing-label-mode"));
    return createChildOf(list_, "ui:value-list", kList, false, &attributes);
}

CError* CGroupLabel::listChanged() {
    return setAttribute("title", list_->count() > 0 ? (*list_)[0].title : CString());
}

}  // namespace tarv
