#pragma once

#include "Audio/Graph/CAudioGraph.h"
#include "Audio/Graph/CAudioPort.h"
#include "Audio/Graph/CAudioProcessDef.h"
#include "Audio/Graph/CAudioProcessPlace.h"
#include "Audio/Graph/CAudioRate.h"
#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

/// Base of the run-time processes. Built on the thread that makes the instance; everything behind `init` belongs to
/// the audio thread (or to the thread that resumes, while no audio runs). Does not allocate in steady state.
class CAudioProcessBase : public CCheckedObject {
public:
    CAudioProcessBase() = default;
    ~CAudioProcessBase() override;

    /// Sets the place, once, before init.
    void place(const CAudioProcessPlace& place);

    /// Builds children, slots and states.
    [[nodiscard]] virtual CError* init();
    /// Releases all blocks held on ports, then the same on the children.
    virtual void clearBuffers();
    /// Writes the due changes of the queue into the slots.
    virtual void updateParams();
    /// Takes the due changes of this process and all inside while the last run is repeated. False if the next run would
    /// issue other operations then: process() must be called, with what was not taken.
    virtual bool takeQuietChanges() { return changed_ == 0 || !areChangesDue(); }
    /// The same for this process and all inside, while it does not run: its values stay current, and changes do not
    /// pile up.
    virtual void updateIdle() { updateParams(); }
    /// One step: consumes the blocks on the input ports and leaves blocks on the output ports.
    virtual void process() {}
    /// Back to the initial state: no history, no fade.
    virtual void reset();
    /// Registers the kernels of the class; called by init.
    virtual void registerKernels() {}
    /// Makes what later changes will need, so that they allocate nothing; called at resume behind a step of no samples,
    /// and behind a run that asked for room.
    virtual void makeSpares() {}
    /// Sets the delay of the process's place, in host samples; returns the delay behind it.
    virtual int32_t placeDelay(int32_t inputDelay);
    /// Applies to `rate` what the process does to the rate of its inputs, for any values of its parameters.
    virtual void changeRate(CAudioRate& rate) const { (void)rate; }
    /// A process inside by its name, null if there is none.
    virtual const CAudioProcessBase* findInner(const CString& childName) const { return (void)childName, nullptr; }
    /// Calls `visit` for each process inside, in run order where there is one.
    virtual void visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const;

    CAudioGraph& graph() const { return *place_.graph; }
    CQPLEXContext& context() const { return *place_.graph->context; }
    CAudioProcessBase* parent() const { return place_.parent; }
    const CAudioProcessDefBase& def() const { return *place_.def; }
    const CString& path() const { return place_.path; }
    const CString& name() const { return place_.name; }
    int32_t stackIndex() const { return place_.stackIndex; }
    /// The name in the location lines of an error.
    const CString& errorContextName() const { return place_.path; }

    int32_t inputCount() const { return inputs_.count(); }
    int32_t outputCount() const { return outputs_.count(); }
    CAudioPort& input(int32_t port) { return *inputs_[port]; }
    const CAudioPort& input(int32_t port) const { return *inputs_[port]; }
    CAudioPort& output(int32_t port) { return *outputs_[port]; }
    const CAudioPort& output(int32_t port) const { return *outputs_[port]; }
    /// Makes sure that the ports up to this number exist. While the graph is built.
    virtual void needInput(int32_t port);
    virtual void needOutput(int32_t port);

    /// Delay of the process's place in the chain, in host samples.
    int32_t inputDelay() const { return inputDelay_; }
    int32_t outputDelay() const { return outputDelay_; }

    /// The slot of an index of the definition's `param-alloc` list, null if the list has none.
    const CAudioParamSlot* slot(int32_t index) const { return index < slots_.count() ? slots_[index] : nullptr; }
    int32_t slotCount() const { return slots_.count(); }
    /// The first number of an element of a slot, as a process of group `group` sees it (group 0 with `is-group0`).
    /// `unset` if there is no slot or it holds no data at all.
    double slotValue(const CAudioParamSlot* slot, int32_t group, int32_t element, double unset) const;
    /// The same as a whole number, halves away from zero; numbers beyond a million count as a million.
    int32_t slotNumber(const CAudioParamSlot* slot, int32_t element) const;
    /// Element at which the process reads its parameters: the stack position (shifted), 0 outside a stack.
    int32_t paramElement() const { return paramElement_; }

protected:
    /// Connects a parameter of this process, by its local name, with a slot: shared (by a remap, or because the
    /// collector knows its name), or private with its definition's defaults. `element` -1 takes changes of every
    /// element.
    void bindSlot(const CString& name, CAudioParamSlot& slot, int32_t element);
    /// Connects a slot with the collector's parameter of a full name, for all groups and elements.
    void bindShared(const CString& fullName, CAudioParamSlot& slot, int32_t element = -1);
    /// Connects a slot with the parameter that a name stands for at this process: "^" leads to the process around it, a
    /// process's name and a "." to one inside, "/" makes the rest a full name. Binds what the process that owns the
    /// parameter would bind: a remap's target, a parameter that the collector knows, or private defaults.
    void bindRelative(const CString& name, CAudioParamSlot& slot);
    /// Binds the slots of the definition's `param-alloc` list and announces its named parameters to the collector.
    void bindSlots();
    /// A slot took one or more changes; called by updateParams.
    virtual void slotChanged(CAudioParamSlot& slot) { (void)slot; }
    /// Full name of a parameter of this process: that of the remap that replaces it here or further up, or its own.
    /// Sets `isShared` if it is not private.
    CString paramFullName(const CString& name, bool& isShared) const;
    /// Name by which a parameter of this process is known in a process above it (or in this one).
    CString localName(const CString& name, const CAudioProcessBase& ancestor) const;
    /// The process reads a parameter `count`.
    bool hasCount() const;

    const CAudioProcessBase* findOwner(CString& name) const;
    void setDelays(int32_t inputDelay, int32_t outputDelay);
    /// The least count of samples that the input ports offer.
    int32_t stepLength() const;
    /// Puts the input channels of port 0 on output 0, by reference.
    void forwardInput();
    void releaseInputs();
    /// Changes wait in the queue; some may not be due yet.
    bool hasChanges() const { return changed_ != 0; }
    /// Writes the due changes into the slots.
    void takeChanges();
    CAudioParamQueue& queue() { return queue_; }

    COwnedArray<CAudioParamSlot, 16> slots_;

private:
    double dueTime() const;
    bool areChangesDue() const;

    CAudioProcessPlace place_;
    COwnedArray<CAudioPort, 4> inputs_;
    COwnedArray<CAudioPort, 4> outputs_;
    CAudioParamQueue queue_;
    uint8_t changed_ = 0;
    int32_t paramElement_ = 0;
    int32_t inputDelay_ = 0;
    int32_t outputDelay_ = 0;
};

}  // namespace tarv
