#pragma once

#include <cstdint>

#include "Audio/Context/CCommonKernel.h"
#include "Audio/Context/CKernel.h"
#include "Audio/Context/CSectionKernels.h"

namespace tarv {

/// The kernels of a context by number, by name and by what they are for. Adding a kernel may allocate
/// and move all others.
class CKernelTable {
public:
    static constexpr int32_t kKernelCount = 512;

    CKernelTable();
    ~CKernelTable();
    CKernelTable(const CKernelTable&) = delete;
    CKernelTable& operator=(const CKernelTable&) = delete;

    /// Number of the new kernel, or of the one that has this name and equal values. -1 if the table is full, the
    /// operand count is not 1 to 8, or the name belongs to other values. Names are cut to 64 characters.
    int32_t add(const char* name, CKernelFunction function, int32_t operandCount, uint32_t writeMask, uint64_t extra,
                CKernelBatchFunction batch);
    /// Number of a kernel by its full name, or -1.
    int32_t find(const char* name) const;
    int32_t count() const { return count_; }
    /// The next kernel moves all others.
    bool isFull() const { return count_ == room_; }
    const CKernel& operator[](int32_t number) const { return kernels_[number]; }
    /// Whether `number`, 0 and up, is a kernel of so many operands.
    bool takes(int32_t number, int32_t operandCount) const {
        return number < count_ && kernels_[number].operandCount == operandCount;
    }

    int32_t common(CCommonKernel kernel) const { return common_[static_cast<int32_t>(kernel)]; }
    void setCommon(CCommonKernel kernel, int32_t number) { common_[static_cast<int32_t>(kernel)] = number; }
    const CSectionKernels& section(int32_t type) const { return sections_[type]; }
    void setSection(int32_t type, const CSectionKernels& kernels) { sections_[type] = kernels; }

private:
    static constexpr int32_t kHashCount = 1024;
    static constexpr int32_t kFirstRoom = 128;

    int32_t findHashed(const char* name, uint32_t hash) const;

    CKernel* kernels_;  // grows, since most contexts know a quarter of what there may be
    int32_t room_ = kFirstRoom;
    int32_t hashHeads_[kHashCount];
    int32_t count_ = 0;
    int32_t common_[static_cast<int32_t>(CCommonKernel::Count)];
    CSectionKernels sections_[kSectionTypeCount];
};

}  // namespace tarv
