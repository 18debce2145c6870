// Random gestures in two editors, the history, presets and a host that takes part: each edit is begun once and ended
// once, and no value comes outside one.

#include <cstdlib>
#include <random>
#include <set>

#include "Tests/System/GestureTest.h"

namespace tarv {
namespace {

/// One of the two editors and the hand in it.
struct CHand {
    std::unique_ptr<CObject> editor;
    std::unique_ptr<CParamGesture> gesture;
    CUIParam& y() { return *editor->findObjectOf<CUIParam>("ui.control.y"); }
    CAudioInterfaceClient& client() { return *editor->findObjectOf<CAudioInterfaceClient>("ui.client"); }
};

class RandomGestures : public CGestureTest {
protected:
    int32_t any(int32_t count) { return std::uniform_int_distribution<int32_t>(0, count - 1)(random_); }
    double decibels() { return std::uniform_real_distribution<double>(-14.0, 14.0)(random_); }

    void move(CHand& hand) {
        CParamGesture& gesture = *hand.gesture;
        const int32_t band = any(6);
        const double values[] = {decibels(), decibels()};
        const std::function<CError*()> moves[] = {
            [&] { return gesture.begin(); },
            [&] { return gesture.touch(hand.y(), band, 1 + any(2)); },
            [&] { return gesture.write(hand.y(), values, 1 + any(2), band); },
            [&] { return gesture.write(hand.y(), values, 2, band); },
            [&] { return gesture.end(); },
            [&] { return gesture.notch(hand.y(), values[0], band); },
            [&] { return hand.y().setValue(values[0]); },
            [&] { return hand.client().undo(1 + any(3)); },
            [&] { return hand.client().redo(1 + any(3)); },
            [&] { return hand.client().swapAB(kRegistry); },
            [&] { return hand.client().copyToAlternate(kRegistry); },
            [&] { return hand.client().activateRomPreset(kRegistry, any(wrapper_->paramRegistry()->romCount())); },
            [&] { return hand.client().resetState(kRegistry); },
            [&] {
                return hand.editor->findObject("ui.sel")->setAttribute("group-index", CAttributeValue::fromInt(any(2)));
            },
        };
        EXPECT_EQ(firstLine(moves[static_cast<size_t>(any(std::size(moves)))]()), "");
    }
    void hostMoves() {
        switch (any(4)) {
            case 0:
                wrapper_->setParameter(any(18), static_cast<float>(any(101)) / 100.0f);
                break;
            case 1:
                wrapper_->setProgram(any(8));
                break;
            case 2: {
                void* data = nullptr;
                const int32_t size = wrapper_->getChunk(&data, true);
                const std::string chunk(static_cast<const char*>(data), static_cast<size_t>(size));
                EXPECT_EQ(wrapper_->setChunk(chunk.data(), static_cast<intptr_t>(chunk.size()), true), 1);
                break;
            }
            default:
                pumpEvents();
        }
    }
    void reopen(CHand& hand) {
        // The gesture's end comes before or behind that of its editor.
        if (any(2) == 0) {
            hand.gesture.reset();
        }
        hand.editor = makeEditor();
        hand.gesture = std::make_unique<CParamGesture>();
    }
    /// Follows what the host heard; false at the first that does not fit.
    bool follow() {
        for (const std::string& line : take()) {
            ++lines_;
            const std::string what = line.substr(0, line.find(' '));
            const int index = std::atoi(line.c_str() + what.size() + 1);
            const bool isOpen = open_.count(index) > 0;
            EXPECT_EQ(isOpen, what != "begin") << line;
            if (isOpen != (what != "begin")) {
                return false;
            }
            if (what == "begin") {
                open_.insert(index);
            } else if (what == "end") {
                open_.erase(index);
            }
        }
        return true;
    }

    std::mt19937 random_{4711};
    std::set<int> open_;
    int32_t lines_ = 0;
};

TEST_F(RandomGestures, EachEditIsBegunOnceAndEndedOnceAroundItsValues) {
    editor_.reset();
    CHand hands[2];
    reopen(hands[0]);
    reopen(hands[1]);
    const int32_t steps = std::getenv("TARV_LONG") ? 200000 : 4000;
    for (int32_t step = 0; step < steps; ++step) {
        const int32_t what = any(40);
        if (what == 0) {
            reopen(hands[any(2)]);
        } else if (what < 12) {
            hostMoves();
        } else {
            move(hands[any(2)]);
        }
        ASSERT_TRUE(follow()) << "step " << step;
        if (!hands[0].gesture->isActive() && !hands[1].gesture->isActive()) {
            ASSERT_TRUE(open_.empty()) << "step " << step;
        }
    }
    for (CHand& hand : hands) {
        hand = {};
    }
    EXPECT_TRUE(follow());
    EXPECT_TRUE(open_.empty());
    EXPECT_GT(lines_, steps) << "the host has heard something";
}

}  // namespace
}  // namespace tarv
