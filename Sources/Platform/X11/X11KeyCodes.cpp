// From the symbols of the X window system to the numbers of keys.

#include "Platform/X11/X11KeyCodes.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include "Platform/Keyboard.h"

namespace tarv {

namespace {

struct CSymbolRow {
    uint32_t symbol;
    int32_t code;
};

/// Numbers that CKeyCode has no name for are those of Windows, too.
constexpr CSymbolRow kSymbols[] = {
    {XKB_KEY_BackSpace, kKeyBackspace},
    {XKB_KEY_Tab, kKeyTab},
    {XKB_KEY_ISO_Left_Tab, kKeyTab},
    {XKB_KEY_KP_Tab, kKeyTab},
    {XKB_KEY_Return, kKeyEnter},
    {XKB_KEY_KP_Enter, kKeyEnter},
    {XKB_KEY_Shift_L, kKeyShift},
    {XKB_KEY_Shift_R, kKeyShift},
    {XKB_KEY_Control_L, kKeyCtrl},
    {XKB_KEY_Control_R, kKeyCtrl},
    {XKB_KEY_Alt_L, kKeyAlt},
    {XKB_KEY_Alt_R, kKeyAlt},
    {XKB_KEY_Meta_L, kKeyAlt},
    {XKB_KEY_Meta_R, kKeyAlt},
    {XKB_KEY_ISO_Level3_Shift, kKeyAlt},
    {XKB_KEY_Escape, kKeyEscape},
    {XKB_KEY_space, kKeySpace},
    {XKB_KEY_KP_Space, kKeySpace},
    {XKB_KEY_Prior, kKeyPageUp},
    {XKB_KEY_KP_Prior, kKeyPageUp},
    {XKB_KEY_Next, kKeyPageDown},
    {XKB_KEY_KP_Next, kKeyPageDown},
    {XKB_KEY_End, kKeyEnd},
    {XKB_KEY_KP_End, kKeyEnd},
    {XKB_KEY_Home, kKeyHome},
    {XKB_KEY_KP_Home, kKeyHome},
    {XKB_KEY_Left, kKeyLeft},
    {XKB_KEY_KP_Left, kKeyLeft},
    {XKB_KEY_Up, kKeyUp},
    {XKB_KEY_KP_Up, kKeyUp},
    {XKB_KEY_Right, kKeyRight},
    {XKB_KEY_KP_Right, kKeyRight},
    {XKB_KEY_Down, kKeyDown},
    {XKB_KEY_KP_Down, kKeyDown},
    {XKB_KEY_Insert, kKeyInsert},
    {XKB_KEY_KP_Insert, kKeyInsert},
    {XKB_KEY_Delete, kKeyDelete},
    {XKB_KEY_KP_Delete, kKeyDelete},
    {XKB_KEY_Caps_Lock, 20},
    {XKB_KEY_Num_Lock, 144},
    {XKB_KEY_KP_Multiply, 106},
    {XKB_KEY_KP_Add, 107},
    {XKB_KEY_KP_Separator, 108},
    {XKB_KEY_KP_Subtract, 109},
    {XKB_KEY_KP_Decimal, 110},
    {XKB_KEY_KP_Divide, 111},
};

constexpr int32_t kFirstPadFigure = 96;
constexpr int32_t kFirstFunctionKey = 112;

bool isWithin(uint32_t symbol, uint32_t first, uint32_t last) {
    return symbol >= first && symbol <= last;
}

}  // namespace

int32_t keyCodeOfSymbol(uint32_t symbol) {
    if (isWithin(symbol, XKB_KEY_a, XKB_KEY_z)) {
        return static_cast<int32_t>(symbol - XKB_KEY_a) + 'A';
    }
    if (isWithin(symbol, XKB_KEY_A, XKB_KEY_Z) || isWithin(symbol, XKB_KEY_0, XKB_KEY_9)) {
        return static_cast<int32_t>(symbol);
    }
    if (isWithin(symbol, XKB_KEY_KP_0, XKB_KEY_KP_9)) {
        return static_cast<int32_t>(symbol - XKB_KEY_KP_0) + kFirstPadFigure;
    }
    if (isWithin(symbol, XKB_KEY_F1, XKB_KEY_F24)) {
        return static_cast<int32_t>(symbol - XKB_KEY_F1) + kFirstFunctionKey;
    }
    for (const CSymbolRow& row : kSymbols) {
        if (row.symbol == symbol) {
            return row.code;
        }
    }
    return 0;
}

}  // namespace tarv
