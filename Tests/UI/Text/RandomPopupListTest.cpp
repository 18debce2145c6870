// Random sequences over nested lists: hands and keys on all levels while the rows' source changes, fails or goes, and
// receivers that open other lists or destroy views. Whatever comes, the lists that are open are one chain, the first of
// them has the keys, and in the end nothing is left over.

#include <cstdlib>
#include <random>

#include "Tests/UI/Text/PopupListTree.h"

namespace tarv {
namespace {

/// Rows by a number that the test changes: rows of rows, fewer of them, none, or a failure as of a bank that is gone.
class CChangingList : public CObject, public CDynamicList {
public:
    static inline int32_t version = 0;
    [[nodiscard]] CError* generateSubList(const CString& parentId, CDynamicListRows& rows) override {
        if (version % 5 == 4 && !parentId.isEmpty()) {
            TARV_FAIL("@tarvstr_CChangingList_generateSubList_InvalidListId Invalid list identifier %1.", parentId);
        }
        for (int32_t i = 0; i < (version % 4) * 3; ++i) {
            const CString name = CString(i % 2 == 0 ? "bank " : "Plain ") + CString::fromInt(i + version);
            rows.addPlain(name, parentId + "." + name, (i + version) % 3 != 0);
            if (i == version % 6) {
                rows.check();
            }
        }
        return nullptr;
    }
};

struct RandomPopupList : CPopupListTree {
    RandomPopupList() { classes.push_back({"test:changing", &createObject<CChangingList>, nullptr}); }

    int32_t next(int32_t count) { return static_cast<int32_t>(random() % static_cast<uint32_t>(count)); }
    void openAll() {
        open({view("opener", {{"placement", "top"}, {"width", "120"}, {"height", "20"}, {"is-focusable", "true"}},
                   {{"test:changing", "rows"}}),
              view("other", {{"placement", "top"}, {"width", "120"}, {"height", "20"}},
                   {{"core:object", "value-list", {{"title", "a\nb\nc\nd"}}}})});
        CFilledView::actions["opener.mouse-press"] = [](CFilledView& opener, CAttributeMap&) { openFor(opener); };
        CFilledView::actions["other.mouse-press"] = [](CFilledView& opener, CAttributeMap&) { openFor(opener); };
        CFilledView::actions["opener.popup-result"] = [this](CFilledView& opener, CAttributeMap&) { answered(opener); };
        CFilledView::actions["other.popup-result"] = [this](CFilledView& opener, CAttributeMap&) { answered(opener); };
    }
    static void openFor(CFilledView& opener) {
        CAttributeMap params;
        params["popup-text-source"] =
            CAttributeValue::fromString(CString(opener.findChild("rows") ? ".rows" : ".value-list"));
        TARV_CONSUME(opener.openPopup("ui:window-app-popup-list", params));
    }
    void answered(CFilledView& opener) {
        ++answers;
        if (next(4) == 0) {
            openFor(opener);
        } else if (next(8) == 0) {
            delete opener.findChild("rows");
        } else if (next(8) == 0) {
            delete &opener;
        }
    }
    /// All lists that are open, the first one first.
    std::vector<CPopupList*> lists() const {
        std::vector<CPopupList*> found;
        for (CObject* child : tree->findObject("ui")->children()) {
            auto* one = dynamic_cast<CPopupList*>(child->findChild("list"));
            const auto* shown = dynamic_cast<CWindow*>(child->findChild("window-renderer"));
            if (one && shown->isOpen()) {
                found.push_back(one);
            }
        }
        return found;
    }
    void pointAnywhere() {
        const std::vector<CPopupList*> open = lists();
        if (open.empty() || next(8) == 0) {
            system.input().moveIn(window().handle(), next(300), next(60));
            return;
        }
        const CPopupList& on = *open[static_cast<size_t>(next(static_cast<int32_t>(open.size())))];
        if (on.paragraphCount() > 0) {
            moveOnto(on, next(on.paragraphCount()));
        }
    }
    void act() {
        constexpr int32_t kKeys[] = {kKeyLeft, kKeyRight, kKeyRight, kKeyUp,    kKeyDown,  kKeyDown,
                                     kKeyHome, kKeyEnd,   kKeyEnter, kKeySpace, kKeyEscape};
        switch (next(14)) {
            case 0:
            case 1:
            case 2:
                pointAnywhere();
                system.input().press(next(8) == 0 ? CPointerButton::Right : CPointerButton::Left);
                if (next(4) == 0) {
                    system.advance(0.1 * next(6));
                    pointAnywhere();
                }
                system.input().release(CPointerButton::Left);
                system.input().release(CPointerButton::Right);
                break;
            case 3:
            case 4:
                pointAnywhere();
                system.advance(0.1 * next(6));
                break;
            case 5:
                system.input().wheel(next(5) - 2);
                break;
            case 6:
                CChangingList::version = next(1000);
                break;
            case 7:
                system.advance(0.03 * next(20));
                break;
            case 8:
                if (next(6) == 0) {
                    system.desktop().activate(host);
                } else if (next(6) == 0) {
                    window().popups().close();
                }
                break;
            case 9:
                tap(u'b', "", u"b");
                break;
            case 10:
                spoil();
                break;
            default:
                tap(kKeys[next(static_cast<int32_t>(std::size(kKeys)))]);
        }
    }
    /// Rows, or a whole list, are destroyed under the hands.
    void spoil() {
        const std::vector<CPopupList*> open = lists();
        if (open.empty() || next(3) != 0) {
            return;
        }
        CPopupList& one = *open[static_cast<size_t>(next(static_cast<int32_t>(open.size())))];
        if (CObject* row = next(2) == 0 ? one.findChild("paragraph") : nullptr) {
            delete row;
        } else if (next(4) == 0) {
            delete one.parent();
        }
    }
    void expectAChain() {
        const std::vector<CPopupList*> open = lists();
        longest = std::max(longest, static_cast<int32_t>(open.size()));
        for (size_t i = 0; i < open.size(); ++i) {
            const CString expected = i == 0 ? CString() : open[i - 1]->fullName();
            EXPECT_TRUE(i == 0 || open[i]->parent()->getAttrString("opener") == expected) << i;
            EXPECT_EQ(windowOf(*open[i]).keyFocusView() != nullptr, i == 0 && windowOf(*open[i]).keyFocusView());
        }
        EXPECT_LE(open.size(), static_cast<size_t>(CPopupList::kMaxDepth));
        EXPECT_EQ(window().isBlocked(), !open.empty());
    }
    void run(uint32_t seed) {
        random.seed(seed);
        CChangingList::version = 3;
        openAll();
        const CLogCapture log;
        for (int32_t i = 0; i < 150 && !HasFailure(); ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(i));
            act();
            expectAChain();
            if (!tree->findObject("ui.main-window.opener") || !tree->findObject("ui.main-window.other.value-list")) {
                break;
            }
        }
        if (seed % 3 != 0) {
            window().popups().close();
            system.advance(1.0);
            EXPECT_EQ(system.desktop().windowCount(), 1) << seed;
            EXPECT_EQ(window().popups().count(), 0) << seed;
            EXPECT_FALSE(window().isBlocked()) << seed;
            EXPECT_EQ(system.desktop().keyGrabber(), 0u) << seed;
        }
        close();
        EXPECT_TRUE(system.isClean()) << seed;
    }

    std::mt19937 random;
    int32_t answers = 0;
    int32_t longest = 0;
};

TEST_F(RandomPopupList, NestedListsAreOneChainAndLeaveNothing) {
    const uint32_t runs = std::getenv("TARV_LONG") ? 2000 : 40;
    for (uint32_t seed = 0; seed < runs && !HasFailure(); ++seed) {
        run(seed);
    }
    EXPECT_GT(answers, static_cast<int32_t>(runs));
    EXPECT_GT(longest, 3);
}

}  // namespace
}  // namespace tarv
