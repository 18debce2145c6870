#pragma once

#include "Audio/Context/CKernel.h"
#include "Audio/Context/COperation.h"
#include "Audio/Context/CRunJoiner.h"
#include "Core/CHeap.h"

namespace tarv {

/// The kernel calls of one run of a graph in the order in which they were made, each with its addresses, counts and
/// constants. While the storages exist and the next run would issue the same operations, making the calls again gives
/// the bits of that run, without the graph and without scheduling. Audio thread. Allocates only in the constructor.
class CRecordedRun {
public:
    CRecordedRun();
    ~CRecordedRun();
    CRecordedRun(const CRecordedRun&) = delete;
    CRecordedRun& operator=(const CRecordedRun&) = delete;

    void clear();
    /// Adds a kernel on each of `count` operations, one by one or, with `batch`, in one call. `lastReads` of each: bit
    /// j says that nobody else reads what stands in operand j.
    void add(const CKernel& kernel, CKernelBatchFunction batch, COperation* const* operations, const uint8_t* lastReads,
             int32_t count);
    /// Adds a chain; `stages` as CChainFunction documents it, with the operands of each stage's kernel; `lastReads` of
    /// its first stage. Bit kLinkOperand says that nobody but the chain reads it.
    void addChain(CChainFunction chain, COperation* const* const* stages, const int32_t (&operandCounts)[kChainStages],
                  const uint8_t* lastReads, int32_t count);
    /// Lets a joiner replace calls by fewer ones.
    void join(CRunJoiner& joiner);
    /// All that was added had room.
    bool isWhole() const { return isWhole_; }
    int32_t operationCount() const { return operationCount_; }
    int32_t callCount() const { return callCount_; }
    /// Calls that stand for several.
    int32_t joinedCount() const { return joinedCount_; }
    /// Whether an operation has an operand among these `count` 64-bit floats.
    bool touches(const double* signal, int32_t count) const;
    /// Makes the calls again, in order.
    void run() const;

private:
    // Twice what eight channels with ten bands take at eight times the rate.
    static constexpr int32_t kMostOperations = 768;
    static constexpr int32_t kMostCalls = 384;
    /// Room for what eight channels with ten bands need in any set of instructions.
    static constexpr int32_t kPlanBytes = 48 << 10;

    bool takeCall(const CRecordedCall& call, int32_t operationCount);
    void append(const COperation& operation, int32_t operandCount, uint8_t lastReads);

    COperation* operations_;
    uint8_t* lastReads_;  ///< of each operation
    CRecordedCall* calls_;
    uint8_t* plans_;
    CPlanMemory memory_ = {};  ///< what is left of them
    int32_t operationCount_ = 0;
    int32_t callCount_ = 0;
    int32_t joinedCount_ = 0;
    bool isWhole_ = true;
};

}  // namespace tarv
