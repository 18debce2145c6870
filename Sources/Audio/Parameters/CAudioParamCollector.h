#pragma once

#include <map>

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamBatch.h"
#include "Audio/Parameters/CAudioParamDelivery.h"
#include "Audio/Parameters/CAudioParamReceiver.h"
#include "Core/CObject.h"

namespace tarv {

/// Owns every named parameter of one instance and carries changes from the threads that make them to the processes
/// (`audio:param-collector`). A posted change goes one way: it is checked and applied to the user-side value under the
/// parameter's lock, put into the batch, merged there, and the listeners are notified without a lock; the next round
/// delivers it to the processes. Order of locks: a parameter's, then the pool's, then the environment's.
/// The graph's queues must be destroyed, or emptied by detachConsumers, before the collector is.
class CAudioParamCollector : public CObject {
public:
    ~CAudioParamCollector() override;
    [[nodiscard]] CError* init() override;

    /// The parameter of a full name, made if there is none. Takes the collector's lock.
    CAudioParam* getParam(const CString& name);
    /// The parameter of a full name or null.
    CAudioParam* findParam(const CString& name) const;
    /// Whether a parameter of that name was defined and the name differs from its display path.
    bool hasParam(const CString& name) const;
    /// Binds a definition's information to the parameter of that name; a second bind keeps the first. Its values are at
    /// the defaults from then on, and slots that consume it already get them. [while the graph is built, or audio
    /// thread]
    CAudioParam* define(const CString& name, const CAudioParamInfo& info);

    /// Makes `slot` consume `param`: sets its data up, queues the current values with time -1.0 and sets `changedFlag`.
    /// `group` -1 (or -2) and `element` -1 take every one; every group does for a parameter of a single group. The slot
    /// of a string parameter gets its texts once. Allocates. [while the graph is built, or audio thread]
    void addConsumer(CAudioParam& param, CAudioParamSlot& slot, CAudioParamQueue& queue, uint8_t& changedFlag,
                     int32_t group, int32_t element) {
        delivery_.addConsumer(param, slot, queue, changedFlag, group, element);
    }
    /// Takes the consumers of one process out, which its queue identifies, and empties the queue. [while the graph is
    /// built, or audio thread]
    void removeConsumers(CAudioParamQueue& queue);
    /// Takes all consumers out and empties their queues, before the graph is destroyed. [suspended]
    void detachConsumers();

    /// A record for postChange with the parameter's shape and `count` elements, values zero. Any thread; allocates only
    /// when more records are in use than ever before, or for more than 16 numbers.
    CAudioParamChange* createChange(CAudioParam& param, int32_t group, int32_t first, int32_t count,
                                    bool resize = false);
    /// The same on the audio side: takes no lock, and does not allocate while the few records that it keeps are enough.
    CAudioParamChange* createEngineChange(CAudioParam& param, int32_t group, int32_t first, int32_t count,
                                          bool resize = false) {
        return delivery_.createChange(param, group, first, count, resize);
    }
    /// The one way to change a value; takes the record over. Queued [any thread, outside a block]: the user-side value
    /// follows at once, the processes with the next round. Not queued [audio thread]: straight to the processes, and
    /// the user-side value stays. `time` counts from the start of the round that takes it; while the engine does not
    /// run it is 0. A change of another group than 0 of a single-group parameter, one of an undefined parameter and one
    /// whose shape does not fit are dropped. Notifies the listeners but `origin` of a queued change.
    void postChange(CAudioParam& param, CAudioParamChange* change, bool queued, double time,
                    const CAudioParamListener* origin = nullptr);
    /// As a queued postChange at time 0, but notifies nobody: the caller, who may hold locks now, calls
    /// CAudioParam::notify when it holds none. Returns whether the change was applied.
    bool postWithoutNotifying(CAudioParam& param, CAudioParamChange* change);
    /// Posts of one number or text: what CAudioParam::setValue, setText and setEngineValue do.
    void postValue(CAudioParam& param, int32_t group, int32_t element, double value, int32_t index,
                   const CAudioParamListener* origin);
    void postText(CAudioParam& param, int32_t group, int32_t element, const CString& text,
                  const CAudioParamListener* origin);
    void postEngineValue(CAudioParam& param, int32_t group, int32_t element, double value, int32_t index);
    /// A whole value in place of the present one, as part of something larger.
    struct CAssignment {
        CAudioParam* param = nullptr;
        CAudioParamData data;  ///< of the parameter's shape
        int32_t group = -1;    ///< -1: every group, what `data` lacks is emptied; otherwise this one takes group 0
    };
    /// Makes the user-side value of one parameter that of the assignment, by one change for each group that differs;
    /// returns whether one did. Notifies nobody: the caller, who may hold locks now, calls notifyAll when it holds
    /// none. `before` and `after`, if not null, get the values around it. Any thread but the audio thread.
    bool assign(const CAssignment& assignment, CAudioParamData* before = nullptr, CAudioParamData* after = nullptr);
    /// Whether assign would find nothing to change. Any thread but the audio thread.
    static bool isAssigned(const CAssignment& assignment);
    /// One round: delivers what was posted to the processes' queues, `timeOffset` added to each time. Once a block, and
    /// at resume. Takes the environment's lock for a swap, nothing else. [audio thread, or suspended]
    void applyPendingChanges(double timeOffset);
    /// Changes delivered to processes so far. [audio thread]
    uint64_t deliveries() const { return delivery_.count(); }
    /// Changes that wait for the next round.
    int32_t pendingCount() const { return batch_.count(); }

    /// Offers every parameter to the registries, enumerated ones first, and makes the records that changes need from
    /// the first block on. The graph is built. A second call does nothing. [suspended]
    void closeCollection();
    bool isClosed() const { return closed_; }
    void addRegistry(CAudioParamReceiver& registry);
    void removeRegistry(CAudioParamReceiver& registry);
    /// The first registry whose `id` is that text, or null.
    CAudioParamReceiver* getRegistry(const CString& id) const;

    /// Every parameter in the order of the names, under the collector's lock.
    template <class Visit>
    void forEachParam(Visit&& visit) const {
        CLockScope scope(lock_);
        for (const auto& entry : params_) {
            visit(*entry.second);
        }
    }

private:
    using CParamMap =
        std::map<CString, CAudioParam*, std::less<CString>, CHeapAllocator<std::pair<const CString, CAudioParam*>>>;

    static bool fits(const CAssignment& assignment);
    /// The first group from `group` on whose value an assignment changes, or -1.
    static int32_t nextDifference(const CAssignment& assignment, int32_t group);
    bool post(CAudioParam& param, CAudioParamChange* change, double time);
    void enqueue(CAudioParam& param, CAudioParamChange* change);
    void offerParam(CAudioParam& param);

    mutable CLock lock_;
    CParamMap params_;
    CArray<CAudioParamReceiver*, 4> registries_;
    bool closed_ = false;
    CLock poolLock_;
    CAudioParamChangePool pool_;
    CAudioParamDelivery delivery_;
    CAudioParamBatch batch_;
};

}  // namespace tarv
