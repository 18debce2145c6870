#include "UI/Controls/Buttons/CSelectorGroup.h"

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CColorSwatch.h"
#include "UI/Binding/CParamGroupSelector.h"

namespace tarv {

namespace {

CString textOr(const CString& text, const char* fallback) {
    return text.isEmpty() ? CString(fallback) : text;
}

}  // namespace

CError* CSelectorGroup::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CSelectorGroup::groupChanged>("group-change");
    return CSelector::initClass(descriptor);
}

CError* CSelectorGroup::init() {
    TARV_TRY(CSelector::init());
    TARV_TRY(findSelector("group-selector", selector_));
    TARV_TRY(findSelector("group-selector-opposite", opposite_));
    if (selector_) {
        listenObject(selector_->fullName(), CParamGroupSelector::kChangeEvent, "group-change");
    }
    const auto* client =
        findObjectOf<CAudioInterfaceClient>(textOr(getAttrString("interface-client"), "ui.interface-client"));
    if (client && getAttrString("button-title-list").isEmpty()) {
        listenObject(client->fullName(), "update-group-count", "rebuild-buttons");
        listenObject(client->fullName(), "engine-state", "rebuild-buttons");
    }
    return nullptr;
}

CError* CSelectorGroup::findSelector(const char* attribute, CParamGroupSelector*& selector) const {
    const CString& path = getAttrString(attribute);
    selector = path.isEmpty() ? nullptr : findObjectOf<CParamGroupSelector>(path);
    if (!selector && !path.isEmpty()) {
        TARV_FAIL("@tarvstr_CSelectorGroup_init_NoGroupSelector Unable to locate group selector: %1", path);
    }
    return nullptr;
}

void CSelectorGroup::readItems(CItems& items) const {
    if (!getAttrString("button-title-list").isEmpty()) {
        readTitles(items, {});
        return;
    }
    const auto* client =
        findObjectOf<CAudioInterfaceClient>(textOr(getAttrString("interface-client"), "ui.interface-client"));
    for (int32_t i = 0; client && i < client->engineState().counts.groups; ++i) {
        items.append({CString::fromInt(i + 1), static_cast<double>(i)});
    }
}

int32_t CSelectorGroup::sourceIndex() const {
    return selector_ ? selector_->groupIndex() : -1;
}

CError* CSelectorGroup::groupChanged() {
    return state() == CObjectState::Finished ? follow() : nullptr;
}

CError* CSelectorGroup::choose(int32_t index) {
    return selector_ ? selector_->setAttribute("group-index", CAttributeValue::fromInt(index)) : nullptr;
}

CError* CSelectorGroup::chooseByRight(int32_t index) {
    if (!getAttrBool("is-right-click-allowed")) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = index == sourceIndex() ? nullptr : choose(index);
    const bool isOther = !error && watch.isAlive() && opposite_ && opposite_->groupIndex() != index;
    return isOther ? opposite_->setAttribute("group-index", CAttributeValue::fromInt(index)) : error;
}

void CSelectorGroup::prepareButton(int32_t index, CAttributeMap& attributes) const {
    const auto* swatch = findObjectOf<CColorSwatch>(textOr(getAttrString("color-swatch"), "ui.color-swatch"));
    const CString* color = swatch ? swatch->color(index) : nullptr;
    attributes["group-color"] = CAttributeValue::fromString(color ? *color : CString("Button"));
    if (getAttrBool("is-outlined")) {
        attributes["image-set-range"] = CAttributeValue::fromString("Outline");
        // The colour of the face is that of the line here, and the text stands on the dark inside.
        attributes["label-color"] = CAttributeValue::fromString("FieldText");
    }
}

CString CSelectorGroup::buttonHint(int32_t index) const {
    const CString name = CString("[B]") + items()[index].title + "[/B]: ";
    return items()[index].isDimmed ? name + "no channel is in this group, see Routing." : name + getAttrString("hint");
}

}  // namespace tarv
