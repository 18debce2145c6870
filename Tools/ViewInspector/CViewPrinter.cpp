#include "CViewPrinter.h"

#include <cmath>

namespace tarv {

namespace {

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.6g", value);
    return text;
}

std::string rectText(const CViewRect& rect) {
    return number(rect.x) + "," + number(rect.y) + " " + number(rect.width) + "x" + number(rect.height);
}

CViewRect roundedOut(const CViewRect& rect, const CViewBorders& spread) {
    return {rect.x - spread.left, rect.y - spread.top, rect.width + spread.left + spread.right,
            rect.height + spread.top + spread.bottom};
}

std::string attributeText(const CView& view, const char* name) {
    const std::string text = view.getAttrString(name).toUtf8();
    return text.empty() ? "" : std::string(" ") + name + "=" + text;
}

}  // namespace

std::string CViewPrinter::lineOf(const CView& view) {
    const CViewArea& area = view.area();
    std::string line = view.name().toUtf8() + " <" + view.tag().toUtf8() + "> " + rectText(area.box());
    line += " z" + std::to_string(view.stackingNumber());
    if (!view.isShown()) {
        line += " hidden";
    } else if (view.visibleRect().isEmpty()) {
        line += " unseen";
    } else if (!view.visibleRect().isNear(roundedOut(area.box(), area.spread()), 0.001)) {
        line += " seen " + rectText(view.visibleRect());
    }
    line += view.isDynamic() ? " dynamic" : "";
    line += view.isDecorative() ? " decorative" : "";
    line += view.isDisabled() ? " disabled" : "";
    if (view.effectiveOpacity() < 1.0) {
        line += " opacity " + number(view.effectiveOpacity());
    }
    const std::string states = view.getAttrString("state").toUtf8();
    line += states.empty() ? "" : " [" + states + "]";
    return line + attributeText(view, "placement") + attributeText(view, "color") + attributeText(view, "image-set");
}

void CViewPrinter::print(const CView& root, bool hasFormulas) {
    if (hasFormulas) {
        const CFormulaText formulas(root);
        printView(root, &formulas, 0);
    } else {
        printView(root, nullptr, 0);
    }
}

void CViewPrinter::printView(const CView& view, const CFormulaText* formulas, int32_t depth) {
    std::fprintf(out_, "%*s%s\n", 2 * depth, "", lineOf(view).c_str());
    if (formulas) {
        printFormulas(view, *formulas, depth);
    }
    for (const CObject* child : view.children()) {
        const auto* below = dynamic_cast<const CView*>(child);
        if (below && below->parentView() == &view) {
            printView(*below, formulas, depth + 1);
        }
    }
}

void CViewPrinter::printFormulas(const CView& view, const CFormulaText& formulas, int32_t depth) {
    const CViewArea& area = view.area();
    for (int32_t i = 0; i < (area.isScrollable() ? kScrollableViewCells : kViewCells); ++i) {
        const auto cell = static_cast<CViewCell>(i);
        const std::string text = formulas.textOf(area.cell(cell), view);
        if (!text.empty()) {
            std::fprintf(out_, "%*s| %s = %s = %s\n", 2 * depth + 2, "", CFormulaText::nameOf(cell),
                         number(area.value(cell)).c_str(), text.c_str());
        }
    }
}

}  // namespace tarv
