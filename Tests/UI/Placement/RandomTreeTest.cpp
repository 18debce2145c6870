// Random trees of views with random changes: the network after each change against a network built anew, and against
// the rules as a plain recursion.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>

#include "Tests/UI/Placement/PlacementReference.h"

namespace tarv {
namespace {

constexpr double kCellTolerance = 0.001;
constexpr int32_t kChangesOfATree = 6;

/// Trees whose compact sizes are made of children that do not refer to them.
class CTreeMaker {
public:
    explicit CTreeMaker(uint32_t seed) : random_(seed) {}

    CPlacingNode tree() {
        CPlacingNode root;
        left_ = 4 + below(24);
        root.placing = placing(nullptr, true);
        root.placing.placement = CViewPlacement::Full;
        root.placing.isVisible = true;
        root.placing.outer = {};
        addChildren(root, 0);
        return root;
    }

    /// Changes one view of a tree, adds one or takes one away; the tree stays one that tree() may give.
    void change(CPlacingNode& root) {
        std::vector<std::pair<CPlacingNode*, CPlacingNode*>> nodes;
        collect(root, nullptr, nodes);
        const auto [node, parent] = nodes[below(static_cast<uint32_t>(nodes.size()))];
        const uint32_t kind = below(10);
        if (kind == 0 && node->children.size() < 5) {
            left_ = 2;
            CPlacingNode child;
            child.placing = placing(&node->placing, false);
            node->children.push_back(child);
        } else if (kind == 1 && parent) {
            parent->children.erase(parent->children.begin() + (node - parent->children.data()));
        } else {
            const CPlacing former = node->placing;
            node->placing = placing(parent ? &parent->placing : nullptr, !parent);
            keep(former, node->placing, parent == nullptr);
        }
        repair(root, nullptr);
    }

    std::mt19937& random() { return random_; }

private:
    uint32_t below(uint32_t count) { return random_() % count; }
    bool oneIn(uint32_t count) { return below(count) == 0; }
    double pixels(uint32_t most) { return below(most * 8) / 8.0; }
    double part() { return static_cast<double>(below(101)) / 100.0; }
    CViewBorders borders(uint32_t most) {
        const auto side = [&] { return static_cast<double>(below(most)); };
        return oneIn(2) ? CViewBorders() : CViewBorders{side(), side(), side(), side()};
    }
    int32_t alignment() { return static_cast<int32_t>(below(3)) - 1; }

    CViewLength length(bool mayRefer) {
        const uint32_t kind = below(mayRefer ? 6 : 3);
        if (kind >= 4) {
            return {CViewLengthMode::Percentage, part()};
        }
        if (kind == 3) {
            return {CViewLengthMode::Balanced, 0.0};
        }
        return kind == 2 ? CViewLength() : CViewLength{CViewLengthMode::Fixed, pixels(90)};
    }
    static bool isCompact(const CPlacing& p, int axis) {
        return (axis == 0 ? p.width : p.height).mode == CViewLengthMode::Compact ||
               (axis == 0 ? p.minWidth : p.minHeight).mode == CViewLengthMode::Compact;
    }
    CPlacing placing(const CPlacing* parent, bool isRoot) {
        CPlacing p;
        p.placement = static_cast<CViewPlacement>(1 + below(parent && parent->isScrollable ? 12 : 9));
        p.width = length(parent && !isCompact(*parent, 0));
        p.height = length(parent && !isCompact(*parent, 1));
        if (oneIn(4)) {
            p.minWidth = length(parent && !isCompact(*parent, 0));
        }
        if (oneIn(4)) {
            p.minHeight = length(parent && !isCompact(*parent, 1));
        }
        if (isRoot && oneIn(2)) {
            p.width = {CViewLengthMode::Fixed, 200.0 + pixels(300)};
            p.height = {CViewLengthMode::Fixed, 150.0 + pixels(300)};
        }
        p.outer = borders(5);
        p.inner = borders(7);
        p.spread = oneIn(5) ? borders(4) : CViewBorders();
        p.alignmentH = alignment();
        p.alignmentV = alignment();
        p.inlineAlignmentH = alignment();
        p.inlineAlignmentV = alignment();
        p.unclipLevel = oneIn(5) ? static_cast<int32_t>(below(4)) - 1 : 0;
        p.isVertical = oneIn(2);
        p.isNewRow = oneIn(4);
        p.isVisible = !oneIn(6);
        p.isScrollable = oneIn(5);
        p.scrollerWidth = static_cast<double>(below(12));
        p.scrollerHeight = static_cast<double>(below(12));
        p.ratioX = (1.0 + below(8)) / 8.0;
        p.ratioY = (1.0 + below(8)) / 8.0;
        p.offsetX = (1.0 - p.ratioX) * below(9) / 8.0;
        p.offsetY = (1.0 - p.ratioY) * below(9) / 8.0;
        if (oneIn(6)) {
            p.compactWidth = pixels(60);
            p.compactHeight = pixels(60);
        }
        return p;
    }
    /// What a view keeps for its life.
    static void keep(const CPlacing& former, CPlacing& p, bool isRoot) {
        p.isScrollable = former.isScrollable;
        if (former.compactWidth >= 0.0) {
            p.compactWidth = former.compactWidth;
            p.compactHeight = former.compactHeight;
        }
        if (isRoot) {
            p.placement = CViewPlacement::Full;
            p.isVisible = true;
            p.outer = {};
        }
    }
    void addChildren(CPlacingNode& node, int32_t depth) {
        const uint32_t count = depth >= 4 ? 0 : below(6);
        for (uint32_t i = 0; i < count && left_ > 0; ++i) {
            --left_;
            CPlacingNode child;
            child.placing = placing(&node.placing, false);
            addChildren(child, depth + 1);
            node.children.push_back(child);
        }
        repair(node, nullptr);
    }
    /// After a change of a parent: its children refer to nothing that is made of them.
    void repair(CPlacingNode& node, const CPlacing* parent) {
        CPlacing& p = node.placing;
        if (parent) {
            const auto mend = [&](CViewLength& length, int axis) {
                if (isCompact(*parent, axis) && length.mode != CViewLengthMode::Fixed &&
                    length.mode != CViewLengthMode::Compact) {
                    length = {CViewLengthMode::Fixed, pixels(90)};
                }
            };
            mend(p.width, 0);
            mend(p.minWidth, 0);
            mend(p.height, 1);
            mend(p.minHeight, 1);
            if (!parent->isScrollable && p.placement >= CViewPlacement::ScrollerH) {
                p.placement = CViewPlacement::Inline;
            }
        }
        for (CPlacingNode& child : node.children) {
            repair(child, &p);
        }
    }
    static void collect(CPlacingNode& node, CPlacingNode* parent,
                        std::vector<std::pair<CPlacingNode*, CPlacingNode*>>& all) {
        all.emplace_back(&node, parent);
        for (CPlacingNode& child : node.children) {
            collect(child, &node, all);
        }
    }

    std::mt19937 random_;
    uint32_t left_ = 0;
};

void collectShown(const CPlacingNode& node, bool isShown, std::vector<bool>& shown) {
    const bool isOwn = isShown && node.placing.isVisible;
    shown.push_back(isOwn);
    for (const CPlacingNode& child : node.children) {
        collectShown(child, isOwn, shown);
    }
}

/// A view that matches another follows a visible one that comes before it and matches none.
void chooseMatches(CPlacingNode& root, std::mt19937& random) {
    std::vector<const CPlacingNode*> nodes;
    collectNodes(root, nodes);
    std::vector<bool> shown;
    collectShown(root, true, shown);
    for (size_t i = 0; i < nodes.size(); ++i) {
        auto& p = const_cast<CPlacing&>(nodes[i]->placing);
        p.match = -1;
        if (p.placement != CViewPlacement::Match) {
            continue;
        }
        std::vector<int32_t> possible;
        for (size_t k = 0; k < i; ++k) {
            if (shown[k] && nodes[k]->placing.placement != CViewPlacement::Match) {
                possible.push_back(static_cast<int32_t>(k));
            }
        }
        p.match = possible[random() % possible.size()];
    }
}

/// Brings a tree of views to what a tree of nodes says: views are made and destroyed as nodes have come and gone.
void follow(CPlacedView& view, const CPlacingNode& node, const CPlacingNode& former) {
    view.apply(node.placing);
    size_t kept = 0;
    while (kept < node.children.size() && kept < former.children.size() &&
           node.children.size() == former.children.size()) {
        ++kept;
    }
    if (node.children.size() > former.children.size()) {
        for (size_t i = 0; i < former.children.size(); ++i) {
            follow(*view.children[i], node.children[i], former.children[i]);
        }
        for (size_t i = former.children.size(); i < node.children.size(); ++i) {
            addViews(view.add(node.children[i].placing), node.children[i]);
        }
        return;
    }
    for (size_t i = 0; i < kept; ++i) {
        follow(*view.children[i], node.children[i], former.children[i]);
    }
}

/// Near enough, or nothing that can be seen: a size around the least one may be on either side of it.
bool isSame(const CViewRect& a, const CViewRect& b) {
    const auto least = [](const CViewRect& rect) { return std::min(rect.width, rect.height); };
    return a.isNear(b, kCellTolerance) || (least(a) < kCellTolerance && least(b) < kCellTolerance);
}

std::string text(const CViewRect& rect) {
    std::ostringstream stream;
    stream << rect.x << " " << rect.y << " " << rect.width << " " << rect.height;
    return stream.str();
}

void expectSame(CPlacedView& lived, CPlacedView& fresh, uint32_t seed) {
    std::vector<CPlacedView*> a;
    std::vector<CPlacedView*> b;
    collectViews(lived, a);
    collectViews(fresh, b);
    ASSERT_EQ(a.size(), b.size()) << seed;
    for (size_t i = 0; i < a.size(); ++i) {
        const int32_t count = a[i]->area->isScrollable() ? kScrollableViewCells : kViewCells;
        for (int32_t c = 0; c < count; ++c) {
            const auto cell = static_cast<CViewCell>(c);
            ASSERT_NEAR(a[i]->area->value(cell), b[i]->area->value(cell), kCellTolerance)
                << "seed " << seed << " view " << i << " cell " << c;
        }
        ASSERT_TRUE(isSame(a[i]->visible, b[i]->visible))
            << "seed " << seed << " view " << i << ": " << text(a[i]->visible) << " instead of " << text(b[i]->visible);
        ASSERT_TRUE(isSame(a[i]->whole, b[i]->whole))
            << "seed " << seed << " view " << i << ": " << text(a[i]->whole) << " instead of " << text(b[i]->whole);
    }
}

void compareByRules(CPlacedView& root, const std::vector<CReferenceView>& reference, uint32_t seed) {
    std::vector<CPlacedView*> views;
    collectViews(root, views);
    for (size_t i = 0; i < views.size(); ++i) {
        if (!views[i]->area->isEffectivelyVisible()) {
            ASSERT_TRUE(views[i]->visible.isEmpty()) << "seed " << seed << " view " << i;
            continue;
        }
        const CViewRect box = views[i]->area->box();
        const CViewRect& wanted = reference[i].box;
        ASSERT_TRUE(box.isNear(wanted, kCellTolerance))
            << "seed " << seed << " view " << i << ": " << text(box) << " instead of " << text(wanted);
        ASSERT_TRUE(isSame(views[i]->whole, reference[i].whole)) << "seed " << seed << " view " << i;
        ASSERT_TRUE(isSame(views[i]->visible, reference[i].visible))
            << "seed " << seed << " view " << i << ": " << text(views[i]->visible) << " instead of "
            << text(reference[i].visible);
    }
}

/// Distance of the unrounded positions of a tree from a half: where it is tiny, the threshold of the cells and the
/// order of a sum decide to which side one rounds; at 0 only the former values of a cell do.
double halfDistance(const std::vector<CReferenceView>& reference) {
    double least = 1.0;
    for (const CReferenceView& view : reference) {
        least = std::min(least, view.halfDistance);
    }
    return least;
}

/// A view of a vanished node goes; the rest stays. True if that was the whole difference in children.
bool removeVanished(CPlacedView& view, const CPlacingNode& node, const CPlacingNode& former) {
    if (node.children.size() < former.children.size()) {
        size_t gone = 0;
        // The nodes before the vanished one are what they were.
        while (gone < node.children.size() &&
               node.children[gone].children.size() == former.children[gone].children.size() &&
               node.children[gone].placing.width == former.children[gone].placing.width &&
               node.children[gone].placing.height == former.children[gone].placing.height &&
               node.children[gone].placing.inner == former.children[gone].placing.inner &&
               node.children[gone].placing.isScrollable == former.children[gone].placing.isScrollable) {
            ++gone;
        }
        view.children.erase(view.children.begin() + static_cast<std::ptrdiff_t>(gone));
        return true;
    }
    for (size_t i = 0; i < node.children.size() && i < former.children.size(); ++i) {
        if (removeVanished(*view.children[i], node.children[i], former.children[i])) {
            return true;
        }
    }
    return false;
}

/// States that were compared.
struct CCounts {
    int32_t anew = 0;
    int32_t byRules = 0;
};

void runTree(uint32_t seed, CCounts& counts) {
    CTreeMaker maker(seed);
    CPlacingNode node = maker.tree();
    chooseMatches(node, maker.random());
    const auto lived = makeViews(node);
    for (int32_t change = 0; change < kChangesOfATree && !testing::Test::HasFatalFailure(); ++change) {
        const CPlacingNode former = node;
        maker.change(node);
        chooseMatches(node, maker.random());
        if (removeVanished(*lived, node, former)) {
            std::vector<CPlacedView*> views;
            collectViews(*lived, views);
            std::vector<const CPlacingNode*> nodes;
            collectNodes(node, nodes);
            ASSERT_EQ(views.size(), nodes.size()) << seed;
            for (size_t i = 0; i < views.size(); ++i) {
                views[i]->apply(nodes[i]->placing);
            }
        } else {
            follow(*lived, node, former);
        }
        std::vector<const CPlacingNode*> nodes;
        collectNodes(node, nodes);
        applyMatches(*lived, nodes);
        lived->flush();
        EXPECT_TRUE(lived->area->net().isIdle());
        const auto fresh = makeViews(node);
        const std::vector<CReferenceView> reference = placeByRules(node);
        const double distance = halfDistance(reference);
        if (distance >= kCellTolerance) {
            ++counts.anew;
            expectSame(*lived, *fresh, seed);
        }
        if (distance == 0.0 || distance >= kCellTolerance) {
            ++counts.byRules;
            compareByRules(*fresh, reference, seed);
        }
    }
}

TEST(RandomViewTrees, AfterEachChangeEqualANewNetworkAndTheRules) {
    const uint32_t count = std::getenv("TARV_LONG") ? 10000 : 1000;
    CCounts counts;
    for (uint32_t seed = 1; seed <= count && !HasFatalFailure(); ++seed) {
        runTree(seed, counts);
    }
    const auto states = static_cast<int32_t>(count) * kChangesOfATree;
    EXPECT_GT(counts.anew, states * 7 / 10) << "of " << states;
    EXPECT_GT(counts.byRules, states * 9 / 10) << "of " << states;
}

}  // namespace
}  // namespace tarv
