#pragma once

#include <atomic>
#include <functional>

#include "Audio/Converters/CAudioParamConverterBW.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Converters/CAudioParamConverterGain.h"
#include "Audio/Converters/CAudioParamConverterPercent.h"
#include "Audio/Converters/CAudioParamConverterRatio.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Converters/CAudioParamConverterTime.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamDef.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Presets/CAudioParamUndo.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {

using CTestAttributes = std::vector<std::pair<std::string, std::string>>;

/// A history that counts its notifications.
class CTestHistory : public CAudioParamUndo {
public:
    std::atomic<int32_t> received{0};
    std::function<void()> onMessage;

protected:
    void historyChanged() override {
        ++received;
        if (onMessage)
            onMessage();
        CAudioParamUndo::historyChanged();
    }
};

inline std::vector<CCreatorRow> paramCreators() {
    return {
        {"core:object", &createObject<CObject>, nullptr},
        {"audio:cvt-bw", &createObject<CAudioParamConverterBW>, nullptr},
        {"audio:cvt-enum", &createObject<CAudioParamConverterEnum>, &CAudioParamConverterEnum::initClass},
        {"audio:cvt-freq", &createObject<CAudioParamConverterFreq>, nullptr},
        {"audio:cvt-gain", &createObject<CAudioParamConverterGain>, &CAudioParamConverterGain::initClass},
        {"audio:cvt-percent", &createObject<CAudioParamConverterPercent>, nullptr},
        {"audio:cvt-ratio", &createObject<CAudioParamConverterRatio>, &CAudioParamConverterRatio::initClass},
        {"audio:cvt-real", &createObject<CAudioParamConverterReal>, &CAudioParamConverterReal::initClass},
        {"audio:cvt-text", &createObject<CAudioParamConverterText>, nullptr},
        {"audio:cvt-time", &createObject<CAudioParamConverterTime>, nullptr},
        {"audio:param", &createObject<CAudioParamDef>, nullptr},
        {"audio:param-alloc", &createObject<CAudioParamAllocDef>, nullptr},
        {"audio:param-remap", &createObject<CAudioParamRemapDef>, nullptr},
        {"audio:audio-env", &createObject<CAudioEnv>, nullptr},
        {"audio:param-collector", &createObject<CAudioParamCollector>, nullptr},
        {"audio:param-registry", &createObject<CAudioParamRegistry>, nullptr},
        {"audio:param-undo", &createObject<CTestHistory>, nullptr},
        {"audio:ext-param", &createObject<CAudioExtParam>, nullptr},
        {"audio:ext-param-list", &createObject<CAudioExtParamList>, nullptr},
    };
}

/// One converter of each kind, under the names that the tests use.
inline CTestNode converterTree() {
    return {"core:object",
            "paramcvt",
            {},
            {{"audio:cvt-gain", "gain", {{"decimals", "1"}, {"label", "dB"}}},
             {"audio:cvt-freq", "freq", {{"label", "Hz"}}},
             {"audio:cvt-bw", "bw", {{"label", "Oct"}}},
             {"audio:cvt-time", "time", {{"label", "ms"}}},
             {"audio:cvt-time", "timelog", {{"is-log", "true"}, {"is-exact", "true"}}},
             {"audio:cvt-time", "time-sec", {{"label", "ms"}, {"scale", "1.0"}}},
             {"audio:cvt-time", "time-exact", {{"is-exact", "true"}, {"is-precise", "true"}}},
             {"audio:cvt-percent", "percent", {{"label", "%"}}},
             {"audio:cvt-ratio", "ratio"},
             {"audio:cvt-ratio", "ratio2", {{"decimals", "2"}}},
             {"audio:cvt-real", "real", {{"decimals", "2"}}},
             {"audio:cvt-real", "phase", {{"decimals", "1"}, {"lable", "Deg"}}},
             {"audio:cvt-enum", "enum"},
             {"audio:cvt-enum", "enum-enable", {{"state-names", "Off;On"}}},
             {"audio:cvt-enum", "enum-gate", {{"state-names", "Fall;Cutoff A|CutA;Cutoff B|CutB"}}},
             {"audio:cvt-text", "text"}}};
}

/// A definition as a test writes it: converter, limits, default, and what else.
inline CTestNode paramNode(const std::string& name, const std::string& converter, const std::string& min,
                           const std::string& max, const std::string& def, CTestAttributes more = {}) {
    CTestAttributes attributes = {
        {"converter", converter}, {"min-values", min}, {"max-values", max}, {"def-values", def}};
    attributes.insert(attributes.end(), more.begin(), more.end());
    return {"audio:param", name, attributes};
}

/// A small product: converters and definitions under `audio` in the shared tree, and one instance with an environment
/// and a collector.
class CParamTree {
public:
    explicit CParamTree(const std::vector<CTestNode>& definitions = {}, std::vector<CTestNode> more = {})
        : application_(paramCreators(), {{"core:object", "audio", {}, withConverters(definitions)}}) {
        std::vector<CTestNode> children = {
            {"audio:audio-env", "env", {{"viz-fps", "30.0"}}},
            {"audio:param-collector", "param-collector", {{"env", "^env"}}},
        };
        children.insert(children.end(), more.begin(), more.end());
        root_ = application_.makeRoot({{"core:object", "plugin", {}, children}});
    }

    CObject& root() { return *root_; }
    CAudioEnv& env() { return *root_->findObjectOf<CAudioEnv>("plugin.env"); }
    CAudioParamCollector& collector() { return *root_->findObjectOf<CAudioParamCollector>("plugin.param-collector"); }
    const CAudioParamInfo& info(const std::string& name) const {
        return CApplication::sharedRoot()->findObjectOf<CAudioParamDef>(("audio." + name).c_str())->info();
    }
    const CAudioParamConverter& converter(const std::string& name) const {
        return *CApplication::sharedRoot()->findObjectOf<CAudioParamConverter>(("audio.paramcvt." + name).c_str());
    }
    /// The run-time parameter of the definition `name`, under the full name "p.<name>".
    CAudioParam& define(const std::string& name) { return *collector().define(("p." + name).c_str(), info(name)); }

private:
    static std::vector<CTestNode> withConverters(std::vector<CTestNode> definitions) {
        definitions.insert(definitions.begin(), converterTree());
        return definitions;
    }

    CTestApplication application_;
    std::unique_ptr<CObject> root_;
};

/// The failure of loading this node below `audio`, behind the converters; "" if it loads.
inline std::string loadFailure(const CTestNode& node) {
    CTestApplication application(paramCreators());
    auto root = application.makeRoot();
    return consumed(loadTree(*root, {{"core:object", "audio", {}, {converterTree(), node}}}));
}

/// A change that is built by hand.
inline void fillChange(CAudioParamChange& change, int32_t group, int32_t first, const std::vector<double>& values,
                       bool resize = false) {
    change.group = group;
    change.first = first;
    change.count = static_cast<int32_t>(values.size()) / change.elementSize;
    change.resize = resize ? 1 : 0;
    change.values.resize(static_cast<int32_t>(values.size()));
    std::copy(values.begin(), values.end(), change.values.data());
}

}  // namespace tarv
