#include "Audio/Context/CBufferClaims.h"

namespace tarv {

namespace {

constexpr int32_t kNone = -1;
constexpr uint64_t kOneReference = CContextBuffer::kOneReference;
constexpr uint64_t kReaders = CContextBuffer::kReaders;
constexpr uint64_t kWriter = CContextBuffer::kWriter;

}  // namespace

CBufferClaims::CBufferClaims(CBufferTable& buffers, CReadyOperations& ready) : buffers_(buffers), ready_(ready) {
    for (int32_t i = 0; i < kWaiterCount; ++i) {
        waiters_[i].next = i + 1 < kWaiterCount ? i + 1 : kNone;
    }
}

/// A buffer named more than once is claimed once, by its first operand, for writing if any of its operands is written.
void CBufferClaims::claimMerged(CQueuedOperation& operation) {
    const int32_t n = operation.kernel->operandCount;
    for (int32_t j = 0; j < n; ++j) {
        int32_t first = 0;
        while (operation.buffers[first] != operation.buffers[j]) {
            ++first;
        }
        const uint64_t hold = operation.kernel->holds[j];
        if (first == j) {
            operation.ownHolds[j] = hold;
            continue;
        }
        operation.ownHolds[j] = kOneReference;
        if ((hold & kWriter) != 0) {
            operation.ownHolds[first] = hold;
        }
    }
    operation.holds = operation.ownHolds;
    for (int32_t j = 0; j < n; ++j) {
        if (operation.ownHolds[j] == kOneReference) {
            operation.buffers[j]->state += kOneReference;
        } else {
            waitFor(*operation.buffers[j], operation, operation.ownHolds[j]);
        }
    }
}

/// Takes the claim of `hold`, but not its reference, if no other claim is in its way.
bool CBufferClaims::tryHold(CContextBuffer& buffer, uint64_t hold) {
    const uint64_t others = (hold & kWriter) != 0 ? kWriter | kReaders : kWriter;
    if ((buffer.state & others) != 0) {
        return false;
    }
    buffer.state += hold - kOneReference;
    return true;
}

void CBufferClaims::waitFor(CContextBuffer& buffer, CQueuedOperation& operation, uint64_t hold) {
    buffer.state += kOneReference;
    if (buffer.firstWaiter == kNone && tryHold(buffer, hold)) {
        return;
    }
    const int32_t link = freeWaiters_;
    CWaiter& waiter = waiters_[link];
    freeWaiters_ = waiter.next;
    waiter.operation = &operation;
    waiter.hold = hold;
    waiter.next = kNone;
    if (buffer.firstWaiter == kNone) {
        buffer.firstWaiter = link;
    } else {
        waiters_[buffer.lastWaiter].next = link;
    }
    buffer.lastWaiter = link;
    buffer.state |= CContextBuffer::kWatched;
    ++operation.pending;
}

void CBufferClaims::notifyOnWrite(CContextBuffer& buffer, uint8_t* first, uint8_t* second) {
    buffer.notify[0] = first;
    buffer.notify[1] = second;
    buffer.state |= CContextBuffer::kWatched;
}

void CBufferClaims::releaseWatched(CContextBuffer& buffer, uint64_t hold) {
    if (buffer.notify[0] != nullptr && (hold & kWriter) != 0) {
        *buffer.notify[0] = 1;
        *buffer.notify[1] = 1;
        buffer.notify[0] = nullptr;
    }
    settle(buffer);
    if (buffer.firstWaiter == kNone && buffer.notify[0] == nullptr) {
        buffer.state &= ~CContextBuffer::kWatched;
    }
    if (buffer.references() == 0) {
        buffers_.giveBack(buffer);
    }
}

/// Gives a buffer to the operations that wait for it, oldest first: one writer, or all readers up to the next writer.
void CBufferClaims::settle(CContextBuffer& buffer) {
    while (buffer.firstWaiter != kNone) {
        const int32_t link = buffer.firstWaiter;
        CWaiter& waiter = waiters_[link];
        if (!tryHold(buffer, waiter.hold)) {
            return;
        }
        buffer.firstWaiter = waiter.next;
        waiter.next = freeWaiters_;
        freeWaiters_ = link;
        CQueuedOperation& operation = *waiter.operation;
        if (--operation.pending == 0) {
            ready_.add(operation);
        }
    }
}

}  // namespace tarv
