#pragma once

#include <cstdint>
#include <memory>

#include "Audio/Context/COperation.h"
#include "Audio/Context/CSignalPlaces.h"

namespace tarv {

/// Makes the calls that a plan stands for.
using CJoinedFunction = void (*)(const void* plan);
/// Notes where a plan names the signal of `places`.
using CPlaceFinder = void (*)(void* plan, CSignalPlaces& places);

/// A call of a recorded run: of a kernel for its operations, one by one or together, or a joined one.
struct CRecordedCall {
    CKernelFunction function = nullptr;
    CKernelBatchFunction batch = nullptr;  ///< null: one by one
    CJoinedFunction joined = nullptr;
    CPlaceFinder findPlaces = nullptr;  ///< of a joined call
    void* plan = nullptr;
    COperation* operations = nullptr;  ///< `count` of them
    /// Of each operation: bit j says that nobody else reads what stands in operand j.
    const uint8_t* lastReads = nullptr;
    int32_t count = 0;
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
    /// Calls from the first one on: `ahead` that must run before, then `count` that one call can stand for; 0: none.
    struct CFound {
        int32_t ahead = 0;
        int32_t count = 0;
    };

    virtual ~CRunJoiner() = default;
    /// Looks at `count` calls, 1 and up, when all before them have run. May change their order where that changes no
    /// bit.
    virtual CFound find(CRecordedCall* calls, int32_t count) = 0;
    /// Makes the call that stands for what was found last, with its plan in `memory`, when those ahead have run. False
    /// without room.
    virtual bool plan(CPlanMemory& memory, CRecordedCall& call) = 0;
};

/// The joiners of a context by CJoinedKernels; any may be null.
using CRunJoiners = std::unique_ptr<CRunJoiner>[kJoinerCount];

}  // namespace tarv
