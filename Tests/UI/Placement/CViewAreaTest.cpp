// The flush: what it calls, in which order, and what a handler may do meanwhile.

#include "UI/Placement/CViewArea.h"

#include <gtest/gtest.h>

#include <functional>

#include "Tests/UI/Placement/PlacedView.h"

namespace tarv {
namespace {

/// Records what the flush calls, and runs what a test has set for it.
class CRecorder : public CViewAreaUpdateHandler {
public:
    CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect&) override {
        calls.push_back(name + " changed");
        visible = visibleRect;
        return whenChanged ? whenChanged() : nullptr;
    }
    CError* onAreaNotify() override {
        calls.push_back(name + " notify");
        return whenNotified ? whenNotified() : nullptr;
    }
    std::string name;
    std::function<CError*()> whenChanged;
    std::function<CError*()> whenNotified;
    CViewRect visible;
    static std::vector<std::string> calls;
};
std::vector<std::string> CRecorder::calls;

class ViewAreaFlush : public testing::Test {
protected:
    ViewAreaFlush() : root(rootHandler, false) {
        rootHandler.name = "root";
        root.setWidth({CViewLengthMode::Fixed, 100});
        root.setHeight({CViewLengthMode::Fixed, 100});
        for (int32_t i = 0; i < 2; ++i) {
            handlers[i].name = i == 0 ? "a" : "b";
            areas[i] = std::make_unique<CViewArea>(handlers[i], i == 0 ? root : *areas[0], false);
            areas[i]->setPlacement(CViewPlacement::Full);
            areas[i]->setWidth({CViewLengthMode::Percentage, 1.0});
            areas[i]->setHeight({CViewLengthMode::Percentage, 1.0});
        }
        flush();
        CRecorder::calls.clear();
    }
    ~ViewAreaFlush() override {
        areas[1].reset();
        areas[0].reset();
    }
    std::string flush() {
        CError* error = root.net().flush();
        const std::string text = error ? error->joined().toUtf8() : "";
        delete error;
        return text;
    }
    static CError* fail() { TARV_FAIL("Broken view"); }

    CRecorder rootHandler;
    CViewArea root;
    CRecorder handlers[2];
    std::unique_ptr<CViewArea> areas[2];
};

using CCalls = std::vector<std::string>;

TEST_F(ViewAreaFlush, CallsParentsBeforeChildrenAndNotifiesAtTheEnd) {
    root.setWidth({CViewLengthMode::Fixed, 50});
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls,
              (CCalls{"root changed", "a changed", "b changed", "root notify", "a notify", "b notify"}));
    EXPECT_EQ(handlers[1].visible.width, 50);
}

TEST_F(ViewAreaFlush, AtRestCallsNothing) {
    EXPECT_EQ(flush(), "");
    root.setWidth({CViewLengthMode::Fixed, 100});
    root.setWidth({CViewLengthMode::Fixed, 100.00005});
    areas[0]->setAlignmentH(0);
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls, CCalls());
}

TEST_F(ViewAreaFlush, ANotificationMayBeAskedForByItself) {
    areas[0]->requestNotify();
    areas[0]->requestNotify();
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls, (CCalls{"a notify"}));
}

TEST_F(ViewAreaFlush, AFailureEndsItAndTheRestWaits) {
    handlers[0].whenChanged = fail;
    root.setWidth({CViewLengthMode::Fixed, 50});
    EXPECT_EQ(flush().find("Broken view"), 0u);
    EXPECT_EQ(CRecorder::calls, (CCalls{"root changed", "a changed"}));
    EXPECT_FALSE(root.net().isIdle());
    handlers[0].whenChanged = nullptr;
    CRecorder::calls.clear();
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls, (CCalls{"a changed", "b changed", "root notify", "a notify", "b notify"}));
    EXPECT_TRUE(root.net().isIdle());
}

TEST_F(ViewAreaFlush, AFailureOfANotificationLeavesTheOthersWaiting) {
    handlers[0].whenNotified = fail;
    root.setWidth({CViewLengthMode::Fixed, 50});
    EXPECT_EQ(flush().find("Broken view"), 0u);
    CRecorder::calls.clear();
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls, (CCalls{"b notify"}));
}

TEST_F(ViewAreaFlush, AHandlerMayDestroyViewsThatWait) {
    handlers[0].whenChanged = [&]() -> CError* {
        areas[1].reset();
        return nullptr;
    };
    root.setWidth({CViewLengthMode::Fixed, 50});
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls, (CCalls{"root changed", "a changed", "root notify", "a notify"}));
    EXPECT_EQ(areas[0]->children().count(), 0);
}

TEST_F(ViewAreaFlush, AHandlerMayDestroyItsOwnView) {
    handlers[1].whenChanged = [&]() -> CError* {
        areas[1].reset();
        return nullptr;
    };
    root.setWidth({CViewLengthMode::Fixed, 50});
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(CRecorder::calls, (CCalls{"root changed", "a changed", "b changed", "root notify", "a notify"}));
}

TEST_F(ViewAreaFlush, AHandlerMayChangeTheTreeAndIsServedAgain) {
    handlers[0].whenNotified = [&]() -> CError* {
        areas[1]->setWidth({CViewLengthMode::Fixed, 7});
        return nullptr;
    };
    root.setWidth({CViewLengthMode::Fixed, 50});
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(handlers[1].visible.width, 7);
    EXPECT_EQ(CRecorder::calls.back(), "b notify");
    EXPECT_EQ(flush(), "") << "a flush within a flush was none";
}

TEST_F(ViewAreaFlush, AHiddenViewHasNoRectanglesAndIsNotNotified) {
    areas[0]->setVisible(false);
    EXPECT_EQ(flush(), "");
    EXPECT_TRUE(handlers[0].visible.isEmpty());
    EXPECT_TRUE(handlers[1].visible.isEmpty());
    EXPECT_EQ(CRecorder::calls, (CCalls{"a changed", "b changed"}));
    CRecorder::calls.clear();
    areas[0]->setVisible(true);
    EXPECT_EQ(flush(), "");
    EXPECT_EQ(handlers[1].visible.width, 100);
}

TEST_F(ViewAreaFlush, AViewBeyondTheLastCellIsNotValid) {
    std::vector<std::unique_ptr<CViewArea>> many;
    while (many.empty() || many.back()->isValid()) {
        many.push_back(std::make_unique<CViewArea>(handlers[1], root, false));
        ASSERT_LT(many.size(), 3000u);
    }
    EXPECT_EQ(many.size(), 65535u / kViewCells - 3 + 1);
    while (!many.empty()) {
        many.pop_back();
    }
    EXPECT_EQ(flush(), "");
    EXPECT_TRUE(CViewArea(handlers[1], root, false).isValid());
}

}  // namespace
}  // namespace tarv
