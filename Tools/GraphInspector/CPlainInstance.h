#pragma once

#include <atomic>
#include <vector>

#include "Audio/Instance/CAudioWrapper.h"

namespace tarv {

/// One instance of the plug-in without a host around it: every parameter is within reach by its full name.
class CPlainInstance : public CAudioWrapper {
public:
    /// An instance of the product, or null with the reason in `error` (owned by the caller).
    static CPlainInstance* create(CError*& error);
    ~CPlainInstance() override { stopMessages(); }

    int32_t hostProcessLevel() override { return processLevel; }
    bool hostTempo(double&) override { return false; }
    void hostIoChanged() override { ++ioChanges; }
    void hostParamChanged(int32_t, const CAudioExtParam&) override { ++paramChanges; }

    /// Sets one number of a parameter in real units, as an editor would. False for an unknown name.
    bool set(const CString& param, int32_t group, int32_t element, double value);
    /// Suspends, takes rate and channels over, and resumes.
    void start(double rate, int32_t inputs, int32_t outputs);
    /// Runs planar channels through in blocks of at most `block` frames; gives as many output channels as were started.
    std::vector<std::vector<double>> run(const std::vector<std::vector<double>>& inputs, int32_t block);

    int32_t processLevel = 0;
    int32_t ioChanges = 0;
    /// Hosts' threads and editors' may change at once.
    std::atomic<int32_t> paramChanges{0};

private:
    int32_t outputs_ = 2;
};

}  // namespace tarv
