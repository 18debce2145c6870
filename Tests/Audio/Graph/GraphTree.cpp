#include "Tests/Audio/Graph/GraphTree.h"

#include <algorithm>

#include "Audio/Filters/CAudioFilterBypassGen.h"
#include "Audio/Filters/CAudioFilterFIRLPGen.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Filters/CAudioFilterGenArrayItem.h"
#include "Audio/Filters/CAudioFilterHBFGen.h"
#include "Audio/Filters/CAudioFilterLPHP1Gen.h"
#include "Audio/Filters/CAudioFilterMagnusGen.h"
#include "Audio/Graph/CAudioProcessBypassStateDef.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"
#include "Audio/Modules/CModBypass.h"
#include "Audio/Modules/CModDecimator.h"
#include "Audio/Modules/CModDenorm.h"
#include "Audio/Modules/CModDownsampler.h"
#include "Audio/Modules/CModFilter.h"
#include "Audio/Modules/CModGain.h"
#include "Audio/Modules/CModInterpolator.h"
#include "Audio/Modules/CModMSCoder.h"
#include "Audio/Modules/CModMetaTube.h"
#include "Audio/Modules/CModMute.h"
#include "Audio/Modules/CModNode.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Modules/CModRouter.h"
#include "Audio/Modules/CModUpsampler.h"
#include "Audio/Modules/CQPLEXContextObject.h"
#include "Tests/Audio/Modules/CTestGen.h"

namespace tarv {

std::vector<CCreatorRow> graphCreators() {
    std::vector<CCreatorRow> rows = paramCreators();
    const std::vector<CCreatorRow> more = {
        {"audio:fltgen-array", &createObject<CAudioFilterGenArray>, nullptr},
        {"audio:fltgen-array-item", &createObject<CAudioFilterGenArrayItem>, nullptr},
        {"audio:fltgen-bypass", &createObject<CAudioFilterBypassGen>, nullptr},
        {"audio:fltgen-firlp", &createObject<CAudioFilterFIRLPGen>, nullptr},
        {"audio:fltgen-hbf", &createObject<CAudioFilterHBFGen>, nullptr},
        {"audio:fltgen-lphp1", &createObject<CAudioFilterLPHP1Gen>, nullptr},
        {"audio:fltgen-magnus", &createObject<CAudioFilterMagnusGen>, nullptr},
        {"audio:modBypass", &createObject<CModBypassDef>, nullptr},
        {"audio:modDecimator", &createObject<CModDecimatorDef>, nullptr},
        {"audio:modDenorm", &createObject<CModDenormDef>, nullptr},
        {"audio:modDownsampler", &createObject<CModDownsamplerDef>, nullptr},
        {"audio:modFilter", &createObject<CModFilterDef>, nullptr},
        {"audio:modGain", &createObject<CModGainDef>, nullptr},
        {"audio:modInterpolator", &createObject<CModInterpolatorDef>, nullptr},
        {"audio:modMSCoder", &createObject<CModMSCoderDef>, nullptr},
        {"audio:modMetaTube", &createObject<CModMetaTubeDef>, nullptr},
        {"audio:modMute", &createObject<CModMuteDef>, nullptr},
        {"audio:modNode", &createObject<CModNodeDef>, nullptr},
        {"audio:modOutput", &createObject<CModOutputDef>, nullptr},
        {"audio:modRouter", &createObject<CModRouterDef>, nullptr},
        {"audio:modUpsampler", &createObject<CModUpsamplerDef>, nullptr},
        {"audio:process-bypass-state", &createObject<CAudioProcessBypassStateDef>, nullptr},
        {"audio:process-def", &createObject<CAudioProcessDef>, nullptr},
        {"audio:process-link", &createObject<CAudioProcessLinkDef>, nullptr},
        {"audio:qplex-context", &createObject<CQPLEXContextObject>, nullptr},
        {"test:gen", &createObject<CTestGen>, nullptr},
    };
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

std::string graphLoadFailure(const std::vector<CTestNode>& nodes) {
    CTestApplication application(graphCreators());
    auto root = application.makeRoot();
    std::vector<CTestNode> all = {converterTree()};
    all.insert(all.end(), nodes.begin(), nodes.end());
    return messageOf(loadTree(*root, {{"core:object", "audio", {}, all}}));
}

namespace {

std::vector<CTestNode> behindConverters(std::vector<CTestNode> definitions) {
    definitions.insert(definitions.begin(), converterTree());
    return definitions;
}

}  // namespace

CGraphTree::CGraphTree(const std::vector<CTestNode>& definitions)
    : application_(graphCreators(), {{"core:object", "audio", {}, behindConverters(definitions)}}),
      root_(application_.makeRoot({{"core:object",
                                    "plugin",
                                    {},
                                    {{"audio:qplex-context", "qplex-context"},
                                     {"audio:audio-env", "env", {{"viz-fps", "30.0"}}},
                                     {"audio:param-collector", "param-collector", {{"env", "^env"}}}}}})) {
    graph.context = root_->findObjectOf<CQPLEXContextObject>("plugin.qplex-context")->context();
    graph.collector = &collector();
    graph.env = root_->findObjectOf<CAudioEnv>("plugin.env");
    graph.hostRate = kRate;
    graph.hostInputs = 8;
    graph.hostOutputs = 8;
}

CGraphTree::~CGraphTree() {
    process_.reset();
    collector().detachConsumers();
    graph.context->flush();
    EXPECT_EQ(graph.context->counters().buffersInUse, 0);
    EXPECT_EQ(graph.context->counters().rejected, 0u);
}

std::string CGraphTree::build(const std::string& name) {
    const CAudioProcessDefBase& def = definition(name);
    process_.reset(def.instantiate());
    process_->place({&graph, nullptr, &def, ("plugin." + name).c_str(), name.c_str(), -1});
    return messageOf(process_->init());
}

CAudioProcessBase& CGraphTree::inner(const std::string& names) const {
    CAudioProcessBase* current = process_.get();
    for (const CString& name : CString(names.c_str()).split('.')) {
        struct {
            CString name;
            int32_t number;
            CAudioProcessBase* found;
        } search{name, 0, nullptr};
        if (const auto* composite = dynamic_cast<const CAudioProcess*>(current)) {
            search.found = composite->findProcess(name);
        } else {
            search.number = CString::toInt(name);
            current->visitChildren(
                [](void* user, CAudioProcessBase& child) {
                    auto& wanted = *static_cast<decltype(search)*>(user);
                    wanted.found = wanted.number-- == 0 ? &child : wanted.found;
                },
                &search);
        }
        if (search.found == nullptr) {
            ADD_FAILURE() << "no process " << names;
            break;
        }
        current = search.found;
    }
    return *current;
}

void CGraphTree::start(const CTestChannels& channels) {
    CTestChannels empty = channels;
    for (CTestChannel& channel : empty) {
        channel.samples.clear();
    }
    run(empty, empty);
    process_->makeSpares();
    process_->placeDelay(0);
    graph.setRunning(true);
}

void CGraphTree::fill(int32_t port, const CTestChannels& channels, int32_t count) {
    CAudioPort& target = process_->input(port);
    target.samples = count;
    target.rate = graph.hostRate;
    target.layout = 0;
    for (const CTestChannel& channel : channels) {
        const int32_t place = 64 * channel.group + channel.element;
        target.layout = mixSerial(mixSerial(target.layout, channel.serial), static_cast<uint64_t>(place));
        const CBufferHandle block = graph.context->takeSignal(count);
        std::copy(channel.samples.begin(), channel.samples.end(), graph.context->signal(block));
        target.add(channel.group, channel.element, channel.serial, block);
    }
}

CTestChannels CGraphTree::run(const CTestChannels& first, const CTestChannels& second) {
    collector().applyPendingChanges(graph.now);
    const auto count = static_cast<int32_t>(first.empty() ? 0 : first[0].samples.size());
    fill(0, first, count);
    if (process_->inputCount() > 1) {
        fill(1, second, count);
    }
    process_->process();
    graph.context->flush();
    CAudioPort& out = process_->output(0);
    CTestChannels result;
    for (const CAudioChannel& channel : out.channels) {
        const double* signal = graph.context->signal(channel.handle);
        result.push_back({channel.group, channel.element, {signal, signal + out.samples}, channel.serial});
    }
    out.release(*graph.context);
    graph.now += count;
    return result;
}

std::vector<double> CGraphTree::runMono(const std::vector<double>& signal, int32_t block) {
    std::vector<double> result;
    for (size_t at = 0; at < signal.size(); at += static_cast<size_t>(block)) {
        const size_t end = std::min(signal.size(), at + static_cast<size_t>(block));
        const CTestChannels out = run({{0, 0,
                                        std::vector<double>(signal.begin() + static_cast<int64_t>(at),
                                                            signal.begin() + static_cast<int64_t>(end))}});
        if (out.size() == 1) {
            result.insert(result.end(), out[0].samples.begin(), out[0].samples.end());
        }
    }
    return result;
}

void CGraphTree::set(const std::string& fullName, int32_t group, int32_t element, double value) const {
    CAudioParam* param = collector().findParam(fullName.c_str());
    ASSERT_TRUE(param && param->isDefined()) << fullName;
    param->setValue(group, element, value);
}

double CGraphTree::slotValue(const CAudioProcessBase& process, int32_t slot, int32_t group, int32_t element) {
    return process.slotValue(process.slot(slot), group, element, -12345.0);
}

std::string orderOf(const CAudioProcess& process) {
    std::string names;
    for (const CAudioProcessBase* child : process.runOrder()) {
        names += (names.empty() ? "" : " ") + child->name().toUtf8();
    }
    return names;
}

std::vector<std::vector<double>> samplesOf(const CTestChannels& channels) {
    std::vector<std::vector<double>> samples;
    for (const CTestChannel& channel : channels) {
        samples.push_back(channel.samples);
    }
    return samples;
}

std::vector<double> noiseSignal(int32_t count, uint32_t seed) {
    std::vector<double> signal(static_cast<size_t>(count));
    for (double& sample : signal) {
        seed = seed * 1664525 + 1013904223;
        sample = static_cast<int32_t>(seed) / 2147483648.0;
    }
    return signal;
}

CTestNode gainNode(const std::string& name, const std::string& gain, CTestAttributes attributes,
                   std::vector<CTestNode> more) {
    std::vector<CTestNode> children = {numberNode("gain", gain), numberNode("mute", "0"), allocNode("gain", 0),
                                       allocNode("mute", 1)};
    children.insert(children.end(), more.begin(), more.end());
    return {"audio:modGain", name, std::move(attributes), children};
}

}  // namespace tarv
