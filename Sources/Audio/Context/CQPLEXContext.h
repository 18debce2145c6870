#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>

#include "Audio/Context/COperation.h"
#include "Audio/Context/CRecordedRun.h"
#include "Core/CHeap.h"

namespace tarv {

/// The kernels that every module finds by number.
enum class CCommonKernel : int32_t {
    Copy,
    Addc,
    Addcid,
    Add2,
    Add2i,
    Add3,
    Add4,
    Sub2,
    Max2,
    Max2i,
    Max3,
    Max4,
    Min2,
    Min3,
    Min4,
    Mix,
    Mix2,
    Mixb,
    Add2mul,
    Add3mul,
    Mulc,
    Mulci,
    Mul2,
    Mul2i,
    Mul2addi,
    Abs,
    Sqrt,
    Fill0,
    Fillc,
    Filld,
    Xfadei,
    Xfade,
    Count
};

struct CKernel;
struct CContextBuffer;

/// An operation that waits to be run.
struct CQueuedOperation : COperation {
    int32_t pending;  // operands that it still waits for
    CKernel* kernel;
    CQueuedOperation* next;  // free list, or the kernel's list of ready operations
    CContextBuffer* buffers[kMaxOperands];
    const uint64_t* holds;  // what each operand adds to its buffer's state: the kernel's, or its own
    uint64_t ownHolds[kMaxOperands];
};

/// A registered kernel.
struct CKernel {
    char name[65];
    CKernelFunction function;
    CKernelBatchFunction batch;  ///< null: the context calls `function` for each operation
    int32_t operandCount;
    uint32_t writeMask;  ///< bit j: operand j is written (it may be read too)
    uint64_t extra;
    int32_t next;                 // of the same hash
    CQueuedOperation* readyHead;  // operations that wait for nothing any more, oldest first
    CQueuedOperation* readyTail;
    CKernel* nextActive;
    uint64_t holds[kMaxOperands];   // what an operand adds to the state of its buffer while an operation is pending
    uint64_t limits[kMaxOperands];  // ... which it may while the state is below this
};

/// An entry of the context's table of buffers.
struct alignas(64) CContextBuffer {
    // References in the low half; above them the operations that have it for reading, whether one has it for writing,
    // and whether somebody waits for it or wants to know: one word, so that an operand costs one addition.
    uint64_t state;
    uint8_t* data;     // where the contents start within the allocation
    int32_t nextFree;  // while free
    int32_t capacity;  // bytes
    int32_t sizeClass;
    int32_t waitHead;  // operations that wait for it, in order of issue
    int32_t waitTail;
    uint8_t* notify[2];  // null: nobody wants to know
    void* allocation;
};

/// Section types 0 to 23: CFilterSection tells what each stands for.
constexpr int32_t kSectionTypeCount = 24;
constexpr int32_t kSectionTypeFir = 21;

/// The kernels of one filter section type; -1 where there is none.
struct CSectionKernels {
    int32_t init;              ///< operands: new state block, coefficients
    int32_t update;            ///< operands: new state block, coefficients, old state block
    int32_t run;               ///< operands: destination, state block, source
    int32_t runGain;           ///< the same; the immediate multiplies the output
    int32_t stateSize;         ///< 64-bit floats of a state block
    int32_t coefficientCount;  ///< 64-bit floats that init and update read: numerators, then denominators
};

/// Figures for tests and for the tool that looks inside.
struct CContextCounters {
    uint64_t operations;  ///< issued
    uint64_t calls;       ///< kernel calls: a batch counts once
    uint64_t flushes;
    uint64_t forcedFlushes;   ///< of these, because a table was full
    uint64_t repeats;         ///< recorded runs that were run again; the other figures don't count what they did
    uint64_t rejected;        ///< operations that could not be issued
    uint64_t storageGrowths;  ///< allocations of buffer storage
    uint64_t storageBytes;
    int32_t buffersInUse;
    int32_t operationsWaiting;  ///< issued and not run yet
};

/// Runs a process graph as a stream of vector operations. `issue` queues; `flush` runs what is queued. In between the
/// context keeps the data flow right: an operation runs after every earlier one that writes what it reads or writes,
/// and after every earlier one that reads what it writes. Ready operations of one kernel and count are handed to the
/// kernel together, so that independent channels run side by side. Thread: the audio thread alone (or any one while no
/// audio runs); there is no lock. No call allocates in steady state.
class CQPLEXContext : public CHeapObject {
public:
    CQPLEXContext();
    ~CQPLEXContext();
    CQPLEXContext(const CQPLEXContext&) = delete;
    CQPLEXContext& operator=(const CQPLEXContext&) = delete;

    /// Number of the kernel; -1 if the table of 512 is full, the operand count is not 1 to 8, or the name stands
    /// already with other values. Equal values give the old number. Names are cut to 64 characters.
    int32_t registerKernel(const char* name, CKernelFunction function, int32_t operandCount, uint32_t writeMask,
                           uint64_t extra = 0, CKernelBatchFunction batch = nullptr);
    /// Number of a kernel by its full name, or -1.
    int32_t findKernel(const char* name) const;
    /// Tells the one chain of three kernels that `function` runs in one loop when operations of them stand in series
    /// and nothing else comes between. A number of -1 in it: nothing happens.
    void registerChain(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function);
    int32_t kernelCount() const { return kernelCount_; }
    const CKernel& kernel(int32_t number) const { return kernels_[number]; }
    /// The number of a common kernel; -1 until setCommonKernel names it.
    int32_t commonKernel(CCommonKernel kernel) const { return commonKernels_[static_cast<int32_t>(kernel)]; }
    void setCommonKernel(CCommonKernel kernel, int32_t number) {
        commonKernels_[static_cast<int32_t>(kernel)] = number;
    }
    /// The kernels of a section type, 0 to kSectionTypeCount - 1; all -1 until setSectionKernels names them.
    const CSectionKernels& sectionKernels(int32_t type) const { return sectionKernels_[type]; }
    void setSectionKernels(int32_t type, const CSectionKernels& kernels) { sectionKernels_[type] = kernels; }

    /// A buffer of at least `bytes`, contents undefined, one reference. Returns kNoBuffer when all
    /// 4095 are in use; an operation that names kNoBuffer is not run.
    CBufferHandle takeBuffer(int32_t bytes) {
        const int32_t sizeClass = sizeClassOf(bytes);
        const int32_t index = freeBuffers_[sizeClass];
        if (index == -1) [[unlikely]] {
            return takeOther(sizeClass);
        }
        freeBuffers_[sizeClass] = buffers_[index].nextFree;
        buffers_[index].state = kOneReference;
        ++counters_.buffersInUse;
        isRecorded_ = false;
        return index;
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
            buffers_[indexOf(handle)].state += kOneReference;
        }
    }
    void releaseReference(CBufferHandle handle) {
        if (handle != kNoBuffer) {
            CBuffer& buffer = buffers_[indexOf(handle)];
            buffer.state -= kOneReference;
            if ((buffer.state & kReferences) == 0) {
                giveBack(buffer);
            }
        }
    }
    int32_t references(CBufferHandle handle) const {
        return handle == kNoBuffer ? 0 : static_cast<int32_t>(buffers_[indexOf(handle)].state & kReferences);
    }
    /// Address of a buffer, null for kNoBuffer. Contents may be written right after takeBuffer, before any operation
    /// names the buffer. Call flush before reading them.
    void* data(CBufferHandle handle) const {
        return handle == kNoBuffer ? nullptr : buffers_[indexOf(handle)].data + offsetOf(handle);
    }
    double* signal(CBufferHandle handle) const { return static_cast<double*>(data(handle)); }
    /// Bytes of a buffer's storage, 0 for kNoBuffer.
    int32_t capacity(CBufferHandle handle) const {
        return handle == kNoBuffer ? 0 : buffers_[indexOf(handle)].capacity;
    }
    /// A handle `bytes` further into the storage. The sum of offsets must stay below 512 KiB.
    static CBufferHandle offsetBy(CBufferHandle handle, int32_t bytes) {
        return handle == kNoBuffer ? kNoBuffer : handle + bytes * (kIndexMask + 1);
    }
    static int32_t indexOf(CBufferHandle handle) { return handle & kIndexMask; }
    static int32_t offsetOf(CBufferHandle handle) { return handle >> kIndexBits; }
    /// Entries of the table that have a storage, in use or not.
    int32_t storageCount() const { return unusedBuffers_ == -1 ? kUsableBuffers : unusedBuffers_; }
    /// The most buffers that can be in use at once.
    static constexpr int32_t kUsableBuffers = 4095;
    /// Sets both bytes to 1 when the next write of the buffer completes.
    void notifyOnWrite(CBufferHandle handle, uint8_t* first, uint8_t* second);
    /// Makes sure that `count` free buffers of `bytes` exist, so that later takeBuffer calls do not allocate.
    /// Allocates; called at resume. State blocks (up to 1 KiB) and signals have storages of their own: reserve both.
    void reserveBuffers(int32_t count, int32_t bytes);

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
                ++counters_.rejected;
        }
    }
    /// Runs everything that is queued.
    void flush();
    /// The end of a process' work on a block: runs what is queued, unless it may be the beginning of the chain, which
    /// then waits for the next process. Contents are there only after a flush.
    void endProcess();

    /// From here to `endRecording` the kernel calls are recorded. What is queued runs first.
    void startRecording();
    /// Runs what is queued and ends the recording; false if it was too long to be kept.
    bool endRecording();
    /// Whether `repeat` can stand for the recorded run: no buffer was taken and no operation issued since it ended.
    bool isRecorded() const { return isRecorded_; }
    /// The recorded kernel calls once more, on the same storages: whoever wants other inputs writes them to where the
    /// recorded run had them, and finds the outputs where it left them.
    void repeat();

    const CContextCounters& counters() const { return counters_; }

private:
    static constexpr int32_t kIndexBits = 12;
    static constexpr int32_t kIndexMask = (1 << kIndexBits) - 1;
    // Twice what the largest tree takes (SystemTests, ContextRoom). The last index is that of kNoBuffer.
    static constexpr int32_t kBufferCount = kIndexMask + 1;
    static constexpr int32_t kOperationCount = 512;
    static constexpr int32_t kWaiterCount = 4096;
    static constexpr int32_t kKernelCount = 512;
    static constexpr int32_t kHashCount = 1024;
    static constexpr int32_t kSmallestStorage = 64;
    static constexpr int32_t kSizeClassCount = 25;  // storages of 64 bytes, 128, 256 ...
    // Each operand waits at most once, so the waiter table can't run out before the operation table does.
    static_assert(kOperationCount * kMaxOperands <= kWaiterCount && kUsableBuffers < kBufferCount);

    using CBuffer = CContextBuffer;
    static constexpr uint64_t kOneReference = 1;
    static constexpr uint64_t kReferences = 0xffffffffu;
    static constexpr uint64_t kOneReader = uint64_t{1} << 32;
    static constexpr uint64_t kReaders = uint64_t{0xffffff} << 32;
    static constexpr uint64_t kWriter = uint64_t{1} << 56;
    static constexpr uint64_t kWatched = uint64_t{1} << 57;
    struct CWaiter {
        CQueuedOperation* operation;
        uint64_t hold;
        int32_t next;
    };

    int32_t findHashed(const char* name, uint32_t hash) const;
    template <int32_t N>
    void issueOperands(int32_t kernelNumber, int32_t count, double immediate, const CBufferHandle* handles);
    void claimMerged(CQueuedOperation& operation);
    void waitFor(CBuffer& buffer, CQueuedOperation& operation, uint64_t hold);
    void makeReady(CQueuedOperation& operation);
    void runReady(CKernel& kernel);
    void runBatch(CKernel& kernel, CQueuedOperation* const* batch, int32_t count);
    template <int32_t N>
    void claim(CQueuedOperation& operation);
    template <int32_t N>
    void keepForChain(CQueuedOperation& operation);
    template <int32_t N>
    bool joinsChain(int32_t kernelNumber, int32_t count, CBuffer* const* buffers, const CBufferHandle* handles,
                    bool isRepeated);
    template <int32_t N>
    bool isNextOfChain(const CKernel& kernel, int32_t count, CBuffer* const* buffers, const void* source) const;
    void runChain();
    void dropLinks();
    void completeChain();
    void letGo(CQueuedOperation& operation, int32_t operand);
    void leaveChain();
    void restartChain();
    void complete(CQueuedOperation& operation);
    void complete(CQueuedOperation* const* operations, int32_t count);
    void letGoSlowly(CBuffer& buffer, uint64_t hold);
    bool tryHold(CBuffer& buffer, uint64_t hold);
    void settle(CBuffer& buffer);
    void giveBack(CBuffer& buffer) {
        buffer.notify[0] = nullptr;
        buffer.nextFree = freeBuffers_[buffer.sizeClass];
        freeBuffers_[buffer.sizeClass] = static_cast<int32_t>(&buffer - buffers_);
        --counters_.buffersInUse;
    }
    static int32_t sizeClassOf(int32_t bytes) {
        const auto size = static_cast<uint32_t>(bytes > kSmallestStorage ? bytes : kSmallestStorage);
        return std::bit_width(size - 1) - std::bit_width(static_cast<uint32_t>(kSmallestStorage - 1));
    }
    CBufferHandle takeOther(int32_t sizeClass);
    int32_t takeFree(int32_t sizeClass);
    int32_t takeUnused(int32_t sizeClass);
    int32_t popFree(int32_t sizeClass);
    void allocateStorage(int32_t index, int32_t sizeClass);

    CBuffer buffers_[kBufferCount];
    CQueuedOperation operations_[kOperationCount];
    CWaiter waiters_[kWaiterCount];
    CKernel kernels_[kKernelCount];
    int32_t hashHeads_[kHashCount];
    int32_t freeBuffers_[kSizeClassCount];
    int32_t unusedBuffers_ = 0;  // entries that never had storage, in the order of their indexes
    CQueuedOperation* freeOperations_ = nullptr;
    int32_t freeWaiters_ = 0;
    int32_t kernelCount_ = 0;
    CKernel* activeHead_ = nullptr;  // kernels with ready operations
    CKernel* activeTail_ = nullptr;
    int32_t commonKernels_[static_cast<int32_t>(CCommonKernel::Count)];
    CSectionKernels sectionKernels_[kSectionTypeCount];
    int32_t chainKernels_[kChainStages] = {-1, -1, -1};
    CChainFunction chainFunction_ = nullptr;
    CQueuedOperation* chain_[kChainStages]
                            [kMaxBatch];  // of each stage by channel; they wait for nothing outside the chain
    int32_t chainCounts_[kChainStages] = {0, 0, 0};
    int32_t chainStage_ = 0;       // processes whose operations have been kept
    int32_t expectedKernel_ = -1;  // that goes on with the chain; -1 when it was left until the next flush
    CRecordedRun recording_;
    bool isRecording_ = false;
    bool isRecorded_ = false;
    CContextCounters counters_ = {};
};

}  // namespace tarv
