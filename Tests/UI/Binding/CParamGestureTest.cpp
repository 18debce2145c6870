#include "UI/Binding/CParamGesture.h"

#include <cmath>

#include "Tests/UI/Binding/BindingTree.h"

namespace tarv {
namespace {

class ParamGesture : public CBindingTest, public CParamGesture::COwner {
protected:
    /// A control with the params `a` (element 1) and `b` (element 2, in the group of the selector) of known gains.
    void openGains() {
        openControl({uiParam("a", {{"bridge", "ui.gains-bridge"}, {"element", "1"}}),
                     uiParam("b", {{"bridge", "ui.gains-bridge"}, {"element", "2"}, {"group-selector", "ui.sel"}}),
                     uiParam("m", {{"bridge", "ui.mode-bridge"}, {"group-selector", "ui.sel"}})});
        sendWhole("gains", {{1.0, 1.0, 1.0, 1.0}, {1.0, 1.0, 1.0, 1.0}});
        sendWhole("mode", {{2.0}});
    }
    CParamGesture& gesture() { return *gesture_; }
    void beginGesture() { EXPECT_EQ(consumed(gesture().begin()), ""); }
    void write(const char* name, double value, int32_t offset = 0) {
        EXPECT_EQ(consumed(gesture().write(param(name), value, offset)), "");
    }
    void end() { EXPECT_EQ(consumed(gesture().end()), ""); }
    void notch(const char* name, double step, int32_t offset = 0) {
        CUIParam& moved = param(name);
        EXPECT_EQ(consumed(gesture().notch(moved, gesture().value(moved, offset) + step, offset)), "");
    }
    std::vector<int32_t> keys() const {
        std::vector<int32_t> all;
        for (const CSetMessage& set : engine_->sets) {
            all.push_back(set.key);
        }
        return all;
    }
    void onGestureCancelled(CParamGesture&) override { ++cancels_; }

    std::unique_ptr<CParamGesture> gesture_ = std::make_unique<CParamGesture>(this);
    int cancels_ = 0;
};

TEST_F(ParamGesture, AllThatItWritesHasOneKeyAndTheNextOneAnother) {
    openGains();
    beginGesture();
    write("c.a", 1.0);
    write("c.a", 2.0);
    end();
    beginGesture();
    write("c.a", 3.0);
    end();
    const std::vector<int32_t> all = keys();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_GE(all[0], 0);
    EXPECT_EQ(all[0], all[1]);
    EXPECT_NE(all[1], all[2]);
    CParamGesture other;
    EXPECT_EQ(consumed(other.begin()), "");
    EXPECT_EQ(consumed(other.write(param("c.a"), 4.0)), "");
    EXPECT_NE(keys()[3], all[2]) << "counted for the process";
}

TEST_F(ParamGesture, WritesARunOfElementsOfTheParamsGroupAsOneChange) {
    openGains();
    beginGesture();
    const double values[] = {20.0 * std::log10(2.0), 0.0};
    EXPECT_EQ(consumed(gesture().write(param("c.b"), values, 2, 1)), "");
    ASSERT_EQ(engine_->sets.size(), 1u);
    EXPECT_EQ(engine_->sets[0].group, 1);
    EXPECT_EQ(engine_->sets[0].first, 3);
    ASSERT_EQ(engine_->sets[0].numbers.size(), 2u);
    EXPECT_NEAR(engine_->sets[0].numbers[0], 2.0, 1e-12);
    EXPECT_NEAR(engine_->sets[0].numbers[1], 1.0, 1e-12);
}

TEST_F(ParamGesture, WithoutABeginNothingIsWritten) {
    openGains();
    write("c.a", 1.0);
    end();
    EXPECT_EQ(consumed(gesture().touch(param("c.a"))), "");
    EXPECT_TRUE(engine_->sets.empty());
    EXPECT_FALSE(gesture().isActive());
}

TEST_F(ParamGesture, ShowsItsOwnValueWhileItLastsAndTheEnginesAfterwards) {
    openGains();
    beginGesture();
    write("c.a", 4.0);
    EXPECT_EQ(gesture().value(param("c.a")), 4.0);
    sendPart("gains", 0, 1, {0.5}, 4);
    EXPECT_EQ(gesture().value(param("c.a")), 4.0) << "automation or an echo of a value before";
    EXPECT_NEAR(gesture().value(param("c.a"), 1), 0.0, 1e-12) << "not written";
    end();
    EXPECT_EQ(gesture().value(param("c.a")), 4.0) << "the answer is on its way";
    sendPart("gains", 1, 1, {0.25}, 4);
    EXPECT_EQ(gesture().value(param("c.a")), 4.0) << "of another group";
    sendPart("gains", 0, 1, {2.0}, 4);
    EXPECT_NEAR(gesture().value(param("c.a")), 6.0206, 1e-4);
}

TEST_F(ParamGesture, WhatCameBehindTheAnswerStandsWhenItEnds) {
    openGains();
    beginGesture();
    write("c.a", 6.0);
    write("c.a", 3.0);
    sendPart("gains", 0, 1, {std::pow(10.0, 6.0 / 20.0)}, 4);
    sendPart("gains", 0, 1, {std::pow(10.0, 3.0 / 20.0)}, 4);
    sendPart("gains", 0, 1, {0.5}, 4);
    EXPECT_EQ(gesture().value(param("c.a")), 3.0);
    end();
    EXPECT_NEAR(gesture().value(param("c.a")), 20.0 * std::log10(0.5), 1e-12);
    beginGesture();
    write("c.a", 6.0);
    sendPart("gains", 0, 1, {std::pow(10.0, 3.0 / 20.0)}, 4);
    end();
    EXPECT_EQ(gesture().value(param("c.a")), 6.0) << "the answer is still to come";
}

TEST_F(ParamGesture, WhatItShowsIsWithinTheRange) {
    openGains();
    beginGesture();
    write("c.a", 40.0);
    EXPECT_NEAR(gesture().value(param("c.a")), 12.0, 1e-12);
    write("c.a", -40.0);
    EXPECT_NEAR(gesture().value(param("c.a")), -12.0, 1e-12);
}

TEST_F(ParamGesture, AnotherGroupOrElementCancelsIt) {
    openGains();
    beginGesture();
    write("c.b", 4.0);
    set(at<CObject>("sel"), "group-index", "0");
    EXPECT_EQ(cancels_, 1);
    EXPECT_FALSE(gesture().isActive());
    EXPECT_NEAR(gesture().value(param("c.b")), 0.0, 1e-12);
    write("c.b", 5.0);
    EXPECT_EQ(engine_->sets.size(), 1u);
    beginGesture();
    write("c.a", 4.0);
    set(param("c.a"), "element", "1");
    EXPECT_EQ(cancels_, 1) << "the same element";
    set(param("c.a"), "element", "0");
    EXPECT_EQ(cancels_, 2);
}

TEST_F(ParamGesture, AGroupThatSharesItsValueOrAnotherParamDoesNotCancelIt) {
    openGains();
    beginGesture();
    write("c.m", 3.0);
    write("c.a", 1.0);
    set(at<CObject>("sel"), "group-index", "0");
    EXPECT_TRUE(gesture().isActive());
    EXPECT_EQ(gesture().value(param("c.m")), 3.0);
    end();
    EXPECT_EQ(cancels_, 0);
}

TEST_F(ParamGesture, AParamABridgeOrAnEngineThatGoesCancelsIt) {
    openGains();
    beginGesture();
    write("c.a", 1.0);
    delete &param("c.a");
    EXPECT_EQ(cancels_, 1);
    beginGesture();
    write("c.m", 1.0);
    delete &bridgeAt("mode");
    EXPECT_EQ(cancels_, 2);
    EXPECT_EQ(gesture().value(param("c.m")), 0.0);
    beginGesture();
    write("c.b", 1.0);
    client_->engineGone();
    EXPECT_EQ(cancels_, 3);
    EXPECT_FALSE(gesture().isActive());
}

TEST_F(ParamGesture, MayBeDestroyedByItsOwnerOrAtAnyTime) {
    struct CDestroyer final : CParamGesture::COwner {
        void onGestureCancelled(CParamGesture&) override { gesture.reset(); }
        std::unique_ptr<CParamGesture> gesture = std::make_unique<CParamGesture>(this);
    };
    openGains();
    CDestroyer destroyer;
    EXPECT_EQ(consumed(destroyer.gesture->begin()), "");
    EXPECT_EQ(consumed(destroyer.gesture->write(param("c.b"), 1.0)), "");
    beginGesture();
    write("c.b", 2.0);
    set(at<CObject>("sel"), "group-index", "0");
    EXPECT_EQ(destroyer.gesture, nullptr);
    EXPECT_EQ(cancels_, 1);
    beginGesture();
    write("c.b", 2.0);
    gesture_.reset();
    EXPECT_EQ(cancels_, 1) << "its own end";
    sendPart("gains", 0, 2, {0.5}, 4);
}

TEST_F(ParamGesture, TheEditorMayCloseWhileItWrites) {
    openGains();
    beginGesture();
    engine_->onSet = [this] {
        tree_.reset();
        gesture_.reset();
    };
    EXPECT_EQ(consumed(gesture().write(param("c.a"), 1.0)), "");
    EXPECT_EQ(tree_, nullptr);
}

TEST_F(ParamGesture, NotchesOnOneElementWithinHalfASecondAreOneStep) {
    openGains();
    notch("c.a", 0.5);
    system_.starve(0.5);
    notch("c.a", 0.5);
    system_.starve(0.5);
    notch("c.a", 0.5);
    system_.starve(0.6);
    notch("c.a", 0.5);
    notch("c.a", 0.5, 1);
    const std::vector<int32_t> all = keys();
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[0], all[1]);
    EXPECT_EQ(all[1], all[2]) << "each counts from the one before it";
    EXPECT_NE(all[2], all[3]);
    EXPECT_NE(all[3], all[4]) << "another bar";
}

TEST_F(ParamGesture, NotchesAddUpBeforeTheEngineHasAnswered) {
    openGains();
    notch("c.a", 0.5);
    notch("c.a", 0.5);
    notch("c.a", 0.5);
    EXPECT_NEAR(gesture().value(param("c.a")), 1.5, 1e-12);
    EXPECT_NEAR(20.0 * std::log10(engine_->sets[2].numbers[0]), 1.5, 1e-12);
    sendPart("gains", 0, 1, {2.0}, 4);
    EXPECT_NEAR(gesture().value(param("c.a")), 6.0206, 1e-4);
}

TEST_F(ParamGesture, ANotchDuringADragIsIgnored) {
    openGains();
    beginGesture();
    write("c.a", 1.0);
    notch("c.a", 0.5);
    EXPECT_EQ(engine_->sets.size(), 1u);
    EXPECT_EQ(gesture().value(param("c.a")), 1.0);
}

TEST_F(ParamGesture, WritesASettingAtOnce) {
    CControlRecorder& control = openControl({uiParam("p", {{"shared-attribute", "ui.setting"}})});
    control.take();
    beginGesture();
    EXPECT_EQ(consumed(gesture().touch(param("c.p"))), "");
    write("c.p", 0.25);
    EXPECT_EQ(control.take(), std::vector<std::string>{"p 0.2500"});
    EXPECT_EQ(gesture().value(param("c.p")), 0.25);
    end();
    notch("c.p", 0.05);
    EXPECT_NEAR(param("c.p").getValue(), 0.3, 1e-12);
}

TEST_F(ParamGesture, AnInactiveParamIsNotWritten) {
    openControl({uiParam("a", {{"bridge", "ui.gains-bridge"}}), uiParam("none", {})});
    beginGesture();
    write("c.a", 1.0);
    write("c.none", 1.0);
    EXPECT_EQ(gesture().value(param("c.a")), 0.0);
    EXPECT_TRUE(engine_->sets.empty());
}

}  // namespace
}  // namespace tarv
