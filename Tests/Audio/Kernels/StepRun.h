#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"

namespace tarv {

/// An operation that a test writes out: operands are numbers of signals, or `blockOperand` of state blocks. Signals 0
/// to CStepRun::kInputs - 1 are inputs, each other one is made by the step that has it as its first operand.
struct CStep {
    const char* kernel;
    std::vector<int32_t> operands;
    double immediate;
    int32_t count;
};
using CSteps = std::vector<CStep>;
using CBlocks = std::vector<std::vector<double>>;

constexpr int32_t blockOperand(int32_t number) {
    return ~number;
}

/// A context that runs steps, with noise in its inputs. Steps of one kernel in series are one process. A signal is
/// given back behind the last step that reads it, so that later ones may take its place; those that no step reads are
/// added to a sum at the end.
class CStepRun {
public:
    static constexpr int32_t kInputs = 3;
    /// Samples of a signal.
    static constexpr int32_t kMostCount = 200;

    explicit CStepRun(const CBlocks& blocks);
    void issue(const CSteps& steps);
    /// The sum and, unless only it can be heard, all state blocks.
    std::vector<uint64_t> bits(bool isSumAlone) const;

    std::unique_ptr<CQPLEXContext> context;

private:
    struct CSignal {
        CBufferHandle handle;
        int32_t count;
    };
    CBufferHandle handleOf(int32_t operand) const;
    void issueStep(const CStep& step);

    std::map<int32_t, CSignal> signals_;
    std::vector<CBufferHandle> blocks_;
    std::vector<int32_t> blockCounts_;
    CBufferHandle sum_ = kNoBuffer;
};

/// Compares the bits of a recorded run and of its repetitions with those of operations one by one. Returns the calls
/// that `joiner` joined. With `isSumAlone` state blocks may differ in what reaches no output.
int32_t joinedOf(const CSteps& steps, const CBlocks& blocks, CJoinedKernels kernels,
                 const std::function<std::unique_ptr<CRunJoiner>(const CQPLEXContext&)>& joiner,
                 bool isSumAlone = false);

}  // namespace tarv
