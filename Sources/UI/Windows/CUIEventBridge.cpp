#include "UI/Windows/CUIEventBridge.h"

#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

CUIEventBridge::~CUIEventBridge() {
    if (auto* shared = root()->findObjectOf<CWindowSharedData>(CWindowSharedData::kPath)) {
        // From the last one, since popups stand behind what opened them; closing takes a window out of the list.
        while (!shared->windows().isEmpty()) {
            shared->windows()[shared->windows().count() - 1]->shut();
        }
    }
}

}  // namespace tarv
