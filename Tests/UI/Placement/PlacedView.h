#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "UI/Placement/CViewArea.h"

namespace tarv {

/// The attributes of a view, as texts stand for them in a definition.
struct CPlacing {
    CViewPlacement placement = CViewPlacement::Inline;
    CViewLength width;
    CViewLength height;
    CViewLength minWidth{CViewLengthMode::Fixed, 0.0};
    CViewLength minHeight{CViewLengthMode::Fixed, 0.0};
    CViewBorders outer;
    CViewBorders inner;
    CViewBorders spread;
    int32_t alignmentH = 0;
    int32_t alignmentV = 0;
    int32_t inlineAlignmentH = 0;
    int32_t inlineAlignmentV = 0;
    int32_t unclipLevel = 0;
    bool isVertical = false;
    bool isNewRow = false;
    bool isVisible = true;
    bool isScrollable = false;
    double offsetX = 0.0;
    double offsetY = 0.0;
    double ratioX = 1.0;
    double ratioY = 1.0;
    double scrollerWidth = 0.0;
    double scrollerHeight = 0.0;
    double compactWidth = -1.0;  ///< below 0: by the children
    double compactHeight = -1.0;
    int32_t match = -1;  ///< number of the view that `match` follows, in the order of makeIds
};

/// A view to be: what it is like, and its children.
struct CPlacingNode {
    CPlacing placing;
    std::vector<CPlacingNode> children;
};

/// A view that only has a place; counts what the flush reports.
class CPlacedView : public CViewAreaUpdateHandler {
public:
    explicit CPlacedView(const CPlacing& placing) : area(std::make_unique<CViewArea>(*this, placing.isScrollable)) {
        apply(placing);
    }
    CPlacedView(CPlacedView& parent, const CPlacing& placing)
        : area(std::make_unique<CViewArea>(*this, *parent.area, placing.isScrollable)) {
        apply(placing);
    }
    ~CPlacedView() override {
        while (!children.empty()) {
            children.pop_back();
        }
    }
    CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override {
        visible = visibleRect;
        whole = wholeRect;
        ++changes;
        return nullptr;
    }
    CError* onAreaNotify() override {
        ++notifications;
        return nullptr;
    }
    /// All but the target of a match.
    void apply(const CPlacing& p) {
        area->setPlacement(p.placement);
        area->setMinWidth(p.minWidth);
        area->setMinHeight(p.minHeight);
        area->setWidth(p.width);
        area->setHeight(p.height);
        area->setOuterBorders(p.outer);
        area->setInnerBorders(p.inner);
        area->setSpread(p.spread);
        area->setAlignmentH(p.alignmentH);
        area->setAlignmentV(p.alignmentV);
        area->setInlineAlignmentH(p.inlineAlignmentH);
        area->setInlineAlignmentV(p.inlineAlignmentV);
        area->setUnclipLevel(p.unclipLevel);
        area->setInlineVertical(p.isVertical);
        area->setNewInlineRow(p.isNewRow);
        area->setScrollerWidth(p.scrollerWidth);
        area->setScrollerHeight(p.scrollerHeight);
        area->setRatioX(p.ratioX);
        area->setRatioY(p.ratioY);
        area->setOffsetX(p.offsetX);
        area->setOffsetY(p.offsetY);
        if (p.compactWidth >= 0.0) {
            area->setCompactWidth(p.compactWidth);
        }
        if (p.compactHeight >= 0.0) {
            area->setCompactHeight(p.compactHeight);
        }
        area->setVisible(p.isVisible);
    }
    CPlacedView& add(const CPlacing& placing) {
        children.push_back(std::make_unique<CPlacedView>(*this, placing));
        return *children.back();
    }
    void flush() {
        CError* error = area->net().flush();
        EXPECT_FALSE(error);
        delete error;
    }

    std::unique_ptr<CViewArea> area;
    std::vector<std::unique_ptr<CPlacedView>> children;
    CViewRect visible;
    CViewRect whole;
    int32_t changes = 0;
    int32_t notifications = 0;
};

/// All views of a tree, parents before their children.
inline void collectViews(CPlacedView& view, std::vector<CPlacedView*>& all) {
    all.push_back(&view);
    for (const auto& child : view.children) {
        collectViews(*child, all);
    }
}

inline void addViews(CPlacedView& view, const CPlacingNode& node) {
    for (const CPlacingNode& child : node.children) {
        addViews(view.add(child.placing), child);
    }
}

/// Hands the views that match another their targets, by their numbers.
inline void applyMatches(CPlacedView& root, const std::vector<const CPlacingNode*>& nodes) {
    std::vector<CPlacedView*> views;
    collectViews(root, views);
    for (size_t i = 0; i < views.size(); ++i) {
        const int32_t target = nodes[i]->placing.match;
        views[i]->area->setMatchTarget(target >= 0 ? views[static_cast<size_t>(target)]->area.get() : nullptr);
    }
}

inline void collectNodes(const CPlacingNode& node, std::vector<const CPlacingNode*>& all) {
    all.push_back(&node);
    for (const CPlacingNode& child : node.children) {
        collectNodes(child, all);
    }
}

/// A whole tree of views, flushed.
inline std::unique_ptr<CPlacedView> makeViews(const CPlacingNode& node) {
    auto root = std::make_unique<CPlacedView>(node.placing);
    addViews(*root, node);
    std::vector<const CPlacingNode*> nodes;
    collectNodes(node, nodes);
    applyMatches(*root, nodes);
    root->flush();
    return root;
}

}  // namespace tarv
