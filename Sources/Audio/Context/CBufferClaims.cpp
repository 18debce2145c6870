#include "Audio/Context/CBufferClaims.h"

namespace tarv {

namespace {

constexpr int16_t kNone = -1;
constexpr uint64_t kOneReference = CContextBuffer::kOneReference;
constexpr uint64_t kReaders = CContextBuffer::kReaders;
constexpr uint64_t kWriter = CContextBuffer::kWriter;

}  // namespace

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
            waitFor(operation, j);
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

void CBufferClaims::waitFor(CQueuedOperation& operation, int32_t operand) {
    CContextBuffer& buffer = *operation.buffers[operand];
    buffer.state += kOneReference;
    if (buffer.firstWaiter == kNone && tryHold(buffer, operation.holds[operand])) {
        return;
    }
    const auto waiter = static_cast<int16_t>(operations_.numberOf(operation) * kMaxOperands + operand);
    nextWaiter(waiter) = kNone;
    if (buffer.firstWaiter == kNone) {
        buffer.firstWaiter = waiter;
    } else {
        nextWaiter(buffer.lastWaiter) = waiter;
    }
    buffer.lastWaiter = waiter;
    buffer.state |= CContextBuffer::kWatched;
    ++operation.pending;
}

void CBufferClaims::notifyOnWrite(CContextBuffer& buffer, uint8_t* first, uint8_t* second) {
    buffers_.notices().set(buffer, first, second);
    buffer.state |= CContextBuffer::kWatched;
}

void CBufferClaims::releaseWatched(CContextBuffer& buffer, uint64_t hold) {
    if ((hold & kWriter) != 0) {
        buffers_.notices().deliver(buffer);
    }
    settle(buffer);
    if (buffer.firstWaiter == kNone && !buffers_.notices().has(buffer)) {
        buffer.state &= ~CContextBuffer::kWatched;
    }
    if (buffer.references() == 0) {
        buffers_.giveBack(buffer);
    }
}

/// Gives a buffer to the operations that wait for it, oldest first: one writer, or all readers up to the next writer.
void CBufferClaims::settle(CContextBuffer& buffer) {
    while (buffer.firstWaiter != kNone) {
        const int16_t waiter = buffer.firstWaiter;
        CQueuedOperation& operation = operations_.at(waiter / kMaxOperands);
        if (!tryHold(buffer, operation.holds[waiter % kMaxOperands])) {
            return;
        }
        buffer.firstWaiter = nextWaiter(waiter);
        if (--operation.pending == 0) {
            ready_.add(operation);
        }
    }
}

}  // namespace tarv
