// What a text view shows: its attributes, children, font and pictures as items of a text.

#include <algorithm>

#include "Core/Log.h"
#include "UI/Text/CTextMarkup.h"
#include "UI/Text/CTextView.h"

namespace tarv {

namespace {

/// The attribute as it was set, or an empty one.
CAttributeValue titleOf(const CObject& object) {
    const auto found = object.attributes().find("title");
    return found == object.attributes().end() ? CAttributeValue() : found->second;
}

void addText(CTextMarkup& markup, const CObject& object, const char* attribute) {
    const auto found = object.attributes().find(attribute);
    if (found == object.attributes().end()) {
        return;
    }
    if (found->second.isPlain()) {
        markup.addPlain(found->second.asString());
    } else {
        markup.add(found->second.asString());
    }
}

/// The contents of a child that is a paragraph.
void addParagraph(CTextMarkup& markup, const CObject& child) {
    bool hasContent = false;
    bool isBroken = false;
    for (const CObject* content : child.children()) {
        if (!content->name().startsWith("content")) {
            continue;
        }
        if (isBroken) {
            markup.addLineBreak();
        }
        addText(markup, *content, "value");
        isBroken = content->getAttrBool("is-line-break");
        hasContent = true;
    }
    if (!hasContent) {
        addText(markup, child, "title");
    }
}

}  // namespace

CError* CTextView::textChanged() {
    if (state() != CObjectState::Finished || hasParagraphChildren()) {
        return nullptr;
    }
    // Read-outs set what they show at each tick.
    const CAttributeValue title = titleOf(*this);
    if (title.asString() != shownTitle_.asString() || title.isPlain() != shownTitle_.isPlain()) {
        updateText();
    }
    return nullptr;
}

void CTextView::readFont() {
    CObject* holder = this;
    while (holder && holder->getAttrString("font-name").isEmpty()) {
        holder = holder->parent();
    }
    const CString path = holder ? holder->getAttrString("font-name") : CString();
    const CObject* font = path.isEmpty() ? nullptr : findObject(path);
    font = font || path.isEmpty() ? font : findObject(CString("shared::font.") + path);
    if (!fonts_.setFontOf(font) && !path.isEmpty()) {
        logLineIn(CString("Font not found <") + path + ">", fullName());
    }
    if (holder && holder != this) {
        holder->linkObserver(*this, "font-name", "inherited-font-name");
    }
}

bool CTextView::hasParagraphChildren() const {
    return std::any_of(children().begin(), children().end(),
                       [](const CObject* child) { return child->getAttrBool("is-paragraph"); });
}

void CTextView::readSource() {
    source_.clear();
    CTextMarkup markup(source_);
    bool hasChildren = false;
    for (const CObject* child : children()) {
        if (child->getAttrBool("is-paragraph")) {
            if (hasChildren) {
                markup.endParagraph();
            }
            hasChildren = true;
            addParagraph(markup, *child);
        }
    }
    if (!hasChildren) {
        addText(markup, *this, "title");
        shownTitle_ = titleOf(*this);
    }
    findPictures();
}

void CTextView::findPictures() {
    for (int32_t i = 0; i < source_.images().count(); ++i) {
        const CTextImage& image = source_.images()[i];
        const auto* object = findObjectOf<CImageSetObject>(CString("shared::") + image.set);
        uint32_t first = 0;
        uint32_t last = 0;
        if (!object) {
            logLineIn(CString("Image set not found <") + image.set + ">", fullName());
        } else if (!object->dataSet().findRange(image.range, first, last)) {
            logLineIn(CString("Range not found <") + image.range + ">", fullName());
        } else {
            source_.setPicture(i, object->dataSet().getImage(first));
        }
    }
}

CString CTextView::paragraphText(int32_t index) const {
    if (index < 0 || index >= paragraphCount()) {
        return {};
    }
    return source_.plainText(layout_.paragraph(index).first, layout_.paragraph(index).count);
}

}  // namespace tarv
