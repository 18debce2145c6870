#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

class CAudioProcessTerminalBase;

/// Base of the modules: what a terminal process does to one channel. Its process makes it, binds and resolves it once,
/// then assigns it to a channel, designs, runs and retires it, and assigns it again. Thread: the audio thread, or the
/// one that resumes.
class CAudioModule : public CHeapObject {
public:
    CAudioModule() = default;
    virtual ~CAudioModule() = default;
    CAudioModule(const CAudioModule&) = delete;
    CAudioModule& operator=(const CAudioModule&) = delete;

    /// Gets the binding of every slot from the process's regModuleParam.
    virtual void bindParams() = 0;
    /// Looks up the kernels that the context's tables do not list.
    virtual void resolveKernels() {}

    void attach(CAudioProcessTerminalBase& process);
    /// The channel whose parameters the module reads.
    void assign(int32_t group, int32_t element) {
        group_ = group;
        element_ = element;
    }
    int32_t group() const { return group_; }
    int32_t element() const { return element_; }

protected:
    CAudioProcessTerminalBase& process() const { return *process_; }
    CQPLEXContext& context() const { return *context_; }
    /// Number of the element `offset` behind the one that the process reads; `unset` without data.
    double read(const CAudioParamSlot* slot, double unset, int32_t offset = 0) const;
    /// Returns a block of noise, for use in place of a signal. Makes the seed block, which the module keeps, if there
    /// is none.
    CBufferHandle noise(CBufferHandle& seed, int32_t kernel, int32_t count) const;
    /// A new seed block, one word that is 0.
    CBufferHandle takeSeed() const;
    CBufferHandle takeSignal(int32_t count) const { return context().takeSignal(count); }
    /// The block itself with one more reference.
    CBufferHandle forward(CBufferHandle handle) const {
        context().addReference(handle);
        return handle;
    }
    void drop(CBufferHandle& handle) const;

private:
    CAudioProcessTerminalBase* process_ = nullptr;
    CQPLEXContext* context_ = nullptr;
    int32_t group_ = 0;
    int32_t element_ = 0;
};

}  // namespace tarv
