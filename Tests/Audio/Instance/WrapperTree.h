#pragma once

#include "Audio/Instance/CAudioWrapper.h"
#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {

/// The core of a plug-in with a host whose answers a test sets.
class CTestWrapper : public CAudioWrapper {
public:
    int32_t hostProcessLevel() override { return processLevel; }
    bool hostTempo(double& bpm) override {
        ++tempoQuestions;
        bpm = tempo;
        return tempo > 0.0;
    }
    void hostIoChanged() override { ++ioChanges; }
    void hostParamChanged(int32_t index, const CAudioExtParam& param) override {
        changes.emplace_back(index, param.getValue());
    }

    int32_t processLevel = 0;
    double tempo = 0.0;
    int32_t tempoQuestions = 0;
    int32_t ioChanges = 0;
    std::vector<std::pair<int32_t, double>> changes;
};

/// The definitions of a small plug-in. A test changes them before it starts the application.
struct CWrapperDefinitions {
    CWrapperDefinitions();

    /// Attribute of the project; an empty value takes it away.
    CWrapperDefinitions& project(const std::string& name, const std::string& value);
    /// Takes the children of this name out of the plug-in's tree, or of `audio`.
    CWrapperDefinitions& without(const std::string& name);
    std::vector<CTestNode> tree() const;

    CTestAttributes projectAttributes;
    CTestAttributes pluginAttributes;
    std::vector<CTestNode> pluginChildren;
    std::vector<CTestNode> audioChildren;
    /// The children of modMain.
    std::vector<CTestNode> processes;
};

std::vector<CCreatorRow> wrapperCreators();

/// The application with these definitions.
class CWrapperApplication : public CTestApplication {
public:
    explicit CWrapperApplication(const CWrapperDefinitions& definitions = {})
        : CTestApplication(wrapperCreators(), definitions.tree()) {}
};

/// Slots of the process "watch", which reads the parameters that the host sets and has no part in the signal.
enum CWatched : int32_t { kOffline, kOversampling, kBpm, kLatencyChange, kDenormEnable };
/// The value that the graph of the small plug-in holds in one of them.
double graphValue(const CTestWrapper& wrapper, int32_t slot);

/// The first line of the failure of an instance's init; "" for success.
std::string initFailure(const CWrapperDefinitions& definitions);

}  // namespace tarv
