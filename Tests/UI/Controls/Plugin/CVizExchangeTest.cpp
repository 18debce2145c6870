#include "UI/Controls/Plugin/CVizExchange.h"

#include "Audio/Visuals/CAudioVizCollector.h"
#include "PluginTree.h"

namespace tarv {
namespace {

/// Keeps the levels that it is given, and counts frames.
struct CLevels final : CVizView {
    CError* takeVizData(const CAudioVizData& data) override {
        if (const auto* meter = dynamic_cast<const CAudioVizDataMeter*>(&data)) {
            levels.push_back(meter->level);
        }
        if (onData) {
            onData();
        }
        return nullptr;
    }
    CError* endVizFrame() override {
        ++frames;
        return nullptr;
    }
    std::vector<double> levels;
    int frames = 0;
    std::function<void()> onData;
};

/// An exchange, and a source in the place of a process of the graph.
struct VizExchange : CPluginTest {
    VizExchange() {
        // A source needs a parameter that switches it; that of the noise serves.
        source_ = collector().addSource("plugin.modMain.denorm", CAudioVizKind::Meter);
        instance().paramCollector()->findParam("plugin.modMain.denorm-enable")->setValue(0, 0, 1.0);
        // As the host does before it runs blocks.
        collector().start();
    }
    CAudioVizCollector& collector() { return *instance().interfaceBase()->vizCollector(); }
    CVizExchange& make(const CTexts& attributes = {}) {
        load("", {{"ui:viz-exchange", "viz", attributes}});
        return dynamic_cast<CVizExchange&>(object("viz"));
    }
    bool isEnabled() { return collector().isEnabled(); }
    /// A block of the host, a tenth of a second later; false: no record was made.
    bool play(double level) {
        seconds_ += 0.1;
        collector().setPosition(seconds_);
        auto* record = static_cast<CAudioVizDataMeter*>(source_->beginRecord());
        if (!record) {
            return false;
        }
        record->level = level;
        source_->endRecord();
        return true;
    }

    CAudioVizSource* source_ = nullptr;
    double seconds_ = 0.0;
};

TEST_F(VizExchange, NeedsItsClient) {
    EXPECT_EQ(tryLoad("", {{"ui:viz-exchange", "no", {{"interface-client", "ui.nothing"}}}}),
              "No interfacing object 'ui.nothing' found.");
}

TEST_F(VizExchange, IsOnFromItsFirstViewToItsLast) {
    CVizExchange& viz = make();
    system_.pump();
    EXPECT_FALSE(isEnabled());
    EXPECT_FALSE(play(1.0)) << "without a view nothing is measured";
    CLevels one;
    CLevels two;
    EXPECT_EQ(consumed(viz.addView(one)), "");
    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(consumed(viz.addView(two)), "");
    EXPECT_EQ(consumed(viz.addView(two)), "");
    EXPECT_EQ(viz.viewCount(), 2);
    viz.removeView(one);
    EXPECT_TRUE(isEnabled());
    viz.removeView(two);
    EXPECT_FALSE(isEnabled());
    viz.removeView(two);
    EXPECT_EQ(viz.viewCount(), 0);
    EXPECT_EQ(history(), "");
}

TEST_F(VizExchange, EachViewGetsEachRecordAtTheRateOfTheEnvironment) {
    CVizExchange& viz = make({{"interface-client", "ui.interface-client"}});
    CLevels one;
    CLevels two;
    EXPECT_EQ(consumed(viz.addView(one)), "");
    EXPECT_EQ(consumed(viz.addView(two)), "");
    system_.pump();
    EXPECT_TRUE(play(0.25));
    EXPECT_TRUE(play(0.5));
    EXPECT_TRUE(one.levels.empty()) << "until the next tick";
    turn(1.0 / 30.0 + 0.001);
    EXPECT_EQ(one.levels, (std::vector<double>{0.25, 0.5}));
    EXPECT_EQ(two.levels, one.levels);
    EXPECT_EQ(one.frames, 1);
    turn(1.0);
    EXPECT_EQ(one.frames, 1) << "nothing gathered";
    EXPECT_TRUE(play(0.75));
    turn(0.1);
    EXPECT_EQ(one.levels.back(), 0.75);
    EXPECT_EQ(one.frames, 2);
}

TEST_F(VizExchange, ASourceMayBeAskedForByItsName) {
    CVizExchange& viz = make({{"source", "spectrum"}});
    CLevels view;
    EXPECT_EQ(consumed(viz.addView(view)), "");
    system_.pump();
    EXPECT_TRUE(play(0.25));
    turn(0.1);
    EXPECT_TRUE(view.levels.empty());
    EXPECT_EQ(view.frames, 0);
}

TEST_F(VizExchange, AViewMayLeaveInACall) {
    CVizExchange& viz = make();
    CLevels one;
    CLevels two;
    EXPECT_EQ(consumed(viz.addView(one)), "");
    EXPECT_EQ(consumed(viz.addView(two)), "");
    system_.pump();
    one.onData = [&] {
        viz.removeView(one);
        viz.removeView(two);
    };
    EXPECT_TRUE(play(0.25));
    turn(0.1);
    EXPECT_EQ(one.levels.size(), 1u);
    EXPECT_TRUE(two.levels.empty());
    EXPECT_FALSE(isEnabled());
    EXPECT_EQ(consumed(viz.addView(two)), "");
    system_.pump();
    EXPECT_TRUE(play(0.5));
    turn(0.1);
    EXPECT_EQ(two.levels, (std::vector<double>{0.5}));
    viz.removeView(two);
}

TEST_F(VizExchange, MayBeDestroyedInACallAndIsOffThen) {
    CVizExchange& viz = make();
    CLevels view;
    EXPECT_EQ(consumed(viz.addView(view)), "");
    system_.pump();
    view.onData = [&viz] { delete &viz; };
    EXPECT_TRUE(play(0.25));
    turn(0.1);
    EXPECT_EQ(view.levels.size(), 1u);
    EXPECT_FALSE(isEnabled());
}

TEST_F(VizExchange, TheEndOfTheEditorSwitchesItOff) {
    CVizExchange& viz = make();
    CLevels view;
    EXPECT_EQ(consumed(viz.addView(view)), "");
    EXPECT_TRUE(isEnabled());
    editor_.reset();
    EXPECT_FALSE(isEnabled());
}

}  // namespace
}  // namespace tarv
