#include "UI/Windows/CWindowPlace.h"

#include <algorithm>
#include <utility>

namespace tarv {

namespace {

struct CAlignmentRow {
    const char* name;
    CWindowAlignment alignment;
};

constexpr CAlignmentRow kAlignments[] = {
    {"bottom", CWindowAlignment::Bottom},
    {"bottom-center", CWindowAlignment::BottomCenter},
    {"bottom-local-center", CWindowAlignment::BottomLocalCenter},
    {"center", CWindowAlignment::Center},
    {"center-overlay", CWindowAlignment::CenterOverlay},
    {"left", CWindowAlignment::Left},
    {"right", CWindowAlignment::Right},
    {"cursor", CWindowAlignment::Cursor},
};

/// First pixel of a length that is centred in from..to.
int32_t centred(int32_t from, int32_t to, int32_t length) {
    return from + (to - from - length) / 2;
}

const CIntRect& firstOf(const CIntRect& wanted, const CIntRect& otherwise) {
    return wanted.isEmpty() ? otherwise : wanted;
}

}  // namespace

bool readWindowAlignment(const CString& name, CWindowAlignment& alignment) {
    for (const CAlignmentRow& row : kAlignments) {
        if (name == row.name) {
            alignment = row.alignment;
            return true;
        }
    }
    return false;
}

CIntRect placeWindowAt(int32_t x, int32_t y, const CWindowSurroundings& around, int32_t width, int32_t height) {
    const CIntRect& monitor = around.monitor;
    int32_t top = monitor.top;
    if (around.isConstrained) {
        top = std::clamp(around.constrainY, monitor.top, std::max(monitor.bottom - height, monitor.top));
    }
    x = std::max(std::min(x, monitor.right - width), monitor.left);
    y = std::max(std::min(y, monitor.bottom - height), top);
    return {x, y, x + width, y + height};
}

/// A window that should stand at the right of its opener stands at its left where only that has room.
static CIntRect leftOfOpener(const CIntRect& placed, const CIntRect& opener, const CWindowSurroundings& around) {
    const CIntRect left =
        placeWindowAt(opener.left - placed.width(), placed.top, around, placed.width(), placed.height());
    return left.intersection(opener).isEmpty() ? left : placed;
}

/// A window that would lie over its opener stands above it instead, or beside it, where the monitor has room.
static CIntRect besideOpener(const CIntRect& placed, const CIntRect& opener, const CWindowSurroundings& around) {
    const int32_t width = placed.width();
    const int32_t height = placed.height();
    const std::pair<int32_t, int32_t> kPlaces[] = {{placed.left, placed.top},
                                                   {placed.left, opener.top - height},
                                                   {opener.right, placed.top},
                                                   {opener.left - width, placed.top}};
    for (const auto& [x, y] : kPlaces) {
        const CIntRect wanted = placeWindowAt(x, y, around, width, height);
        if (wanted.intersection(opener).isEmpty()) {
            return wanted;
        }
    }
    return placed;
}

CIntRect placeWindow(CWindowAlignment alignment, const CWindowSurroundings& around, int32_t width, int32_t height) {
    const CIntRect& window = firstOf(around.openerWindow, around.monitor);
    const CIntRect& opener = firstOf(around.opener, window);
    int32_t x = opener.left;
    int32_t y = opener.bottom;
    switch (alignment) {
        case CWindowAlignment::Bottom:
            break;
        case CWindowAlignment::BottomCenter:
            x = centred(opener.left, opener.right, width);
            break;
        case CWindowAlignment::BottomLocalCenter:
            x = centred(window.left, window.right, width);
            break;
        case CWindowAlignment::Center:
            x = centred(window.left, window.right, width);
            y = centred(window.top, window.bottom, height);
            break;
        case CWindowAlignment::CenterOverlay: {
            const CIntRect& main = firstOf(around.mainWindow, window);
            x = centred(main.left, main.right, width);
            y = centred(main.top, main.bottom, height);
            break;
        }
        case CWindowAlignment::Left:
            x = opener.left - width;
            y = opener.top;
            break;
        case CWindowAlignment::Right:
            x = opener.right;
            y = opener.top;
            break;
        case CWindowAlignment::Cursor:
            x = around.pointerX;
            y = around.pointerY;
            break;
    }
    const CIntRect placed = placeWindowAt(x + around.shiftX, y + around.shiftY, around, width, height);
    if (alignment == CWindowAlignment::Right && !placed.intersection(opener).isEmpty()) {
        return leftOfOpener(placed, opener, around);
    }
    return alignment == CWindowAlignment::BottomLocalCenter ? besideOpener(placed, opener, around) : placed;
}

}  // namespace tarv
