// Two instances with open managers, at random: what the lists show is what the registries and the store hold.

#include <random>

#include "Tests/UI/Controls/Presets/ManagerTree.h"

namespace tarv {
namespace {

class RandomPresets : public CManagerTest {
protected:
    struct CSide {
        CHostlessInstance* instance;
        CPresetEditor* editor;
    };
    RandomPresets() : second_(makeInstance()), other_(openManager(second_.get())) {
        sides_ = {{instance_.get(), editor_.get()}, {second_.get(), other_.get()}};
    }
    ~RandomPresets() override {
        other_.reset();
        second_.reset();
    }

    int32_t number(int32_t end) { return end > 0 ? static_cast<int32_t>(random_() % static_cast<uint32_t>(end)) : 0; }
    std::string name() {
        static const char* const kNames[] = {"a", "b", "[B]x", "{y}", "Preset 1", "Bank 1", "Session Bank", "a: b", ""};
        return kNames[number(9)];
    }
    /// Without a picture being drawn.
    void send(const CSide& side, const char* event, const CTexts& texts = {}) {
        CAttributeMap params;
        for (const auto& [key, text] : texts) {
            params[key.c_str()] = CAttributeValue::fromPlainString(text.c_str());
        }
        // Refused edits of what the other one has changed are shown as messages, and are no failure here.
        delete deliverEvent(managerOf(*side.editor), event, params);
    }
    void selectRow(const CSide& side, const char* which) {
        CTextView& of = list(managerOf(*side.editor), which);
        EXPECT_EQ(firstLine(of.setAttribute("selected-paragraph",
                                            CAttributeValue::fromInt(number(of.paragraphCount() + 1) - 1))),
                  "");
        CAttributeMap none;
        EXPECT_EQ(firstLine(of.passEvent("selected-paragraph-changed", none)), "");
    }
    void actByManager(const CSide& side) {
        static const char* const kEvents[] = {"bank-add",       "bank-delete",     "bank-rename",
                                              "preset-add",     "preset-delete",   "preset-rename",
                                              "preset-replace", "preset-activate", "perform-preset-replace",
                                              "preset-add",     "bank-add",        "perform-preset-set-default"};
        const CTextView& banks = list(managerOf(*side.editor), "banks");
        const CTextView& presets = list(managerOf(*side.editor), "presets");
        const char* event = kEvents[number(12)];
        const bool isBank = std::string(event).starts_with("bank");
        if (banks.paragraphCount() > 8 && std::string(event) == "bank-add") {
            event = "bank-delete";
        }
        if (presets.paragraphCount() > 12 && std::string(event) == "preset-add") {
            event = "preset-delete";
        }
        const int32_t row = number((isBank ? banks : presets).paragraphCount());
        send(side, event, {{"index", std::to_string(row)}, {"text", name()}, {"is-insert", std::to_string(number(2))}});
    }
    void actByFile(const CSide& side) {
        static const char* const kEvents[] = {"perform-bank-save", "perform-bank-load", "perform-preset-save",
                                              "perform-preset-load"};
        const int32_t event = number(4);
        send(side, kEvents[event], {{"path", path(event < 2 ? "x.cbf" : "x.cpf")}});
    }
    void actByHost(const CSide& side) {
        CAudioParamRegistry& registry = *side.instance->paramRegistry();
        const int32_t index = number(registry.programCount());
        switch (number(9)) {
            case 0:
                return registry.selectProgram(index);
            case 1:
                return registry.addProgram(index, name().c_str());
            case 2:
                return registry.programCount() > 1 ? registry.deleteProgram(index) : void();
            case 3:
                return registry.renameProgram(index, name().c_str());
            case 4:
                return registry.swapAB();
            case 5:
                return registry.copyToAlternate();
            case 6:
                delete side.instance->getState(chunk_, number(2) == 0);
                return;
            case 7:
                delete sides_[static_cast<size_t>(number(2))].instance->setState(chunk_.data(), chunk_.count(),
                                                                                 number(2) == 0, true);
                return;
            default:
                delete (number(2) == 0 ? side.editor->client().undo() : side.editor->client().redo());
                return;
        }
    }
    /// Closes what has opened, so that the managers go on.
    void closePopups() {
        for (const CSide& side : sides_) {
            for (const char* window : {"win-confirmation", "win-message"}) {
                if (auto* popup = side.editor->find<CView>(window)) {
                    CAttributeMap none;
                    delete popup->passEvent("close-window", none);
                    system_.advance(0.05);
                }
            }
        }
    }
    static std::string rows(const CTextView& of) {
        std::string text;
        for (int32_t i = 0; i < of.paragraphCount(); ++i) {
            text += of.paragraphText(i).toUtf8() + '|';
        }
        return text;
    }
    static std::string row(const CString& name) { return (name.isEmpty() ? "---" : name.toUtf8()) + '|'; }
    /// What a manager's lists are to show.
    void check(const CSide& side, int32_t step) {
        CPresetManager& manager = managerOf(*side.editor);
        const CTextView& banks = list(manager, "banks");
        const CTextView& presets = list(manager, "presets");
        CAudioPresetStore stored(
            *CAudioPresetStore::findForm(kBanks), [](void*) {}, nullptr);
        std::string expected = "Session Bank|Factory ROM|";
        for (int32_t i = 0; i < stored.banks().count(); ++i) {
            expected += row(stored.banks().bank(i).name());
        }
        ASSERT_EQ(rows(banks), expected) << "step " << step;
        const CAudioParamRegistry& registry = *side.instance->paramRegistry();
        const int32_t bank = banks.selectedParagraph();
        ASSERT_LT(bank, banks.paragraphCount()) << "step " << step;
        expected.clear();
        for (int32_t i = 0; bank == 0 && i < registry.programCount(); ++i) {
            expected += row(registry.programName(i));
        }
        for (int32_t i = 0; bank == 1 && i < registry.romCount(); ++i) {
            expected += row(registry.romName(i));
        }
        for (int32_t i = 0; bank > 1 && i < stored.banks().bank(bank - 2).count(); ++i) {
            expected += row(stored.banks().bank(bank - 2).preset(i).displayName());
        }
        ASSERT_EQ(rows(presets), expected) << "step " << step << ", bank " << bank;
        const bool isSelected = presets.selectedParagraph() >= 0;
        ASSERT_EQ(manager.findObject(".preset-buttons.activate")->getAttrBool("is-disabled"), !isSelected)
            << "step " << step;
    }

    std::mt19937 random_{4711};
    CByteBuffer chunk_;
    std::unique_ptr<CHostlessInstance> second_;
    std::unique_ptr<CPresetEditor> other_;
    std::vector<CSide> sides_;
};

TEST_F(RandomPresets, ListsShowWhatRegistriesAndTheStoreHold) {
    const int32_t steps = getenv("TARV_LONG") ? 30000 : 600;
    for (int32_t step = 0; step < steps && !HasFatalFailure(); ++step) {
        const CSide& side = sides_[static_cast<size_t>(number(2))];
        switch (number(8)) {
            case 0:
                selectRow(side, "banks");
                break;
            case 1:
                selectRow(side, "presets");
                break;
            case 2:
            case 3:
                actByHost(side);
                break;
            case 4:
                actByFile(side);
                break;
            default:
                actByManager(side);
                break;
        }
        if (number(3) > 0) {
            // Otherwise the next step meets what has not arrived yet.
            while (system_.pump() > 0) {
            }
            closePopups();
            for (const CSide& each : sides_) {
                check(each, step);
            }
        }
    }
}

}  // namespace
}  // namespace tarv
