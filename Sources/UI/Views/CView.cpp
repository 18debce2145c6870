#include "UI/Views/CView.h"

#include "Core/CKeptParams.h"
#include "Core/Log.h"
#include "UI/Views/CSectorMap.h"

namespace tarv {

CView::~CView() {
    endInput();
    if (CSectorMap* map = sectorMap()) {
        map->removeView(*this, joinedRect_);
    }
}

CError* CView::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CView::updatePalette>("palette");
    descriptor.addHandler<&CView::attrImageSetRange>("image-set-range");
    descriptor.addHandler<&CView::attrImageSet>("image-set");
    descriptor.addHandler<&CView::attrImageAlignment>("image-alignment");
    descriptor.addHandler<&CView::attrBrushSet>("brush-set");
    descriptor.addHandler<&CView::attrColor>("color");
    descriptor.addHandler<&CView::attrGradient>("is-gradient-animated");
    descriptor.addHandler<&CView::attrGradient>("gradient-fps");
    descriptor.addHandler<&CView::gradientTimer>("gradient-timer");
    return CViewBasePlacement::initClass(descriptor);
}

CError* CView::init() {
    areas_.resize(kOwnAreas);
    TARV_TRY(CViewBasePlacement::init());
    if (const auto* parent = dynamic_cast<CView*>(parentView())) {
        palette_ = parent->palette_;
    }
    updateOverhang();
    return nullptr;
}

void CView::requestRedraw() {
    needsFullRedraw_ = true;
    if (hasArea()) {
        area().requestNotify();
    }
}

void CView::requestRedraw(const CViewRect& part) {
    partialRects_.append(part);
    if (hasArea()) {
        area().requestNotify();
    }
}

void CView::leaveSectors() {
    if (CSectorMap* map = sectorMap()) {
        map->updateView(*this, joinedRect_, {});
    }
    joinedRect_ = {};
    for (CObject* child : children()) {
        auto* view = dynamic_cast<CView*>(child);
        if (view && view->rootView() == rootView()) {
            view->leaveSectors();
        }
    }
}

void CView::joinSectors() {
    if (!hasArea()) {
        return;
    }
    if (CSectorMap* map = sectorMap()) {
        map->updateView(*this, {}, visibleRect());
        joinedRect_ = visibleRect();
    }
    for (CObject* child : children()) {
        auto* view = dynamic_cast<CView*>(child);
        if (view && view->rootView() == rootView()) {
            view->joinSectors();
        }
    }
}

CError* CView::sendEventIfWanted(const char* name, bool isWanted) {
    if (!isWanted && !hasCommandOn(name)) {
        return nullptr;
    }
    CKeptParams sent(*this, sent_, 0);
    return receiveEvent(name, sent.params);
}

CError* CView::advanceViews() {
    const CObjectWatch watch(*this);
    runTimers();
    return watch.isAlive() ? placeViews() : nullptr;
}

CError* CView::placeViews() {
    return hasArea() ? area().net().flush() : nullptr;
}

CError* CView::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const bool isOtherWindow =
        isRootView() && (wholeRect.width != areas_[kWholeArea].width || wholeRect.height != areas_[kWholeArea].height);
    areas_[kVisibleArea] = visibleRect;
    areas_[kWholeArea] = wholeRect;
    const CViewBorders spread = wholeRect.isEmpty() ? CViewBorders() : area().spread();
    areas_[kBoxArea] = {wholeRect.x + spread.left, wholeRect.y + spread.top,
                        wholeRect.width - spread.left - spread.right, wholeRect.height - spread.top - spread.bottom};
    needsFullRedraw_ = true;
    const CObjectWatch watch(*this);
    CError* error = nullptr;
    if (isOtherWindow) {
        leaveSectors();
        error = sendEventIfWanted("update-window-bounds", true);
        if (!watch.isAlive()) {
            return error;
        }
        joinSectors();
    } else if (CSectorMap* map = sectorMap()) {
        map->updateView(*this, joinedRect_, visibleRect);
        joinedRect_ = visibleRect;
    }
    if (!error) {
        error = sendEventIfWanted("view-area-update", wantsAreaUpdates_);
    }
    if (!error && watch.isAlive()) {
        error = sendEventIfWanted("update-scroller", area().isScrollable());
    }
    return error;
}

CError* CView::onAreaNotify() {
    if (CSectorMap* map = sectorMap()) {
        if (needsFullRedraw_ || partialRects_.isEmpty()) {
            map->invalidate(visibleRect(), this);
        } else {
            for (const CViewRect& part : partialRects_) {
                map->invalidate(part.intersection(visibleRect()), this);
            }
        }
    }
    needsFullRedraw_ = false;
    partialRects_.clear();
    return nullptr;
}

CError* CView::attrImageSet() {
    const CString& path = getAttrString("image-set");
    const auto* object = findObjectOf<CImageSetObject>(path);
    if (!object && !path.isEmpty()) {
        TARV_FAIL("@tarvstr_CView_attrImageSet_NoImageSet Image set '%1' not found.", path);
    }
    imageSet_ = object ? &object->dataSet() : nullptr;
    updateImageRange();
    requestRedraw();
    return nullptr;
}

CError* CView::attrImageSetRange() {
    updateImageRange();
    requestRedraw();
    return nullptr;
}

CError* CView::attrBrushSet() {
    const CString& path = getAttrString("brush-set");
    const auto* object = findObjectOf<CBrushSetObject>(path);
    if (!object && !path.isEmpty()) {
        TARV_FAIL("@tarvstr_CView_attrBrushSet_NoBrushSet Brush set '%1' not found.", path);
    }
    brushSet_ = object ? &object->dataSet() : nullptr;
    requestRedraw();
    return nullptr;
}

CError* CView::attrImageAlignment() {
    imageAlignmentH_ = 0;
    imageAlignmentV_ = 0;
    isImageAligned_ = !getAttrString("image-alignment").isEmpty();
    for (const CString& word : getAttrString("image-alignment").split('-')) {
        const auto sideOf = [&](const char* low, const char* high) {
            return word == CString(low) ? -1 : word == CString(high) ? 1 : 0;
        };
        imageAlignmentH_ += sideOf("left", "right");
        imageAlignmentV_ += sideOf("top", "bottom");
    }
    requestRedraw();
    return nullptr;
}

CError* CView::updatePalette() {
    const CString& name = getAttrString("palette");
    const auto* parent = dynamic_cast<CView*>(parentView());
    const CPalette* palette = parent ? parent->palette_ : nullptr;
    if (!name.isEmpty()) {
        CError* error = findPalette(name, palette);
        const CString& fallback = getAttrString("palette-fallback");
        if (error && !fallback.isEmpty() && fallback != name) {
            logLineIn(error->joined(), fullName());
            delete error;
            error = findPalette(fallback, palette);
        }
        TARV_TRY(error);
    }
    setPalette(palette);
    return nullptr;
}

CError* CView::findPalette(const CString& name, const CPalette*& palette) const {
    const CString path = CString("pal.") + name;
    const CObject* found = findObject(path);
    found = found ? found : findObject(CString("shared::") + path);
    if (!found) {
        TARV_FAIL("@tarvstr_CView_updatePalette_NoPaletteObj Unable to find palette object '%1'.", path);
    }
    const auto* object = dynamic_cast<const CPaletteObject*>(found);
    if (!object) {
        TARV_FAIL("@tarvstr_CView_updatePalette_NoPalette Unable to find palette in palette object '%1'.", path);
    }
    palette = &object->dataSet();
    return nullptr;
}

/// Here, and below where no view has its own palette.
void CView::setPalette(const CPalette* palette) {
    palette_ = palette;
    resolveColors(0.0);
    for (CObject* child : children()) {
        auto* view = dynamic_cast<CView*>(child);
        if (view && view->parentView() == this && view->getAttrString("palette").isEmpty()) {
            view->setPalette(palette);
        }
    }
}

}  // namespace tarv
