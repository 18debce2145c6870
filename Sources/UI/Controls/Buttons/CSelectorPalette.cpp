#include "UI/Controls/Buttons/CSelectorPalette.h"

#include "UI/Resources/CDataSetObject.h"

namespace tarv {

CError* CSelectorPalette::init() {
    TARV_TRY(CSelectorSetting::init());
    if (getAttrString("button-tag").isEmpty()) {
        TARV_TRY(setAttribute("button-tag", CString("ui:selector-palette-button")));
    }
    return nullptr;
}

void CSelectorPalette::readItems(CItems& items) const {
    const CObject* palettes = findObject("shared::pal");
    for (int32_t i = 0; palettes && i < palettes->children().count(); ++i) {
        if (dynamic_cast<const CPaletteObject*>(palettes->children()[i])) {
            items.append({palettes->children()[i]->name(), static_cast<double>(items.count())});
        }
    }
}

void CSelectorPalette::prepareButton(int32_t index, CAttributeMap& attributes) const {
    attributes["palette-name"] = CAttributeValue::fromString(items()[index].title);
}

CString CSelectorPalette::buttonHint(int32_t index) const {
    const CString& own = getAttrString("hint");
    return (own.isEmpty() ? CString() : own + " ") + "[B]" + items()[index].title + "[/B]";
}

int32_t CSelectorPalette::indexOfText(const CString& text) const {
    int32_t fallback = -1;
    for (int32_t i = 0; i < items().count(); ++i) {
        if (items()[i].title == text) {
            return i;
        }
        fallback = items()[i].title == CString("Default") ? i : fallback;
    }
    return fallback;
}

}  // namespace tarv
