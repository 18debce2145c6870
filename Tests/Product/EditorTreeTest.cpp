#include <typeinfo>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "EditorViews.h"

namespace tarv {

namespace {

struct CBridgeRow {
    const char* name;
    const char* param;  ///< below plugin.modMain
};

const std::vector<CBridgeRow> kBridges = {
    {"bypass-bridge", "modBypass.enable"},
    {"instance-name-bridge", "instance-name"},
    {"host-quality-bridge", "host-oversampling-mode"},
    {"host-offline-bridge", "host-offline"},
    {"host-latency-change-bridge", "host-latency-change"},
    {"globmeter-rmstime-bridge", "meter-rmstime"},
    {"globmeter-releasetime-bridge", "meter-releasetime"},
    {"globmeter-peaktime-bridge", "meter-peaktime"},
    {"quality-bridge", "oversampling"},
    {"denorm-bridge", "denorm-enable"},
    {"in-channel-names-bridge", "io-params.in-channel-names"},
    {"group-names-bridge", "io-params.group-names"},
    {"in-routing-bridge", "io-params.in-routing"},
    {"out-routing-bridge", "io-params.out-routing"},
    {"grouping-bridge", "io-params.grouping"},
    {"group-solo-bridge", "io-params.channel-group-solo"},
    {"ms-pairs-bridge", "io-params.ms-pairs"},
};

const std::vector<CBridgeRow> kEqualizerBridges = {
    {"xeq-band-count-bridge", "modBrindleXEQ.band-count"},
    {"xeq-bridge", "modBrindleXEQ.xeq-gains"},
    {"xeq-freq-bridge", "modBrindleXEQ.xeq-freqs"},
    {"xeq-gain-bridge", "modOutGain.gain"},
};

constexpr const char* kClient = "ui.interface-client";

/// The settings are in the table of their own, what the main window holds in that of its views.
const std::vector<CObjectRow> kBeforeSettings = {
    {"viz-exchange", "ui:viz-exchange", {{"interface-client", kClient}}},
};
const std::vector<std::pair<const char*, const char*>> kSettings = {{"global-data", "core:object"},
                                                                    {"local-data", "core:object"},
                                                                    {"window-shared-data", "ui:window-shared-data"},
                                                                    {"global-settings", "core:global-settings"}};
const std::vector<CObjectRow> kBehindSettings = {
    {"color-swatch", "ui:color-swatch", {}},
    {"color-swatch-spectrum", "ui:color-swatch", {}},
    {"groupsel", "ui:param-group-selector", {{"group-index", "0"}}},
    {"groupsel-eq-a", "ui:param-group-selector", {{"group-index", "0"}}},
    {"groupsel-eq-b", "ui:param-group-selector", {{"group-index", "1"}}},
    {"groupsel-eq-au", "ui:param-group-selector", {{"group-index", "1"}}},
    {"groupsel-eq-bu", "ui:param-group-selector", {{"group-index", "0"}}},
};
const std::vector<CObjectRow> kControllers = {
    {"group-ctl-a",
     "ui:param-group-controller",
     {{"interface-client", kClient}, {"group-selector", "ui.groupsel-eq-a"}, {"group-index", "0"}}},
    {"group-ctl-b",
     "ui:param-group-controller",
     {{"interface-client", kClient}, {"group-selector", "ui.groupsel-eq-b"}, {"group-index", "1"}}},
};
const std::vector<CObjectRow> kItems = {
    {"item", "core:object", {{"bridge", "ui.xeq-bridge"}}},
    {"item#1", "core:object", {{"bridge", "ui.xeq-gain-bridge"}}},
    {"item#2", "core:object", {{"bridge", "ui.xeq-freq-bridge"}, {"is-reset-disabled", "true"}}},
};
const std::vector<CObjectRow> kMemory = {
    {"eq-a", "ui:editor-memory-item", {{"target", "ui.groupsel-eq-a"}, {"attr", "group-index"}}},
    {"eq-b", "ui:editor-memory-item", {{"target", "ui.groupsel-eq-b"}, {"attr", "group-index"}}},
    {"eq-au", "ui:editor-memory-item", {{"target", "ui.groupsel-eq-au"}, {"attr", "group-index"}}},
    {"eq-bu", "ui:editor-memory-item", {{"target", "ui.groupsel-eq-bu"}, {"attr", "group-index"}}},
};

CObjectRow bridgeRow(const CBridgeRow& row, std::string& path) {
    path = std::string("plugin.modMain.") + row.param;
    return {row.name, "ui:param-bridge", {{"interface-client", kClient}, {"param", path.c_str()}}};
}

class EditorTree : public CEditorViews {
protected:
    /// The children of an object, one after the other.
    class CChildren {
    public:
        explicit CChildren(const CObject* parent) : parent_(parent) {}
        const CObject* next() { return isAtEnd() ? nullptr : parent_->children()[at_++]; }
        bool isAtEnd() const { return !parent_ || at_ == parent_->children().count(); }

    private:
        const CObject* parent_;
        int32_t at_ = 0;
    };

    static void expectNext(CChildren& children, const std::vector<CObjectRow>& rows) {
        for (const CObjectRow& row : rows) {
            const CObject* object = children.next();
            expectObject(object, row);
            if (object) {
                expectClass(*object, row.tag);
            }
        }
    }
    static void expectNext(CChildren& children, const std::vector<CBridgeRow>& rows) {
        for (const CBridgeRow& row : rows) {
            std::string path;
            expectNext(children, {bridgeRow(row, path)});
            EXPECT_TRUE(shared(std::string("audio.modMain.") + row.param)) << row.param;
        }
    }
    static void expectNamed(const CObject* object, const char* name, const char* tag) {
        ASSERT_TRUE(object) << name;
        EXPECT_EQ(object->name().toUtf8(), name);
        expectClass(*object, tag);
    }
    static void expectChildren(const CObject* parent, const std::vector<CObjectRow>& rows) {
        CChildren children(parent);
        expectNext(children, rows);
        EXPECT_TRUE(children.isAtEnd()) << parent->fullName().toUtf8();
    }
};

TEST_F(EditorTree, HoldsItsObjectsInOrderWithTheirAttributesAndNoOther) {
    const auto editor = makeEditor();
    const CObject* ui = editor->findChild("ui");
    expectNamed(ui, "ui", "ui:ui-event-bridge");
    CChildren children(ui);
    expectNamed(children.next(), "interface-client-connector", "audio:interface-client-connector-vst");
    expectNamed(children.next(), "interface-client", "audio:interface-client");
    expectNext(children, kBridges);
    expectNext(children, kBeforeSettings);
    for (const auto& [name, tag] : kSettings) {
        expectNamed(children.next(), name, tag);
    }
    const CObject* control = children.next();
    expectNamed(control, "plugin-control", "ui:plugin-control");
    EXPECT_EQ(control->getAttrString("interface-client"), CString(kClient));
    EXPECT_EQ(control->getAttrString("param-registry"), CString("plugin.param-registry"));
    expectNext(children, kBehindSettings);
    expectNext(children, kEqualizerBridges);
    expectNext(children, kControllers);
    expectNext(children, {{"editor-memory", "ui:editor-memory", {{"interface-client", kClient}}}});
    expectNamed(children.next(), "main-window", "ui:window-drag");
    EXPECT_TRUE(children.isAtEnd());
}

TEST_F(EditorTree, SharesWhetherHintsAreShown) {
    const auto editor = makeEditor();
    const CObject* data = editor->findObject("ui.window-shared-data");
    expectObject(data, {"window-shared-data", "ui:window-shared-data", {{"is-show-hints", "true"}}});
    CObject* setting = editor->findObject("ui.local-data.ui-show-hints");
    EXPECT_FALSE(setting->setAttribute("show-hints", CString("false")));
    EXPECT_EQ(data->getAttrString("is-show-hints"), CString("false"));
    EXPECT_FALSE(setting->setAttribute("show-hints", CString("true")));
}

TEST_F(EditorTree, SwatchesListTheirColorsByIndex) {
    const auto editor = makeEditor();
    const CObject* swatch = editor->findObject("ui.color-swatch");
    ASSERT_TRUE(swatch);
    ASSERT_EQ(swatch->children().count(), 9);
    for (int32_t i = 0; i < 9; ++i) {
        const std::string index = std::to_string(i);
        const std::string name = "custom" + std::to_string(i + 1);
        const std::string color = "Custom" + std::to_string(i + 1);
        expectObject(
            swatch->children()[i],
            {name.c_str(), "core:object", {{"is-color", "true"}, {"index", index.c_str()}, {"color", color.c_str()}}});
    }
    expectChildren(editor->findObject("ui.color-swatch-spectrum"),
                   {{"main", "core:object", {{"is-color", "true"}, {"index", "0"}, {"color", "SpectrumMain"}}}});
}

TEST_F(EditorTree, ControllersAndTheMemoryNameWhatTheyActOn) {
    const auto editor = makeEditor();
    expectChildren(editor->findObject("ui.group-ctl-a"), kItems);
    expectChildren(editor->findObject("ui.group-ctl-b"), kItems);
    expectChildren(editor->findObject("ui.editor-memory"), kMemory);
}

TEST_F(EditorTree, BeginsWithTheEndsOfTheExchange) {
    const auto editor = makeEditor();
    const CObject* ui = editor->findChild("ui");
    ASSERT_TRUE(ui);
    ASSERT_GE(ui->children().count(), 2);
    expectObject(ui->children()[0], {"interface-client-connector",
                                     "audio:interface-client-connector-vst",
                                     {{"base-connector", "plugin.interface-base-connector"}}});
    expectObject(ui->children()[1], {"interface-client",
                                     "audio:interface-client",
                                     {{"client-connector", "ui.interface-client-connector"},
                                      {"group-names-param", "plugin.modMain.io-params.group-names"}}});
    EXPECT_EQ(typeid(*ui->children()[0]), typeid(CAudioInterfaceClientConnectorVST));
    EXPECT_EQ(typeid(*ui->children()[1]), typeid(CAudioInterfaceClient));
}

TEST_F(EditorTree, HasTheEnginesStateOnceTheEventsHaveArrived) {
    auto editor = makeEditor();
    const auto* client = editor->findObjectOf<CAudioInterfaceClient>("ui.interface-client");
    ASSERT_TRUE(client);
    system_.pump();
    EXPECT_EQ(client->engineState().counts.groups, instance().groupCount());
    EXPECT_EQ(client->engineState().registries.count(), 2);
    EXPECT_EQ(client->groupName(7), CString("8"));
    const CAudioInterfaceBaseConnector* connector = instance().interfaceBase()->connector();
    EXPECT_EQ(connector->clients().count(), 1);
    editor.reset();
    EXPECT_EQ(connector->clients().count(), 0);
}

}  // namespace

}  // namespace tarv
