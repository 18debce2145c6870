#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <utility>

#include "Audio/Context/CBufferClaims.h"
#include "Audio/Context/CBufferTable.h"
#include "Audio/Context/CContextCounters.h"
#include "Audio/Context/CEndKernel.h"
#include "Audio/Context/CKernelCalls.h"
#include "Audio/Context/CKernelTable.h"
#include "Audio/Context/COperation.h"
#include "Audio/Context/COperationChain.h"
#include "Audio/Context/COperationPool.h"
#include "Audio/Context/CReadyOperations.h"
#include "Core/CHeap.h"

namespace tarv {

/// Runs a process graph as a stream of vector operations. `issue` queues; `flush` runs what is queued. In between the
/// context keeps the data flow right: an operation runs after every earlier one that writes what it reads or writes,
/// and after every earlier one that reads what it writes. Ready operations of one kernel and count are handed to the
/// kernel together, so that independent channels run side by side. Thread: the audio thread alone (or any one while no
/// audio runs); there is no lock. No call allocates in steady state. Its parts are members by value, because callers
/// take buffers and issue operations thousands of times in a block.
class CQPLEXContext : public CHeapObject {
public:
    CQPLEXContext();
    ~CQPLEXContext();
    CQPLEXContext(const CQPLEXContext&) = delete;
    CQPLEXContext& operator=(const CQPLEXContext&) = delete;

    /// Number of the kernel; -1 if the table of 512 is full, the operand count is not 1 to 8, or the name is registered
    /// with other values. Equal values give the old number. Names are cut to 64 characters. May run what is queued.
    int32_t registerKernel(const char* name, CKernelFunction function, int32_t operandCount, uint32_t writeMask,
                           uint64_t extra = 0, CKernelBatchFunction batch = nullptr) {
        if (kernels_.isFull()) {
            flush();  // queued operations refer to kernels, which move when the table grows
        }
        return kernels_.add(name, function, operandCount, writeMask, extra, batch);
    }
    /// Number of a kernel by its full name, or -1.
    int32_t findKernel(const char* name) const { return kernels_.find(name); }
    /// The function of a kernel by its full name; null without one.
    CKernelFunction kernelFunction(const char* name) const {
        const int32_t number = findKernel(name);
        return number == -1 ? nullptr : kernels_[number].function;
    }
    /// Sets the one chain: three kernels that `function` runs in one loop when operations of them stand in series and
    /// no other operation is issued in between. A number of -1 in it: nothing happens.
    void registerChain(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function);
    /// Sets the one joiner of recorded runs for such kernels.
    void setJoiner(CJoinedKernels kernels, std::unique_ptr<CRunJoiner> joiner) {
        joiners_[static_cast<int32_t>(kernels)] = std::move(joiner);
    }
    /// Such a kernel may read a host's samples, or write for it. Up to kMostEndKernels; one that is known already, or
    /// has the number -1, adds nothing.
    void addEndKernel(int32_t kernelNumber, CEndKernel kernel);
    std::span<const CEndKernel> endKernels() const { return {endKernels_, static_cast<size_t>(endKernelCount_)}; }
    int32_t kernelCount() const { return kernels_.count(); }
    const CKernel& kernel(int32_t number) const { return kernels_[number]; }
    /// The number of a common kernel; -1 until setCommonKernel names it.
    int32_t commonKernel(CCommonKernel kernel) const { return kernels_.common(kernel); }
    void setCommonKernel(CCommonKernel kernel, int32_t number) { kernels_.setCommon(kernel, number); }
    /// The kernels of a section type, 0 to kSectionTypeCount - 1; all -1 until setSectionKernels names them.
    const CSectionKernels& sectionKernels(int32_t type) const { return kernels_.section(type); }
    void setSectionKernels(int32_t type, const CSectionKernels& kernels) { kernels_.setSection(type, kernels); }

    /// A buffer of at least `bytes`, contents undefined, one reference. Returns kNoBuffer when all
    /// kUsableBuffers are in use; an operation that names kNoBuffer is not run.
    CBufferHandle takeBuffer(int32_t bytes) {
        const int32_t sizeClass = CBufferTable::sizeClassOf(bytes);
        calls_.dropRecording();
        const CBufferHandle handle = buffers_.takeWarm(sizeClass);
        if (handle == kNoBuffer) [[unlikely]] {
            return takeOther(sizeClass);
        }
        return handle;
    }
    /// A buffer for `samples` 64-bit floats of a signal. Short blocks take the storages of long ones, so that a host
    /// may vary its blocks without a new storage.
    CBufferHandle takeSignal(int32_t samples) {
        constexpr int32_t kShortest = 256;
        return takeBuffer((samples > kShortest ? samples : kShortest) * static_cast<int32_t>(sizeof(double)));
    }
    /// Handles with an offset name the same buffer. kNoBuffer does nothing.
    void addReference(CBufferHandle handle) {
        if (handle != kNoBuffer) {
            buffers_.at(handle).state += CContextBuffer::kOneReference;
        }
    }
    void releaseReference(CBufferHandle handle) {
        if (handle != kNoBuffer) {
            buffers_.releaseReference(buffers_.at(handle));
        }
    }
    int32_t references(CBufferHandle handle) const {
        return handle == kNoBuffer ? 0 : buffers_.at(handle).references();
    }
    /// Address of a buffer, null for kNoBuffer. Contents may be written right after takeBuffer, before any operation
    /// names the buffer; while a run is recorded only those of a state block. Call flush before reading them.
    void* data(CBufferHandle handle) const {
        return handle == kNoBuffer ? nullptr : buffers_.at(handle).data + handleOffset(handle);
    }
    double* signal(CBufferHandle handle) const { return static_cast<double*>(data(handle)); }
    /// Bytes of a buffer's storage, 0 for kNoBuffer.
    int32_t capacity(CBufferHandle handle) const { return handle == kNoBuffer ? 0 : buffers_.at(handle).capacity(); }
    /// A handle `bytes` further into the storage. The sum of offsets must stay below 512 KiB.
    static CBufferHandle offsetBy(CBufferHandle handle, int32_t bytes) {
        return handle == kNoBuffer ? kNoBuffer : handle + bytes * (kHandleIndexMask + 1);
    }
    /// Entries of the table that have a storage, in use or not.
    int32_t storageCount() const { return buffers_.storageCount(); }
    /// The most buffers that can be in use at once.
    static constexpr int32_t kUsableBuffers = CBufferTable::kUsableBuffers;
    /// Sets both bytes to 1 when the next write of the buffer completes. kNoBuffer does nothing.
    void notifyOnWrite(CBufferHandle handle, uint8_t* first, uint8_t* second);
    /// Makes sure that `count` free buffers of `bytes` exist, so that later takeBuffer calls do not allocate.
    /// Allocates; called at resume. State blocks (up to 1 KiB) and signals have separate storages: reserve both.
    void reserveBuffers(int32_t count, int32_t bytes) { buffers_.reserve(count, bytes); }

    /// Queues an operation, which takes a reference of each operand until it has run. A kernel number of -1, a count
    /// below 0, a wrong number of operands or an operand kNoBuffer: nothing happens.
    void issue(int32_t kernelNumber, int32_t count, double immediate, std::initializer_list<CBufferHandle> operands) {
        // The number of operands stands at each call, so that this becomes one direct call of an unrolled form.
        const CBufferHandle* const handles = operands.begin();
        switch (operands.size()) {
            case 1:
                return issueOperands<1>(kernelNumber, count, immediate, handles);
            case 2:
                return issueOperands<2>(kernelNumber, count, immediate, handles);
            case 3:
                return issueOperands<3>(kernelNumber, count, immediate, handles);
            case 4:
                return issueOperands<4>(kernelNumber, count, immediate, handles);
            case 5:
                return issueOperands<5>(kernelNumber, count, immediate, handles);
            case 6:
                return issueOperands<6>(kernelNumber, count, immediate, handles);
            case 7:
                return issueOperands<7>(kernelNumber, count, immediate, handles);
            case 8:
                return issueOperands<8>(kernelNumber, count, immediate, handles);
            default:
                ++rejected_;
        }
    }
    /// Runs everything that is queued, also while a run is recorded.
    void flush();
    /// A process has issued all operations of a block: runs what is queued, unless it may begin the chain, which then
    /// waits for the next process. Buffers may be read only after a flush.
    void endProcess();

    /// Runs what is queued, then records the operations up to `endRecording`. They wait until then, or until a flush,
    /// so that calls which belong together become one, and run in the order of issue. `inputs`, if not null, stays
    /// until then.
    void startRecording(CRunInputs* inputs = nullptr);
    /// Runs what was recorded; false if it was too long to be kept.
    bool endRecording();
    /// Whether a recorded operation names a buffer that was taken since the recording began or right before.
    bool isRecordedIn(CBufferHandle handle) const { return handle != kNoBuffer && buffers_.at(handle).lastRead != 0; }
    /// What was recorded is not to be repeated.
    void dropRecording() { calls_.dropRecording(); }
    /// Whether `repeat` can stand for the recorded run: no buffer was taken and no operation issued since it ended.
    bool isRecorded() const { return calls_.isRecorded(); }
    /// Makes the recorded kernel calls again, on the same storages: inputs are read from where the recorded run read
    /// them, and outputs are written to where it wrote them.
    void repeat() { calls_.repeat(); }

    /// The run that `repeat` makes again.
    const CRecordedRun& recordedRun() const { return calls_.recording(); }
    CRecordedRun& recordedRun() { return calls_.recording(); }

    CContextCounters counters() const;

private:
    template <int32_t N>
    void issueOperands(int32_t kernelNumber, int32_t count, double immediate, const CBufferHandle* handles);
    template <int32_t N>
    void recordOperands(const CKernel& kernel, int32_t count, double immediate, CContextBuffer* const* buffers,
                        const CBufferHandle* handles);
    template <int32_t N>
    bool joinsChain(int32_t kernelNumber, int32_t count, CContextBuffer* const* buffers, const CBufferHandle* handles,
                    bool isRepeated);
    void leaveChain();
    void runQueued();
    void settle();
    void runChain();
    void runBatch(CQueuedOperation* const* batch, int32_t count);
    CBufferHandle takeOther(int32_t sizeClass);

    CKernelTable kernels_;
    CBufferTable buffers_;
    COperationPool operations_;
    CReadyOperations ready_;
    CBufferClaims claims_;
    COperationChain chain_;
    CKernelCalls calls_;
    CRunJoiners joiners_;
    static constexpr int32_t kMostEndKernels = 8;
    CEndKernel endKernels_[kMostEndKernels];
    int32_t endKernelCount_ = 0;
    uint64_t issued_ = 0;
    uint64_t rejected_ = 0;
    uint64_t flushes_ = 0;
    uint64_t forcedFlushes_ = 0;
};

}  // namespace tarv
