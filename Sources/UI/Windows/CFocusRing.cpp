#include "UI/Windows/CFocusRing.h"

#include "UI/Views/CViewBaseCtlEvents.h"
#include "UI/Views/CViewBasePlacement.h"

namespace tarv {

namespace {

constexpr const char* kName = "focus-ring";
constexpr const char* kTemplate = "ui:focus-ring";

CError* lay(CViewBaseCtlEvents& root, CViewBaseCtlEvents* view) {
    auto* ring = root.findChild(kName);
    if (!ring && view && root.findTemplate(kTemplate)) {
        CAttributeMap attributes;
        attributes["placement-match"] = CAttributeValue::fromString(view->fullName());
        return root.createChild(ring, kTemplate, kName, true, &attributes);
    }
    const auto* shown = dynamic_cast<CViewBasePlacement*>(ring);
    auto* target = dynamic_cast<CViewBasePlacement*>(view);
    if (!shown) {
        return nullptr;
    }
    if (target) {
        shown->area().setMatchTarget(&target->area());
    }
    static const CString kVisible("is-visible");
    return ring->setAttribute(kVisible, CAttributeValue::fromBool(view != nullptr));
}

}  // namespace

void CFocusRing::follow(CViewBaseCtlEvents& root, CViewBaseCtlEvents* view) {
    if (view != view_ || isStale_) {
        view_ = view;
        isStale_ = false;
        TARV_CONSUME(lay(root, view));
    }
}

void CFocusRing::viewGone(const CViewBaseCtlEvents& view) {
    if (view_ == &view) {
        view_ = nullptr;
        isStale_ = true;
    }
}

}  // namespace tarv
