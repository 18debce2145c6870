// Names of channels and groups in windows of the system: typed, taken from the host, copied, dropped.

#include <cstring>

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

struct CNamesRow {
    const char* window;
    const char* panel;
    const char* param;
};
constexpr CNamesRow kChannels{"ui.win-channel-label-setup", "input-routing", "io-params.in-channel-names"};
constexpr CNamesRow kGroups{"ui.win-group-name-setup", "group-assignments", "io-params.group-names"};

class ProductNames : public ProductWindow {
protected:
    void openNames(const CNamesRow& row) {
        if (!twin->exists("ui.win-channel-routing")) {
            click("c.buttons.channel-routing");
            point("window-title.label");
        }
        click(std::string("ui.win-channel-routing.c.") + row.panel + ".names");
        expectSame("names opened");
    }
    /// The first one of that name in the window.
    std::string part(const CNamesRow& row, const char* name) {
        const CObject* found = find(twin->at<CObject>(row.window), name);
        EXPECT_TRUE(found) << name;
        return found ? found->fullName().toUtf8() : "";
    }
    void typeName(const CNamesRow& row, int32_t index, const std::string& name) {
        const CObject* names = find(twin->at<CObject>(row.window), "names");
        int32_t left = index;
        for (const CObject* child : names->children()) {
            const CObject* field = child->findChild("name");
            if (field && left-- == 0) {
                if (!dynamic_cast<const CTextView&>(*field).editBox()) {
                    click(field->fullName().toUtf8());
                }
                type(name);
                strike('\r');
                return;
            }
        }
        ADD_FAILURE() << "no name " << index;
    }
    std::string name(const CNamesRow& row, int32_t index) { return twin->engineText(row.param, index); }

private:
    static const CObject* find(const CObject& in, const char* name) {
        for (const CObject* child : in.children()) {
            if (child->name() == CString(name)) {
                return child;
            }
            if (const CObject* below = find(*child, name)) {
                return below;
            }
        }
        return nullptr;
    }
};

TEST_F(ProductNames, ThatAreTypedAreSetByOkInOneStepAndDroppedByCancel) {
    for (const CNamesRow& row : {kChannels, kGroups}) {
        const std::string before = effect.chunk(false);
        const std::string former = name(row, 0);
        openNames(row);
        typeName(row, 0, "Brass 1");
        expectSame("a name typed");
        click(part(row, "cancel"));
        expectSame("names dropped");
        EXPECT_EQ(name(row, 0), former);
        EXPECT_EQ(effect.chunk(false), before);
        openNames(row);
        typeName(row, 0, "Violas");
        typeName(row, 1, "Horns");
        click(part(row, "ok"));
        expectSame("names set");
        EXPECT_EQ(name(row, 0), "Violas");
        EXPECT_EQ(name(row, 1), "Horns");
        expectSameState();
        click("c.buttons.history.button-undo");
        expectSame("names undone");
        EXPECT_EQ(name(row, 0), former);
        expectSameState();
    }
    EXPECT_EQ(desk.heard(parent), "") << "what is typed never comes to the host";
    EXPECT_EQ(heardGestures(), "");
}

TEST_F(ProductNames, AreCopiedAndPastedByTheSystemsClipboard) {
    openNames(kGroups);
    click(part(kGroups, "copy"));
    typeName(kGroups, 1, "Horns");
    click(part(kGroups, "paste"));
    expectSame("names pasted");
    typeName(kGroups, 0, "Drums");
    click(part(kGroups, "ok"));
    expectSame("names set");
    EXPECT_EQ(name(kGroups, 0), "Drums");
    EXPECT_EQ(name(kGroups, 1), "2");
    expectSameState();
}

TEST_F(ProductNames, OfTheHostAreTakenOver) {
    vst::SpeakerArrangement speakers{};
    speakers.type = vst::kArrangementUserDefined;
    speakers.numChannels = 2;
    std::strcpy(speakers.speakers[0].name, "Near");
    std::strcpy(speakers.speakers[1].name, "Far");
    const auto input = reinterpret_cast<intptr_t>(&speakers);
    EXPECT_EQ(effect.dispatch(vst::kEffectSetSpeakerArrangement, 0, input, &speakers), 1);
    twin->effect().dispatcher(&twin->effect(), vst::kEffectSetSpeakerArrangement, 0, input, &speakers, 0.0F);
    openNames(kChannels);
    click(part(kChannels, "import"));
    expectSame("the host's names");
    click(part(kChannels, "ok"));
    expectSame("the host's names set");
    EXPECT_EQ(name(kChannels, 0), "Near");
    EXPECT_EQ(name(kChannels, 1), "Far");
    expectSameState();
}

}  // namespace
}  // namespace tarv::host
