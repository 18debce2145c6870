#include "UI/Text/CTextFonts.h"

#include <algorithm>

#include "UI/Resources/CFontObject.h"
#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

// The base line of a superscript lies at least this part of a capital above that of the regular font.
constexpr int32_t kLeastLift = 4;

}  // namespace

void CTextFonts::setFonts(const CFont* regular, const CFont* bold, const CFont* superscript) {
    fonts_[0] = regular;
    fonts_[1] = bold ? bold : regular;
    fonts_[2] = superscript ? superscript : regular;
    for (int32_t& top : tops_) {
        top = 0;
    }
    if (!regular) {
        return;
    }
    const auto baseLineOf = [](const CFont& font) { return font.getHeight() - font.getSpaceBelow(); };
    tops_[1] = baseLineOf(*regular) - baseLineOf(*fonts_[1]);
    if (superscript) {
        const auto capitalsOf = [](const CFont& font) {
            return font.getHeight() - font.getSpaceAbove() - font.getSpaceBelow();
        };
        const int32_t lifted = capitalsOf(*regular) - capitalsOf(*superscript);
        const int32_t missing = (capitalsOf(*regular) + 2) / kLeastLift - lifted;
        tops_[2] = regular->getSpaceAbove() - superscript->getSpaceAbove() -
                   std::clamp(missing, 0, std::max(regular->getSpaceAbove(), 0));
    }
}

void CTextFonts::setFont(const CFontObject* font) {
    if (font) {
        setFonts(font->findStyle("regular"), font->findStyle("bold"), font->findStyle("superscript"));
    } else {
        setFonts(nullptr);
    }
}

bool CTextFonts::setFontOf(const CObject* object) {
    const auto* font = dynamic_cast<const CFontObject*>(object);
    const bool isStyle = !font && object && object->getAttrBool("is-font-style");
    font = isStyle ? dynamic_cast<const CFontObject*>(object->parent()) : font;
    setFont(font);
    if (!font) {
        return false;
    }
    const CString style = isStyle ? object->name() : CString("regular");
    if (style == CString("bold") || style == CString("bold-italic")) {
        setFonts(fonts_[1], fonts_[1], fonts_[2]);
    } else if (style == CString("superscript")) {
        setFonts(fonts_[2], fonts_[1], fonts_[2]);
    }
    return true;
}

const CImage* CTextFonts::glyph(uint16_t character, CTextStyle style) const {
    const CFont* font = fonts_[static_cast<int32_t>(style)];
    if (!font || (character < ' ' && character != '\t')) {
        return nullptr;
    }
    const uint32_t code = character == '\t' ? ' ' : fontCodeOf(character);
    return font->getGlyph(code != 0 ? code : '?');
}

}  // namespace tarv
