// The definitions of a small plug-in for tests of the core.

#include "Tests/Audio/Instance/WrapperTree.h"

#include <algorithm>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Instance/CAudioCCTable.h"
#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

namespace {

const CTestAttributes kSingle = {{"is-global", "true"}, {"is-single-group", "true"}};

CTestNode routerNode(const std::string& name, bool isOutput) {
    return {"audio:modRouter",
            name,
            {{"is-output", isOutput ? "true" : "false"}, {"use-time-shift", "false"}},
            {privateNode("routing", "1,2,0,0,0,0,0,0"), privateNode("grouping", "0,1,0,0,0,0,0,0"),
             allocNode("routing", 0), allocNode("grouping", 1)}};
}

}  // namespace

CWrapperDefinitions::CWrapperDefinitions()
    : projectAttributes{{"plugin-intchannel-count", "8"}, {"plugin-group-count", "8"},
                        {"plugin-code", "TAEQ"},          {"app-name", "Small"},
                        {"app-vendor", "Maker"},          {"app-version", "1.8"}},
      pluginChildren{
          {"audio:qplex-context", "qplex-context"},
          {"audio:audio-env", "audio-env", {{"viz-fps", "30.0"}}},
          {"audio:param-collector", "param-collector", {{"env", "^audio-env"}}},
          {"audio:viz-collector", "viz-collector", {{"env", "^audio-env"}, {"param-collector", "^param-collector"}}},
          {"audio:cctable", "cctable"},
          {"audio:interface-base-connector-vst", "connector"},
          {"audio:interface-base",
           "interface-base",
           {{"base-connector", "^connector"},
            {"param-collector", "^param-collector"},
            {"viz-collector", "^viz-collector"}}},
          {"audio:param-registry",
           "param-registry",
           {{"param-collector", "^param-collector"}, {"hierarchy", "plugin.modMain"}, {"id", "TAEQ"}}},
          {"audio:ext-param-list",
           "ext-param-list",
           {},
           {{"audio:ext-param",
             "e",
             {{"ext-name", "GainA"},
              {"param-collector", "plugin.param-collector"},
              {"param-name", "plugin.modMain.g.gain"}}},
            {"audio:ext-param",
             "e",
             {{"ext-name", "GainB"},
              {"param-collector", "plugin.param-collector"},
              {"param-name", "plugin.modMain.g.gain"},
              {"group", "1"}}}}}},
      audioChildren{converterTree(),
                    paramNode("param-enable-viz", "enum-enable", "0", "1", "0", kSingle),
                    {"audio:modOutput", "modOutput", {{"use-time-shift", "false"}}}},
      processes{paramNode("host-oversampling-mode", "enum", "0", "3", "0", kSingle),
                paramNode("host-offline", "enum-enable", "0", "1", "0", kSingle),
                paramNode("host-latency-change", "enum-enable", "0", "1", "0", kSingle),
                paramNode("host-bpm", "real", "1", "1000", "140", kSingle),
                paramNode("meter-rmstime", "time", "1", "1000", "2", kSingle),
                paramNode("meter-releasetime", "time", "0", "5000", "750", kSingle),
                paramNode("meter-peaktime", "time", "100", "10000", "1000", kSingle),
                paramNode("denorm-enable", "real", "0", "1", "1", kSingle),
                {"audio:modNode",
                 "watch",
                 {{"is-outoforder", "true"}},
                 {remapNode("host-offline", "^host-offline"), allocNode("host-offline", 0),
                  remapNode("host-oversampling-mode", "^host-oversampling-mode"),
                  allocNode("host-oversampling-mode", 1), remapNode("host-bpm", "^host-bpm"), allocNode("host-bpm", 2),
                  remapNode("host-latency-change", "^host-latency-change"), allocNode("host-latency-change", 3),
                  remapNode("denorm-enable", "^denorm-enable"), allocNode("denorm-enable", 4)}},
                routerNode("in", false),
                gainNode("g", "2", {{"is-smooth-update", "true"}}),
                routerNode("out", true)} {}

CWrapperDefinitions& CWrapperDefinitions::project(const std::string& name, const std::string& value) {
    std::erase_if(projectAttributes, [&name](const auto& attribute) { return attribute.first == name; });
    if (!value.empty()) {
        projectAttributes.emplace_back(name, value);
    }
    return *this;
}

CWrapperDefinitions& CWrapperDefinitions::without(const std::string& name) {
    const auto isNamed = [&name](const CTestNode& node) { return node.name == name; };
    std::erase_if(pluginChildren, isNamed);
    std::erase_if(audioChildren, isNamed);
    return *this;
}

std::vector<CTestNode> CWrapperDefinitions::tree() const {
    std::vector<CTestNode> audio = audioChildren;
    audio.push_back({"audio:process-def", "modMain", {}, processes});
    return {{"core:object", "project", projectAttributes},
            testTemplate("plugin", "core:object", pluginAttributes, pluginChildren),
            {"core:object", "audio", {}, audio}};
}

std::vector<CCreatorRow> wrapperCreators() {
    std::vector<CCreatorRow> rows = graphCreators();
    rows.push_back({"audio:cctable", &createObject<CAudioCCTable>, nullptr});
    rows.push_back({"audio:interface-base", &createObject<CAudioInterfaceBase>, nullptr});
    rows.push_back({"audio:interface-base-connector-vst", &createObject<CAudioInterfaceBaseConnectorVST>, nullptr});
    rows.push_back({"audio:viz-collector", &createObject<CAudioVizCollector>, nullptr});
    return rows;
}

double graphValue(const CTestWrapper& wrapper, int32_t slot) {
    const auto& main = dynamic_cast<const CAudioProcess&>(*wrapper.mainProcess());
    return CGraphTree::slotValue(*main.findProcess("watch"), slot);
}

std::string initFailure(const CWrapperDefinitions& definitions) {
    CWrapperApplication application(definitions);
    CTestWrapper wrapper;
    return messageOf(wrapper.init());
}

}  // namespace tarv
