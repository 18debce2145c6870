// What a host hears of what a person does in an editor: whole, in order, from the product's effect.

#include "Tests/System/GestureTest.h"

#include <thread>

namespace tarv {
namespace {

using engine::kGains;

class Gestures : public CGestureTest {};

TEST_F(Gestures, OpeningIdlingAndClosingAnEditorSaysNothing) {
    editor_.reset();
    open();
    EXPECT_EQ(firstLine(client_->requestFrames()), "");
    pumpEvents();
    editor_.reset();
    EXPECT_EQ(take(), CHeard());
}

TEST_F(Gestures, ADragIsBeginValuesEndOfThatParameterAlone) {
    press(gesture_, 3);
    EXPECT_EQ(take(), CHeard{"begin 4"});
    for (const double decibels : {3.0, 6.0, 4.0}) {
        EXPECT_EQ(firstLine(gesture_.write(y(), decibels, 3)), "");
    }
    EXPECT_EQ(firstLine(gesture_.end()), "");
    // -12 to 12 dB lie at 0 to 1.
    EXPECT_EQ(take(), (CHeard{"automate 4 0.6250", "automate 4 0.7500", "automate 4 0.6667", "end 4"}));
    EXPECT_EQ(stepCount(), 1);
    EXPECT_EQ(take(), CHeard());
}

TEST_F(Gestures, AStrokeOverSeveralBarsBeginsEachOnceAndEndsAllTogether) {
    press(gesture_, 0);
    const double values[] = {1.2, 2.4};
    EXPECT_EQ(firstLine(gesture_.write(y(), values, 2, 0)), "");
    EXPECT_EQ(firstLine(gesture_.write(y(), 3.6, 1)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "begin 2", "automate 1 0.5500", "automate 2 0.6000", "automate 2 0.6500",
                              "end 1", "end 2"}));
    EXPECT_EQ(stepCount(), 1);
}

TEST_F(Gestures, APressWithoutAMoveChangesNothing) {
    press(gesture_, 3);
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(take(), (CHeard{"begin 4", "end 4"}));
    EXPECT_EQ(stepCount(), 0);
}

TEST_F(Gestures, WhatStaysTheSameIsNotAutomated) {
    press(gesture_, 3);
    const double values[] = {0.0, 6.0, 0.0};
    EXPECT_EQ(firstLine(gesture_.write(y(), values, 3, 2)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(take(), (CHeard{"begin 4", "automate 4 0.7500", "end 4"}));
}

TEST_F(Gestures, ASingleValueIsAGestureOfItsOwn) {
    EXPECT_EQ(firstLine(y().setValue(6.0)), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "automate 1 0.7500", "end 1"})) << "a typed value, a reset";
    EXPECT_EQ(firstLine(y().setValue(6.0)), "");
    EXPECT_EQ(take(), CHeard()) << "the same again";
}

TEST_F(Gestures, NotchesAreOneStepAndEachIsAnEdit) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(firstLine(gesture_.notch(y(), gesture_.value(y()) + 1.2)), "");
    }
    EXPECT_EQ(take(), (CHeard{"begin 1", "automate 1 0.5500", "end 1", "begin 1", "automate 1 0.6000", "end 1",
                              "begin 1", "automate 1 0.6500", "end 1"}));
    EXPECT_EQ(stepCount(), 1);
}

TEST_F(Gestures, WhatTheHostDoesNotSeeIsNotReported) {
    CUIParam& freq = at<CUIParam>("ui.control.freq");
    EXPECT_EQ(firstLine(gesture_.begin()), "");
    EXPECT_EQ(firstLine(gesture_.touch(freq)), "");
    EXPECT_EQ(firstLine(gesture_.write(freq, 100.0)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(take(), CHeard());
    EXPECT_EQ(stepCount(), 1);
}

TEST_F(Gestures, AnUnrecordedValueIsAnEditWithoutAStep) {
    EXPECT_EQ(firstLine(at<CUIParam>("ui.control.bypass").setValue(1.0, CParamEdit::unrecorded())), "");
    EXPECT_EQ(take(), (CHeard{"begin 0", "automate 0 1.0000", "end 0"}));
    EXPECT_EQ(stepCount(), 0);
}

TEST_F(Gestures, TheHistoryWrapsEachParameterThatChangesOnce) {
    press(gesture_, 3);
    EXPECT_EQ(firstLine(gesture_.write(y(), 6.0, 3)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(firstLine(at<CUIParam>("ui.control.out").setValue(-6.0)), "");
    take();
    EXPECT_EQ(firstLine(client_->undo(2)), "");
    EXPECT_EQ(take(), (CHeard{"begin 4", "begin 8", "automate 4 0.5000", "automate 8 0.5000", "end 4", "end 8"}));
    EXPECT_EQ(firstLine(client_->undo()), "");
    EXPECT_EQ(take(), CHeard());
    EXPECT_EQ(firstLine(client_->redo()), "");
    EXPECT_EQ(take(), (CHeard{"begin 4", "automate 4 0.7500", "end 4"}));
}

TEST_F(Gestures, APresetAResetAndAnABSwapWrapWhatTheyChange) {
    EXPECT_EQ(firstLine(client_->copyToAlternate(kRegistry)), "");
    EXPECT_EQ(firstLine(y().setValue(6.0)), "");
    take();
    EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "automate 1 0.5000", "end 1"}));
    EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "automate 1 0.7500", "end 1"}));
    EXPECT_EQ(firstLine(client_->resetState(kRegistry)), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "automate 1 0.5000", "end 1"}));
    EXPECT_EQ(firstLine(client_->activateRomPreset(kRegistry, 4)), "");
    const CHeard preset = take();
    ASSERT_EQ(preset.size() % 3, 0u);
    ASSERT_GT(preset.size(), 0u);
    for (size_t i = 0; i < preset.size() / 3; ++i) {
        const std::string index = preset[i].substr(6);
        EXPECT_EQ(preset[i], "begin " + index);
        EXPECT_EQ(preset[i + preset.size() / 3].rfind("automate " + index + " ", 0), 0u);
        EXPECT_EQ(preset[i + 2 * preset.size() / 3], "end " + index);
    }
}

TEST_F(Gestures, ACopyOfSeveralParametersIsOneStepAndOneEdit) {
    EXPECT_EQ(firstLine(y().setValue(6.0)), "");
    EXPECT_EQ(firstLine(at<CUIParam>("ui.control.out").setValue(-6.0)), "");
    take();
    auto& gains = at<CParamBridge>("ui.gains");
    auto& out = at<CParamBridge>("ui.out");
    pumpEvents();
    EXPECT_EQ(firstLine(gesture_.begin(gains, "Group 1 to 2 copy")), "");
    EXPECT_EQ(firstLine(gains.copyGroup(0, 1, gesture_.edit(gains))), "");
    EXPECT_EQ(firstLine(out.copyGroup(0, 1, gesture_.edit(out))), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(take(), (CHeard{"begin 9", "automate 9 0.7500", "begin 16", "automate 16 0.2500", "end 9", "end 16"}));
    EXPECT_EQ(stepCount(), 3);
    EXPECT_EQ(client_->engineState().history.labels[3], CString("Group 1 to 2 copy"));
    EXPECT_EQ(firstLine(client_->undo()), "");
    EXPECT_EQ(take(), (CHeard{"begin 9", "begin 16", "automate 9 0.5000", "automate 16 0.5000", "end 9", "end 16"}));
}

TEST_F(Gestures, AnEditorThatClosesEndsWhatItBegan) {
    press(gesture_, 3);
    EXPECT_EQ(firstLine(gesture_.write(y(), 6.0, 3)), "");
    take();
    editor_.reset();
    EXPECT_EQ(take(), CHeard{"end 4"});
    EXPECT_FALSE(gesture_.isActive());
    EXPECT_NEAR(gain(0, 3), 6.0, 1e-9) << "the value stays as it was shown last";
}

TEST_F(Gestures, ADragBehindReopeningIsAStepOfItsOwn) {
    for (int i = 0; i < 2; ++i) {
        CParamGesture gesture;
        press(gesture, 3);
        EXPECT_EQ(firstLine(gesture.write(y(), 3.0 + i, 3)), "");
        EXPECT_EQ(firstLine(gesture.end()), "");
        editor_.reset();
        open();
    }
    EXPECT_EQ(stepCount(), 2);
}

/// Something during a drag of bar 4, and what the engine then holds.
class CancelledGestures : public CGestureTest, public CParamGesture::COwner {
protected:
    void onGestureCancelled(CParamGesture&) override { ++cancels_; }
    void dragDuring(const std::function<void()>& event) {
        EXPECT_EQ(firstLine(y().setValue(-6.0)), "");
        EXPECT_EQ(firstLine(drag_.begin()), "");
        EXPECT_EQ(firstLine(drag_.touch(y(), 3)), "");
        EXPECT_EQ(firstLine(drag_.write(y(), 3.0, 3)), "");
        pumpEvents();
        take();
        event();
        EXPECT_EQ(cancels_, 0);
        const double after = gain(0, 3);
        // The move that comes before the editor has heard of it.
        EXPECT_EQ(firstLine(drag_.write(y(), 9.0, 3)), "");
        EXPECT_EQ(gain(0, 3), after);
        pumpEvents();
        EXPECT_EQ(cancels_, 1);
        EXPECT_FALSE(drag_.isActive());
        EXPECT_NEAR(drag_.value(y(), 3), after, 1e-9) << "the new value stands";
        EXPECT_EQ(heard.back(), "end 4");
        EXPECT_EQ(std::count(heard.begin(), heard.end(), "begin 4"), 0);
        EXPECT_EQ(std::count(heard.begin(), heard.end(), "end 4"), 1);
    }

    CParamGesture drag_{this};
    int cancels_ = 0;
};

TEST_F(CancelledGestures, AStepOfTheHistoryEndsTheDrag) {
    dragDuring([this] { EXPECT_EQ(firstLine(client_->undo()), ""); });
    EXPECT_NEAR(gain(0, 3), 0.0, 1e-9);
    EXPECT_EQ(heard, (CHeard{"automate 4 0.5000", "end 4"})) << "the edit was open";
}

TEST_F(CancelledGestures, APresetEndsTheDrag) {
    dragDuring([this] { EXPECT_EQ(firstLine(client_->activateRomPreset(kRegistry, 4)), ""); });
}

TEST_F(CancelledGestures, AnABSwapEndsTheDrag) {
    dragDuring([this] { EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), ""); });
}

TEST_F(CancelledGestures, AProgramOfTheHostEndsTheDrag) {
    dragDuring([this] { wrapper_->setProgram(3); });
}

TEST_F(CancelledGestures, AStateOfTheHostEndsTheDrag) {
    void* data = nullptr;
    const int32_t size = wrapper_->getChunk(&data, true);
    const std::string chunk(static_cast<const char*>(data), static_cast<size_t>(size));
    dragDuring([&] { EXPECT_EQ(wrapper_->setChunk(chunk.data(), static_cast<intptr_t>(chunk.size()), true), 1); });
    EXPECT_NEAR(gain(0, 3), 0.0, 1e-9);
}

TEST_F(Gestures, AutomationAndAnotherEditorsValuesLetTheDragGoOn) {
    press(gesture_, 3);
    EXPECT_EQ(firstLine(gesture_.write(y(), 3.0, 3)), "");
    const auto other = makeEditor();
    take();
    wrapper_->setParameter(4, 0.25f);
    EXPECT_EQ(firstLine(other->findObjectOf<CUIParam>("ui.control.y")->setValue(6.0)), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "automate 1 0.7500", "end 1"}));
    pumpEvents();
    EXPECT_TRUE(gesture_.isActive());
    EXPECT_EQ(gesture_.value(y(), 3), 3.0) << "its own value";
    EXPECT_EQ(firstLine(gesture_.write(y(), 4.0, 3)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    pumpEvents();
    EXPECT_NEAR(gesture_.value(y(), 3), 4.0, 1e-9);
    EXPECT_EQ(take(), (CHeard{"automate 4 0.6667", "end 4"}));
    wrapper_->setParameter(4, 0.25f);
    pumpEvents();
    EXPECT_NEAR(gesture_.value(y(), 3), -6.0, 1e-6) << "the host's value";
}

TEST_F(Gestures, OfTwoEditorsOnOneParameterTheHostHearsOneEdit) {
    const auto other = makeEditor();
    auto& otherY = *other->findObjectOf<CUIParam>("ui.control.y");
    CParamGesture second;
    press(gesture_, 3);
    EXPECT_EQ(firstLine(second.begin()), "");
    EXPECT_EQ(firstLine(second.touch(otherY, 3)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(take(), CHeard{"begin 4"});
    EXPECT_EQ(firstLine(second.write(otherY, 6.0, 3)), "");
    EXPECT_EQ(firstLine(second.end()), "");
    EXPECT_EQ(take(), (CHeard{"automate 4 0.7500", "end 4"}));
}

TEST_F(Gestures, TheHostMayCallFromAnyThreadInsideEachOfItsCalls) {
    wrapper_->resume();
    onHeard = [this](int32_t) {
        std::thread host([this] {
            wrapper_->setParameter(1, wrapper_->getParameter(2));
            void* data = nullptr;
            wrapper_->getChunk(&data, false);
            std::vector<float> samples(64);
            std::vector<float*> channels(CAudioBlockRunner::kMaxHostChannels, samples.data());
            wrapper_->processReplacing(channels.data(), channels.data(), 64);
        });
        host.join();  // never, if a lock were held that these take
    };
    press(gesture_, 3);
    EXPECT_EQ(firstLine(gesture_.write(y(), 6.0, 3)), "");
    EXPECT_EQ(firstLine(gesture_.end()), "");
    EXPECT_EQ(firstLine(client_->undo()), "");
    EXPECT_EQ(take(), (CHeard{"begin 4", "automate 4 0.7500", "end 4", "begin 4", "automate 4 0.5000", "end 4"}));
}

TEST_F(Gestures, TheHostMayCloseTheEditorInsideEachOfItsCalls) {
    for (const int32_t opcode : {vst::kHostBeginEdit, vst::kHostAutomate, vst::kHostEndEdit}) {
        editor_.reset();
        open();
        CParamGesture gesture;
        onHeard = [&](int32_t now) {
            if (now == opcode) {
                editor_.reset();
            }
        };
        EXPECT_EQ(firstLine(gesture.begin()), "");
        for (const double decibels : {3.0, 0.0}) {
            if (editor_) {
                EXPECT_EQ(firstLine(gesture.write(y(), decibels, 3)), "");
            }
        }
        if (editor_) {
            EXPECT_EQ(firstLine(gesture.end()), "");
        }
        onHeard = nullptr;
        EXPECT_EQ(editor_, nullptr);
        EXPECT_EQ(take().back(), "end 4") << opcode;
    }
}

TEST_F(Gestures, OfSeveralParametersNoneBeginsBehindItsEnd) {
    onHeard = [this](int32_t) { editor_.reset(); };
    EXPECT_EQ(firstLine(gesture_.begin()), "");
    EXPECT_EQ(firstLine(gesture_.touch(y(), 0, 3)), "");
    onHeard = nullptr;
    EXPECT_EQ(take(), (CHeard{"begin 1", "end 1"}));
}

TEST_F(Gestures, AnEditThatBeginsWhileOthersEndStaysOpen) {
    const auto other = makeEditor();
    CParamGesture second;
    EXPECT_EQ(firstLine(second.begin()), "");
    EXPECT_EQ(firstLine(gesture_.begin()), "");
    EXPECT_EQ(firstLine(gesture_.touch(y(), 0, 3)), "");
    EXPECT_EQ(take(), (CHeard{"begin 1", "begin 2", "begin 3"}));
    bool isFirst = true;
    onHeard = [&](int32_t) {
        if (std::exchange(isFirst, false)) {
            EXPECT_EQ(firstLine(second.touch(*other->findObjectOf<CUIParam>("ui.control.y"), 1)), "");
        }
    };
    EXPECT_EQ(firstLine(gesture_.end()), "");
    onHeard = nullptr;
    EXPECT_EQ(take(), (CHeard{"end 1", "end 3"}));
    EXPECT_EQ(firstLine(second.end()), "");
    EXPECT_EQ(take(), CHeard{"end 2"});
}

TEST_F(Gestures, AReadoutAndTheHostReadATextInTheSameWay) {
    const auto sendText = [this](int32_t index, const char* text) {
        return effect_->dispatcher(effect_, vst::kEffectString2Parameter, index, 0, const_cast<char*>(text), 0.0f);
    };
    for (const char* text : {"+3", "-0,5 dB", " 6.25db ", "1K", "", "+", "-", "99", "1 2"}) {
        wrapper_->setParameter(1, 0.1f);
        bool isTaken = false;
        EXPECT_EQ(firstLine(y().setValueText(text, isTaken)), "");
        const double typed = gain(0, 0);
        wrapper_->setParameter(1, 0.1f);
        take();
        EXPECT_EQ(sendText(1, text), isTaken ? 1 : 0) << text;
        EXPECT_EQ(gain(0, 0), typed) << text;
        EXPECT_EQ(take(), CHeard()) << "the host's own change";
    }
    EXPECT_EQ(sendText(0, "on"), 1);
    EXPECT_EQ(wrapper_->getParameter(0), 1.0f);
    EXPECT_EQ(sendText(1, nullptr), 1) << "whether there are texts at all";
    EXPECT_EQ(sendText(-1, nullptr), 0);
    EXPECT_EQ(sendText(1000, "3"), 0);
}

TEST_F(Gestures, KeysAndCountsOfAHostileClientAreRefused) {
    EXPECT_EQ(firstLine(client_->beginEdit(-1, kGains, 0, 0, 1)), "Invalid gesture -1.");
    EXPECT_EQ(firstLine(client_->beginEdit(1000000, "plugin.nothing", 0, 0, 1)),
              "No parameter 'plugin.nothing' found.");
    EXPECT_EQ(firstLine(client_->beginEdit(1000000, kGains, -5, INT32_MIN, INT32_MAX)), "");
    EXPECT_EQ(firstLine(client_->endEdit(-7)), "");
    EXPECT_EQ(firstLine(client_->endEdit(1000000)), "");
    for (int32_t i = 0; i < 64; ++i) {
        EXPECT_EQ(firstLine(client_->beginEdit(1000000 + i, kGains, 0, 3, 1)), "");
    }
    EXPECT_EQ(firstLine(client_->beginEdit(2000000, kGains, 0, 3, 1)), "Invalid gesture 2000000.");
    editor_.reset();
    EXPECT_EQ(take(), (CHeard{"begin 4", "end 4"}));
}

}  // namespace
}  // namespace tarv
