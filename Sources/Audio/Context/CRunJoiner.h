#pragma once

#include <cstdint>

#include "Audio/Context/COperation.h"

namespace tarv {

/// Makes the calls that a plan stands for.
using CJoinedFunction = void (*)(const void* plan);

/// A call of a recorded run: of a kernel for each operation, of a kernel for all together, of a chain, or a joined one.
struct CRecordedCall {
    CKernelFunction function = nullptr;
    CKernelBatchFunction batch = nullptr;
    CChainFunction chain = nullptr;
    CJoinedFunction joined = nullptr;
    const void* plan = nullptr;
    COperation* operations = nullptr;  ///< `count` of them; of a chain the stages one behind the other
    const uint8_t* lastReads =
        nullptr;        ///< of each operation: bit j says that nobody else reads what stands in operand j
    int32_t count = 0;  ///< operations, or channels of a chain
};

/// Memory of a recorded run for plans, taken from its beginning on. It lasts until the next recording.
struct CPlanMemory {
    uint8_t* next;
    uint8_t* end;

    /// `count` objects without a constructor, aligned to 64 bytes; null without room.
    template <class T>
    T* take(int64_t count) {
        auto* const place = reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(next) + 63) & ~uintptr_t{63});
        const int64_t bytes = count * static_cast<int64_t>(sizeof(T));
        if (end - place < bytes) {
            return nullptr;
        }
        next = place + bytes;
        return reinterpret_cast<T*>(place);
    }
};

/// What a joiner looks for; a context has one for each.
enum class CJoinedKernels { Rates, Bands };
constexpr int32_t kJoinerCount = 2;

/// Finds calls of a recorded run that one call can make together with the same bits. Audio thread; allocates nothing.
class CRunJoiner {
public:
    virtual ~CRunJoiner() = default;
    /// Looks at `count` calls, 1 and up. Returns how many from the first on `call` stands for, with its plan in
    /// `memory`; 0 if it can't stand for the first one.
    virtual int32_t join(const CRecordedCall* calls, int32_t count, CPlanMemory& memory, CRecordedCall& call) = 0;
};

}  // namespace tarv
