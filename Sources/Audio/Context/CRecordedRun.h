#pragma once

#include <cstdint>
#include <span>

#include "Audio/Context/CContextBuffer.h"
#include "Audio/Context/CEndKernel.h"
#include "Audio/Context/CKernel.h"
#include "Audio/Context/COperation.h"
#include "Audio/Context/CRunJoiner.h"
#include "Audio/Context/CSignalPlaces.h"

namespace tarv {

/// The operations of one run of a graph in the order in which they were issued, as calls of their kernels, each with
/// its addresses, counts and constants. They run when they are settled, joined where that is possible. While the
/// storages exist and the next run would issue the same operations, making the calls again gives the bits of that run,
/// without the graph. Operations have numbers, which go on from run to run. Audio thread. Allocates only in the
/// constructor.
class CRecordedRun {
public:
    // Twice what eight channels with ten bands take at eight times the rate.
    static constexpr int32_t kMostOperations = 768;
    static constexpr int32_t kMostCalls = 384;

    CRecordedRun();
    ~CRecordedRun();
    CRecordedRun(const CRecordedRun&) = delete;
    CRecordedRun& operator=(const CRecordedRun&) = delete;

    void clear();
    /// Whether an operation can be added.
    bool hasRoom() const { return callCount_ < kMostCalls && operationCount_ < kMostOperations; }
    /// Number of the next operation.
    uint32_t nextNumber() const { return firstNumber_ + static_cast<uint32_t>(operationCount_); }
    /// Number of operand `j` of an operation.
    static uint32_t operandNumber(uint32_t operation, int32_t j) {
        return operation * kMaxOperands + static_cast<uint32_t>(j);
    }
    /// Number of the first operation of the call that the next operation may join: one of that kernel and count. That
    /// of the next operation if there is none.
    uint32_t openNumber(const CKernel& kernel, int32_t count) const {
        if (!isOpen_) {
            return nextNumber();
        }
        const CRecordedCall& call = calls_[callCount_ - 1];
        const bool isAlike =
            call.function == kernel.function && call.operations->count == count && call.count < kMaxBatch;
        return nextNumber() - static_cast<uint32_t>(isAlike ? call.count : 0);
    }
    /// Adds an operation, whose pointers the caller fills: to the open call, which openNumber gave, or in a new one.
    COperation& add(const CKernel& kernel, int32_t count, double immediate, bool isInOpenCall);
    /// No later operation joins the last call.
    void closeCall() { isOpen_ = false; }
    /// A buffer was given back: nobody reads it behind the last operation that names it.
    void noteLastRead(const CContextBuffer& buffer);
    /// Runs the calls that were added since the last time, and keeps them as they ran: joiners replace calls by fewer
    /// ones. Returns how many ran.
    int32_t settle(const CRunJoiners& joiners);

    int32_t operationCount() const { return operationCount_; }
    int32_t callCount() const { return callCount_; }
    /// Calls that stand for several.
    int32_t joinedCount() const { return joinedCount_; }
    /// Makes the calls again, in order.
    void run() const;

    /// Notes where the calls, which have run, name the signal of `places`.
    void findPlaces(CSignalPlaces& places, std::span<const CEndKernel> kernels);
    /// The call works on a host's samples from now on, in all of its operations; false if it has another number of them
    /// than `operations`, or its kernel does not read such samples.
    bool replaceKernel(int32_t call, std::span<const CEndKernel> kernels, int32_t operations, bool areFloats);

private:
    /// Room for what eight channels with ten bands need in any set of instructions.
    static constexpr int32_t kPlanBytes = 64 << 10;

    static void runCall(const CRecordedCall& call);

    COperation* operations_;
    uint8_t* lastReads_;  ///< of each operation
    CRecordedCall* calls_;
    uint8_t* plans_;
    CPlanMemory memory_ = {};  ///< what is left of them
    uint32_t firstNumber_ = 1;
    int32_t operationCount_ = 0;
    int32_t callCount_ = 0;
    int32_t settledCount_ = 0;  ///< calls that have run
    int32_t joinedCount_ = 0;
    bool isOpen_ = false;  ///< the next operation may join the last call
};

}  // namespace tarv
