// What holds at rest, whatever has happened.

#include <sstream>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "HostileSession.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/Keyboard.h"
#include "UI/Binding/CParamBridgeAudio.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Buttons/CButton.h"
#include "UI/Controls/Buttons/CReadOut.h"
#include "UI/Controls/Lists/CValueList.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Views/CView.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

template <class T, class Call>
void forEach(CObject& object, Call&& call) {
    if (auto* found = dynamic_cast<T*>(&object)) {
        call(*found);
    }
    for (CObject* child : object.children()) {
        forEach<T>(*child, call);
    }
}

/// What an editor shows, a line a view: its title, states and place.
std::string shownBy(CWindow& main) {
    std::ostringstream text;
    forEach<CView>(main.view(), [&](CView& view) {
        if (!view.isShown()) {
            return;
        }
        const CViewRect& box = view.area().box();
        text << view.fullName().toUtf8() << " '" << view.getAttrString("title").toUtf8() << "' " << box.x << ' '
             << box.y << ' ' << box.width << ' ' << box.height;
        for (const char* state : {"active", "pushed", "hover", "focus", "hilite", "error", "b-state"}) {
            text << (view.isStateSet(state) ? std::string(" ") + state : std::string());
        }
        text << (view.isDisabled() ? " disabled" : "") << '\n';
    });
    return text.str();
}

/// Where two pictures differ, empty for nowhere.
std::string difference(const CPictureByHand& a, const CPictureByHand& b) {
    if (a.width != b.width || a.height != b.height) {
        return "of another size";
    }
    CIntRect rect{a.width, a.height, 0, 0};
    for (int32_t y = 0; y < a.height; ++y) {
        for (int32_t x = 0; x < a.width; ++x) {
            if (a.at(x, y) != b.at(x, y)) {
                rect = {std::min(rect.left, x), std::min(rect.top, y), std::max(rect.right, x + 1),
                        std::max(rect.bottom, y + 1)};
            }
        }
    }
    std::ostringstream text;
    text << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom;
    return rect.right == 0 ? std::string() : text.str();
}

}  // namespace

void CHostileSession::calm() {
    CInputByHand& input = system_.input();
    for (const auto& each : sides_) {
        each->meanwhile = nullptr;
    }
    input.release(CPointerButton::Left);
    input.release(CPointerButton::Right);
    input.holdKeys(false, false, false);
    input.move(5, 5);
    system_.advance(0.5);
    for (const auto& each : sides_) {
        // One that asks something stands in the way of the others.
        for (size_t left = 20; left > 0 && each->windows().size() > 1; --left) {
            each->windows().back()->requestClose();
            system_.advance(0.2);
        }
        EXPECT_LE(each->windows().size(), 1u);
    }
    input.tap(kKeyEscape);
    system_.advance(1.0);
}

void CHostileSession::rest() {
    calm();
    openAll();
    system_.advance(1.0);
    for (const auto& each : sides_) {
        ASSERT_TRUE(each->mainWindow());
        EXPECT_EQ(each->faults(), "");
        EXPECT_EQ(each->openEdits(), "");
        expectValues(*each);
        expectHistory(*each);
        expectNothingHeld(*each);
        expectFreshInstanceEqual(*each);
    }
    if (!HasFailure()) {
        expectSameWhenReopened(anySide());
    }
    answerCalls();
    if (!HasFailure()) {
        trace_.clear();
    }
}

/// What bridges hold is what the engine holds, and what controls show is what bridges hold.
void CHostileSession::expectValues(CHostileSide& of) {
    CObject& tree = *of.mainWindow()->root();
    forEach<CParamBridgeAudio>(tree, [&](CParamBridgeAudio& bridge) {
        const std::string name = bridge.getAttrString("param").toUtf8();
        const CAudioParam* param = of.wrapper().paramCollector()->findParam(CString(name.c_str()));
        ASSERT_TRUE(param && bridge.isActive()) << name;
        for (int32_t group = 0; group < bridge.groupCount(); ++group) {
            for (int32_t i = 0; i < bridge.elementCount(group); ++i) {
                if (param->info().isString()) {
                    EXPECT_EQ(bridge.valueText(group, i, CAudioTextMode::Full), param->text(group, i)) << name;
                } else {
                    EXPECT_EQ(bridge.value(group, i), param->info().converter(0)->valueToShown(param->value(group, i)))
                        << name << ' ' << group << ' ' << i;
                }
            }
        }
    });
    forEach<CButton>(tree, [&](CButton& button) {
        if (const CUIParam* param = button.valueParam(); param && param->isActive()) {
            EXPECT_EQ(button.isStateSet("active"), (param->getValue() != 0.0) != button.getAttrBool("is-inverse"))
                << button.fullName().toUtf8();
        }
    });
    forEach<CReadOut>(tree, [&](CReadOut& readout) {
        if (const CUIParam* param = readout.valueParam(); param && param->bridge() && param->bridge()->isActive()) {
            EXPECT_FALSE(readout.isDisabled()) << readout.fullName().toUtf8();
        }
    });
    forEach<CControlSurface>(tree, [&](CControlSurface& surface) {
        EXPECT_FALSE(surface.isDragging() || surface.gesture().isActive()) << surface.fullName().toUtf8();
        for (int32_t g = 0; g < surface.groupCount(); ++g) {
            const CControlSurfaceGroup& group = surface.group(g);
            for (int32_t i = 0; i < group.count(); ++i) {
                EXPECT_EQ(group.barValue(i), group.paramValue(group.barRole(), i))
                    << group.fullName().toUtf8() << ' ' << i;
            }
        }
    });
}

void CHostileSession::expectHistory(CHostileSide& of) {
    int32_t position = 0;
    const auto labels = of.wrapper().interfaceBase()->getStepLabels(&position);
    CObject& tree = *of.mainWindow()->root();
    const auto& list = *tree.findObjectOf<CValueList>("ui.main-window.c.buttons.history.history-list");
    ASSERT_EQ(list.count(), labels.count());
    for (int32_t i = 0; i < labels.count(); ++i) {
        EXPECT_EQ(list[labels.count() - 1 - i].title, labels[i]);
        EXPECT_EQ(list[labels.count() - 1 - i].isDimmed, i > position);
    }
    const std::string history = "ui.main-window.c.buttons.history.";
    EXPECT_EQ(tree.findObjectOf<CView>((history + "button-undo").c_str())->isDisabled(), position == 0);
    EXPECT_EQ(tree.findObjectOf<CView>((history + "button-redo").c_str())->isDisabled(),
              position + 1 == labels.count());
}

void CHostileSession::expectNothingHeld(CHostileSide& of) {
    forEach<CView>(*of.mainWindow()->root(), [&](CView& view) {
        for (const char* state : {"hover", "pushed", "temp-pushed"}) {
            EXPECT_FALSE(view.isStateSet(state)) << view.fullName().toUtf8() << ' ' << state;
        }
    });
    forEach<CControlSurface>(*of.mainWindow()->root(), [&](CControlSurface& surface) {
        EXPECT_TRUE(surface.selectedPoint() < 0 || surface.window()->keyFocusView() == &surface)
            << surface.fullName().toUtf8() << " marks " << surface.selectedPoint();
    });
    EXPECT_EQ(system_.desktop().capture(), 0u);
}

void CHostileSession::expectSameWhenReopened(CHostileSide& of) {
    // What was chosen for the next start waits for it.
    CLocalData::instance().writeText("ui-scale", CString::fromDouble(CApplication::uiScale(), 4));
    // The button of a bypass that is on pulses.
    of.setParameter(0, 0.0f);
    of.mainWindow()->setKeyFocusView(nullptr);
    system_.advance(1.0);
    const auto picture = [&] {
        system_.pump();
        return system_.desktop().find(of.mainWindow()->handle())->picture();
    };
    const std::string before = shownBy(*of.mainWindow());
    const CPictureByHand seen = picture();
    const std::string chunk = of.chunk(false);
    of.closeEditor();
    of.openEditor();
    system_.advance(1.0);
    ASSERT_TRUE(of.mainWindow());
    EXPECT_EQ(shownBy(*of.mainWindow()), before);
    EXPECT_EQ(difference(picture(), seen), "");
    EXPECT_EQ(of.chunk(false), chunk);
    EXPECT_EQ(of.openEdits() + of.faults(), "");
}

void CHostileSession::expectFreshInstanceEqual(CHostileSide& of) {
    CHostileSide fresh(system_, 0, 1);
    for (const bool isProgram : {false, true}) {
        const std::string chunk = of.chunk(isProgram);
        EXPECT_TRUE(fresh.setChunk(chunk, isProgram));
        EXPECT_EQ(fresh.chunk(isProgram), chunk) << isProgram;
    }
}

}  // namespace tarv
