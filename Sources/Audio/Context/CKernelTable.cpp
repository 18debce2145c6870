#include "Audio/Context/CKernelTable.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "Audio/Context/CContextBuffer.h"
#include "Core/CHeap.h"

namespace tarv {

namespace {

constexpr int32_t kNone = -1;
constexpr size_t kNameLength = 64;

uint32_t hashOf(const char* name) {
    uint32_t hash = 5555;
    for (size_t i = 0; i < kNameLength && name[i]; ++i) {
        hash = hash * 33 + static_cast<uint8_t>(name[i]);
    }
    return hash & 0x3ff;
}

}  // namespace

CKernelTable::CKernelTable() : kernels_(static_cast<CKernel*>(CHeap::alloc(sizeof(CKernel) * kFirstRoom))) {
    std::fill(std::begin(hashHeads_), std::end(hashHeads_), kNone);
    std::fill(std::begin(common_), std::end(common_), kNone);
    std::fill(std::begin(sections_), std::end(sections_), CSectionKernels{kNone, kNone, kNone, kNone, 0, 0});
}

CKernelTable::~CKernelTable() {
    CHeap::free(kernels_);
}

int32_t CKernelTable::findHashed(const char* name, uint32_t hash) const {
    int32_t number = hashHeads_[hash];
    while (number != kNone && std::strncmp(kernels_[number].name, name, kNameLength) != 0) {
        number = kernels_[number].next;
    }
    return number;
}

int32_t CKernelTable::find(const char* name) const {
    return findHashed(name, hashOf(name));
}

int32_t CKernelTable::add(const char* name, CKernelFunction function, int32_t operandCount, uint32_t writeMask,
                          uint64_t extra, CKernelBatchFunction batch) {
    const uint32_t hash = hashOf(name);
    const int32_t old = findHashed(name, hash);
    if (old != kNone) {
        const CKernel& k = kernels_[old];
        const bool isEqual = k.function == function && k.batch == batch && k.operandCount == operandCount &&
                             k.writeMask == writeMask && k.extra == extra;
        return isEqual ? old : kNone;
    }
    if (count_ == kKernelCount || operandCount < 1 || operandCount > kMaxOperands) {
        return kNone;
    }
    if (isFull()) {
        room_ *= 2;
        kernels_ = static_cast<CKernel*>(CHeap::realloc(kernels_, sizeof(CKernel) * static_cast<size_t>(room_)));
    }
    CKernel& k = *new (kernels_ + count_) CKernel;
    std::strncpy(k.name, name, kNameLength);
    k.name[kNameLength] = 0;
    k.function = function;
    k.batch = batch;
    k.operandCount = operandCount;
    k.writeMask = writeMask;
    k.extra = extra;
    k.next = hashHeads_[hash];
    for (int32_t j = 0; j < kMaxOperands; ++j) {
        const bool isWritten = ((writeMask >> j) & 1u) != 0;
        k.holds[j] = CContextBuffer::kOneReference + (isWritten ? CContextBuffer::kWriter : CContextBuffer::kOneReader);
        k.limits[j] = isWritten ? CContextBuffer::kOneReader : CContextBuffer::kWriter;
    }
    hashHeads_[hash] = count_;
    return count_++;
}

}  // namespace tarv
