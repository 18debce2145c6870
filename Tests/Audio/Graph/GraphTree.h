#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Audio/Graph/CAudioProcess.h"
#include "Tests/Audio/Parameters/ParamTree.h"
#include "Tests/Core/CoreTestHelp.h"

namespace tarv {

/// Creators of everything that a definition of processes may hold.
std::vector<CCreatorRow> graphCreators();

/// The first line of the failure of loading these nodes below `audio`, behind the converters; "" if they load.
std::string graphLoadFailure(const std::vector<CTestNode>& nodes);

/// A channel of a port.
struct CTestChannel {
    int32_t group = 0;
    int32_t element = 0;
    std::vector<double> samples = {};
    uint64_t serial = 0;
};
using CTestChannels = std::vector<CTestChannel>;

/// A process outside a plug-in: `audio` of the shared tree holds the converters and the test's definitions, and one of
/// these is built and run as the core does it. The destructor fails the test if a block is still in use. One at a time:
/// it starts the application.
class CGraphTree {
public:
    static constexpr double kRate = 44100.0;

    explicit CGraphTree(const std::vector<CTestNode>& definitions);
    ~CGraphTree();

    template <class T = CAudioProcessDefBase>
    const T& definition(const std::string& name) const {
        return *CApplication::sharedRoot()->findObjectOf<T>(("audio." + name).c_str());
    }
    CAudioParamCollector& collector() const {
        return *root_->findObjectOf<CAudioParamCollector>("plugin.param-collector");
    }
    /// Builds the definition `audio.<name>` under the path "plugin.<name>": the failure's first line, "" when it
    /// stands.
    std::string build(const std::string& name);
    CAudioProcessBase& process() const { return *process_; }
    template <class T>
    T& as() const {
        return dynamic_cast<T&>(*process_);
    }
    /// A process further in, by its names from the built one: "a.b". A stack or a sequence takes a number.
    CAudioProcessBase& inner(const std::string& names) const;

    /// The preparation of a resume: a step of no samples with these channels (their samples do not matter).
    void start(const CTestChannels& channels = {{}});
    void suspend() {
        graph.setRunning(false);
        process_->reset();
    }
    /// One host block with these channels on port 0 (and 1, if the process has one); all of the same length.
    CTestChannels run(const CTestChannels& first, const CTestChannels& second = {});
    /// A long signal on one channel of group 0 and element 0, in blocks of at most `block` samples.
    std::vector<double> runMono(const std::vector<double>& signal, int32_t block = 512);

    /// Sets a number as an editor does; acts in the next block.
    void set(const std::string& fullName, int32_t group, int32_t element, double value) const;
    void set(const std::string& fullName, double value) const { set(fullName, 0, 0, value); }
    /// The value that a slot of a process holds.
    static double slotValue(const CAudioProcessBase& process, int32_t slot, int32_t group = 0, int32_t element = 0);

    CAudioGraph graph;

private:
    void fill(int32_t port, const CTestChannels& channels, int32_t count);

    CTestApplication application_;
    std::unique_ptr<CObject> root_;
    std::unique_ptr<CAudioProcessBase> process_;
};

/// Names of the children of a composite, in run order, with blanks between.
std::string orderOf(const CAudioProcess& process);

/// The samples alone.
std::vector<std::vector<double>> samplesOf(const CTestChannels& channels);

/// White noise in -1 to 1.
std::vector<double> noiseSignal(int32_t count, uint32_t seed = 1);

inline CTestNode allocNode(const std::string& param, int32_t index) {
    return {"audio:param-alloc", "alloc", {{"param-name", param}, {"index", std::to_string(index)}}};
}
inline CTestNode remapNode(const std::string& orig, const std::string& target) {
    return {"audio:param-remap", "remap", {{"orig", orig}, {"new", target}}};
}
inline CTestNode linkNode(const std::string& src, const std::string& dst, CTestAttributes more = {}) {
    CTestAttributes attributes = {{"src", src}, {"dst", dst}};
    attributes.insert(attributes.end(), more.begin(), more.end());
    return {"audio:process-link", "link", attributes};
}
/// A shared number without unit; its default in the definitions' own form (one value for each element).
inline CTestNode numberNode(const std::string& name, const std::string& def, CTestAttributes more = {}) {
    if (more.empty()) {
        more = {{"is-storable", "true"}};
    }
    return paramNode(name, "real", "-100000", "100000", def, more);
}
/// The same, private to its process.
inline CTestNode privateNode(const std::string& name, const std::string& def) {
    return paramNode(name, "real", "-100000", "100000", def);
}
/// A gain stage with the parameters `gain` (a plain factor) and `mute`.
CTestNode gainNode(const std::string& name, const std::string& gain, CTestAttributes attributes = {},
                   std::vector<CTestNode> more = {});

}  // namespace tarv
