// The lines of hints: all hints of the product fit into them, and what does not fit elsewhere stands whole in a hint.

#include <set>

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "ProductEditor.h"

namespace tarv {

namespace {

class Hints : public CProductEditor {
protected:
    explicit Hints(double scale = 1.0) : CProductEditor(scale, {0, 0, 1900, 1200}) {}

    struct CHint {
        CString text;
        bool isPlain;
    };
    static void collect(const CView& view, std::vector<CHint>& hints) {
        if (!view.hint().isEmpty()) {
            hints.push_back({view.hint(), view.isHintPlain()});
        }
        for (const CObject* child : view.children()) {
            if (const auto* below = dynamic_cast<const CView*>(child)) {
                collect(*below, hints);
            }
        }
    }
    /// Each hint of an open window is shown whole in its line.
    void expectFit(const char* root) {
        std::vector<CHint> hints;
        collect(at(root), hints);
        EXPECT_FALSE(hints.empty()) << root;
        auto& label = at<CTextView>(std::string(root) + ".window-status.label");
        auto* window = dynamic_cast<CWindow*>(at(root).window());
        for (const CHint& hint : hints) {
            hint.isPlain ? window->setPlainHint(hint.text) : window->setHint(hint.text);
            wait(0.05);
            const CTextLayout& layout = label.layout();
            ASSERT_GT(layout.lineCount(), 0);
            int32_t bottom = 0;
            for (int32_t i = 0; i < layout.lineCount(); ++i) {
                const CTextLine& line = layout.line(i);
                EXPECT_EQ(label.shownItems(line), line.count) << root << ": " << hint.text.toUtf8();
                EXPECT_LE(line.width, label.visibleRect().width) << root << ": " << hint.text.toUtf8();
                bottom = line.bottom();
            }
            EXPECT_LE(bottom, label.visibleRect().height) << root << ": " << hint.text.toUtf8();
        }
        window->setHint(CString());
    }
    void expectAllFit() {
        expectFit("ui.main-window");
        click("c.buttons.channel-routing");
        expectFit("ui.win-channel-routing");
        for (const char* panel : {"input-routing", "group-assignments"}) {
            click(std::string("ui.win-channel-routing.c.") + panel + ".names");
            const char* window =
                exists("ui.win-group-name-setup") ? "ui.win-group-name-setup" : "ui.win-channel-label-setup";
            expectFit(window);
            click(std::string(window) + ".c.buttons.cancel");
        }
        click("ui.win-channel-routing.c.buttons.routing-presets");
        expectFit("ui.win-preset-manager-routing");
        click("ui.win-preset-manager-routing.window-title.close");
        click("ui.win-channel-routing.window-title.close");
        click("c.buttons.preset-manager");
        expectFit("ui.win-preset-manager");
        click("ui.win-preset-manager.window-title.close");
        click("c.buttons.settings");
        expectFit("ui.win-settings");
        click("ui.win-settings.c.settings.global-settings");
        expectFit("ui.win-global-settings");
    }
    std::string shown(const char* root = "ui.main-window") {
        return at<CTextView>(std::string(root) + ".window-status.label").paragraphText(0).toUtf8();
    }
    void setText(const char* param, int32_t element, const char* text) {
        wrapper()
            .paramCollector()
            ->findParam((std::string("plugin.modMain.") + param).c_str())
            ->setText(0, element, text);
        wait();
    }
};

class HintsAt80 : public Hints {
protected:
    HintsAt80() : Hints(0.8) {}
};
class HintsAt125 : public Hints {
protected:
    HintsAt125() : Hints(1.25) {}
};

TEST_F(Hints, AllFitIntoTheirLine) {
    expectAllFit();
}

TEST_F(HintsAt80, AllFitIntoTheirLine) {
    expectAllFit();
}

TEST_F(HintsAt125, AllFitIntoTheirLine) {
    expectAllFit();
}

TEST_F(Hints, OneThatDoesNotFitEndsInAnEllipsis) {
    auto& label = at<CTextView>("window-status.label");
    dynamic_cast<CWindow*>(at("ui.main-window").window())->setPlainHint(CString(std::string(400, 'm').c_str()));
    wait();
    EXPECT_LT(label.shownItems(label.layout().line(0)), 400);
}

TEST_F(Hints, ANameThatIsShortenedStandsWholeInTheHint) {
    const std::string longest = "Instance of [B]48{x};_characters_in_all__________.";
    click("window-title.instance-name.readout");
    type(std::u16string(longest.begin(), longest.end()).substr(0, 48));
    point("window-title.bypass");
    point("window-title.instance-name.readout");
    wait();
    EXPECT_EQ(shown(), longest.substr(0, 48) + ". Name of this plug-in instance.");
    click("window-title.instance-name.readout");
    type(u"Short");
    point("window-title.bypass");
    point("window-title.instance-name.readout");
    wait();
    EXPECT_EQ(shown(), "Name of this plug-in instance.");
}

TEST_F(Hints, NamesOfChannelsAndGroupsStandWholeInTheHintsOfTheRouting) {
    setText("io-params.in-channel-names", 0, "WWWWWWWW");
    setText("io-params.group-names", 0, "WWWWWWWWWWWW");
    click("c.buttons.channel-routing");
    const std::string window = "ui.win-channel-routing";
    const auto hintAt = [&](const std::string& path) {
        point(window + path);
        wait();
        return shown(window.c_str());
    };
    EXPECT_EQ(hintAt(".c.group-assignments.fields.object"),
              "WWWWWWWWWWWW. The channel group whose settings each internal channel takes.");
    EXPECT_EQ(hintAt(".c.input-routing.fields.object"),
              "WWWWWWWW. The host's input that each internal channel receives.");
    EXPECT_TRUE(hintAt(".c.channels.titles.object").find("WWWWWWWW") != std::string::npos);
    EXPECT_EQ(hintAt(".c.group-assignments.fields.object.arrow"),
              "WWWWWWWWWWWW. The channel group whose settings each internal channel takes.");
}

}  // namespace

}  // namespace tarv
