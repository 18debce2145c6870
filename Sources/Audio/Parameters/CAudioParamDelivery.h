#pragma once

#include "Audio/Parameters/CAudioParamChangePool.h"
#include "Audio/Parameters/CAudioParamConsumerPool.h"

namespace tarv {

class CAudioParamRoute;

/// The audio side of a collector: which processes consume which parameter, and the delivery of changes to them in
/// rounds. The engine-side values follow one round later. Audio thread, or the thread that builds the graph; no lock.
class CAudioParamDelivery {
public:
    /// See CAudioParamCollector; the caller visits every parameter to remove or detach.
    void addConsumer(CAudioParam& param, CAudioParamSlot& slot, CAudioParamQueue& queue, uint8_t& changedFlag,
                     int32_t group, int32_t element);
    void removeConsumers(CAudioParam& param, const CAudioParamQueue& queue);
    void detachConsumers(CAudioParam& param);
    bool hasConsumers() const { return consumers_.inUse() > 0; }
    /// Sets up the slots that consume a parameter, which was defined just now.
    void prepareConsumers(CAudioParam& param);

    /// A record of the few that the audio side keeps for its own changes. Takes no lock.
    CAudioParamChange* createChange(CAudioParam& param, int32_t group, int32_t first, int32_t count, bool resize);
    /// Makes those records, each with room for `nodes` list nodes.
    void prepareRecords(int32_t nodes);

    /// Begins a round: the engine-side values take what the last one delivered.
    void beginRound();
    /// Delivers a change of the round.
    void deliver(CAudioParamChange& change);
    /// Delivers a change between rounds: the engine-side value takes what waited before it.
    void deliverAlone(CAudioParamChange& change);
    /// Changes that processes took so far.
    uint64_t count() const { return count_; }

private:
    static void applyWaiting(CAudioParam& param);
    void prepareSlot(CAudioParam& param, CAudioParamConsumer& consumer);
    void queueInitialGroup(CAudioParam& param, CAudioParamConsumer& consumer, int32_t group);
    void queueCopy(CAudioParam& param, CAudioParamConsumer& consumer, const CAudioParamChange& source);
    void queueInitial(CAudioParamChange& change, CAudioParamConsumer& consumer);

    CAudioParamChangePool pool_;
    // For the first values of consumers, each of which goes to one queue only.
    CAudioParamChangePool initialPool_;
    CAudioParamConsumerPool consumers_;
    CAudioParam* touched_ = nullptr;  ///< linked by CAudioParamRoute::nextTouched
    uint64_t count_ = 0;
    uint32_t round_ = 1;
};

}  // namespace tarv
