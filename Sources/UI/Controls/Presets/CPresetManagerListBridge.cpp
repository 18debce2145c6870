#include "UI/Controls/Presets/CPresetManagerListBridge.h"

namespace tarv {

namespace {

constexpr const char* kMark = "[IMG=is.button#Check:Action]";

CError* addContent(CObject& paragraph, const CAttributeValue& value) {
    CAttributeMap attributes;
    attributes["value"] = value;
    CObject* content = nullptr;
    return paragraph.createChild(content, "core:object", "content", false, &attributes);
}

CError* addParagraph(CTextView& list, const CPresetManagerListBridge::CRow& row) {
    CAttributeMap attributes;
    attributes["is-paragraph"] = CAttributeValue::fromBool(true);
    attributes["title"] = CAttributeValue::fromPlainString(row.name);
    attributes["is-marked"] = CAttributeValue::fromBool(row.isMarked);
    CObject* made = nullptr;
    CError* error = list.createChild(made, "core:object", "paragraph", false, &attributes);
    if (!error && row.isMarked) {
        error = addContent(*made, attributes["title"]);
        error = error ? error : addContent(*made, CAttributeValue::fromString(kMark));
    }
    return error;
}

CArray<CObject*, 4> paragraphsOf(const CObject& list) {
    CArray<CObject*, 4> found;
    for (CObject* child : list.children()) {
        if (child->getAttrBool("is-paragraph")) {
            found.append(child);
        }
    }
    return found;
}

}  // namespace

CTextView* CPresetManagerListBridge::view() const {
    const CString& path = owner_.getAttrString(path_);
    return path.isEmpty() ? nullptr : owner_.findObjectOf<CTextView>(path);
}

CError* CPresetManagerListBridge::show(const CRows& rows) {
    CTextView* list = view();
    if (!list) {
        return nullptr;
    }
    const CArray<CObject*, 4> shown = paragraphsOf(*list);
    bool isSame = shown.count() == rows.count();
    for (int32_t i = 0; isSame && i < rows.count(); ++i) {
        isSame = rows[i] == CRow{shown[i]->getAttrString("title"), shown[i]->getAttrBool("is-marked")};
    }
    return isSame ? nullptr : rebuild(*list, rows);
}

CError* CPresetManagerListBridge::rebuild(CTextView& list, const CRows& rows) {
    for (CObject* paragraph : paragraphsOf(list)) {
        delete paragraph;
    }
    for (const CRow& row : rows) {
        if (CError* error = addParagraph(list, row)) {
            return addErrorLocation(error, __FILE__, __LINE__, owner_.fullName(), CString());
        }
    }
    list.readParagraphs();
    return nullptr;
}

CError* CPresetManagerListBridge::select(int32_t row) {
    CTextView* list = view();
    return list && list->selectedParagraph() != row
               ? list->setAttribute("selected-paragraph", CAttributeValue::fromInt(row))
               : nullptr;
}

int32_t CPresetManagerListBridge::selected() const {
    const CTextView* list = view();
    return list ? list->selectedParagraph() : -1;
}

}  // namespace tarv
