// Where the rows of a popup list come from.

#include "UI/Text/CPopupList.h"

namespace tarv {

namespace {

/// Between the text of a row and its picture.
constexpr const char* kMarkGap = "  ";

const char* attributeOf(const CObject& item) {
    return item.getAttrString("value").isEmpty() ? "title" : "value";
}

CString textOf(const CObject& item) {
    return item.getAttrString(attributeOf(item));
}

/// What a user has typed has no marks.
bool isPlain(const CObject& item) {
    const auto found = item.attributes().find(attributeOf(item));
    return found != item.attributes().end() && found->second.isPlain();
}

bool isContent(const CObject& child) {
    return child.name().startsWith("content");
}

/// Of a paragraph: its `content` children in one text, otherwise its own.
CString paragraphOf(const CObject& paragraph) {
    CString text;
    bool hasContent = false;
    bool isBroken = false;
    for (const CObject* child : paragraph.children()) {
        if (isContent(*child)) {
            text += isBroken ? CString("[BR]") + textOf(*child) : textOf(*child);
            isBroken = child->getAttrBool("is-line-break");
            hasContent = true;
        }
    }
    return hasContent ? text : textOf(paragraph);
}

}  // namespace

const CObject* CPopupList::row(int32_t index) const {
    for (const CObject* child : children()) {
        if (child->getAttrBool("is-paragraph") && index-- == 0) {
            return child;
        }
    }
    return nullptr;
}

/// As it was given, without what stands before its picture.
CString CPopupList::rowText(int32_t index) const {
    const CString text = paragraphText(index);
    const CObject* const found = row(index);
    const bool isMarked = found && !found->children().isEmpty() && text.endsWith(kMarkGap);
    return isMarked ? text.substring(0, text.length() - CString(kMarkGap).length()) : text;
}

CError* CPopupList::addRow(const CDynamicListRows::CRow& row) {
    CAttributeMap attributes;
    attributes["is-paragraph"] = CAttributeValue::fromBool(true);
    attributes["title"] =
        row.isPlain ? CAttributeValue::fromPlainString(row.text) : CAttributeValue::fromString(row.text);
    attributes["id"] = CAttributeValue::fromPlainString(row.id);
    attributes["has-sub-list"] = CAttributeValue::fromBool(row.hasSubList);
    CObject* made = nullptr;
    TARV_TRY(createChild(made, "core:object", "paragraph", false, &attributes));
    if (row.isChecked || row.hasSubList) {
        TARV_TRY(addMarks(*made, row));
    }
    return nullptr;
}

/// The text itself may hold no marks.
CError* CPopupList::addMarks(CObject& made, const CDynamicListRows::CRow& row) {
    const char* marks = row.hasSubList ? "[IMG=is.button#ArrowRight:Action]" : "[IMG=is.button#Check:Action]";
    CAttributeMap picture;
    picture["value"] = CAttributeValue::fromString(CString(kMarkGap) + marks);
    CAttributeMap text;
    text["value"] = made.attributes().at("title");
    CObject* content = nullptr;
    TARV_TRY(made.createChild(content, "core:object", "content", false, &text));
    TARV_TRY(made.createChild(content, "core:object", "content", false, &picture));
    return nullptr;
}

CError* CPopupList::fillRows() {
    CObject* from = originalOpener();
    const CString& path = param("popup-text-source");
    CObject* source = !from ? nullptr : path.isEmpty() ? from->findChild("value-list") : from->findObject(path);
    if (!source) {
        if (!path.isEmpty()) {
            TARV_FAIL("@tarvstr_CPopupList_fillRows_NoSource Text source '%1' of a list not found.", path);
        }
        return nullptr;
    }
    auto* dynamic = dynamic_cast<CDynamicList*>(source);
    return dynamic ? addDynamicRows(*dynamic) : addRowsOf(*source);
}

CError* CPopupList::addDynamicRows(CDynamicList& source) {
    CDynamicListRows rows;
    TARV_TRY(source.generateSubList(param("popup-dynamic-list-parent-id"), rows));
    for (int32_t i = 0; i < rows.count(); ++i) {
        TARV_TRY(addRow(rows[i]));
    }
    return nullptr;
}

CError* CPopupList::addRowsOf(const CObject& source) {
    bool hasRows = false;
    for (const CObject* child : source.children()) {
        const bool isParagraph = child->getAttrBool("is-paragraph");
        if (isParagraph || isContent(*child)) {
            const CString text = isParagraph ? paragraphOf(*child) : textOf(*child);
            TARV_TRY(addRow({text, child->getAttrString("id"), isPlain(*child)}));
            hasRows = true;
        }
    }
    const CString& title = source.getAttrString("title");
    if (!hasRows && !title.isEmpty()) {
        for (const CString& line : title.split('\n', true)) {
            TARV_TRY(addRow({line, CString(), isPlain(source)}));
        }
    }
    return nullptr;
}

}  // namespace tarv
