#include "Audio/Parameters/CAudioParamDelivery.h"

#include <algorithm>

#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

namespace {

/// Records that are ready for the audio side's own changes when the graph starts.
constexpr int32_t kRecords = 16;

}  // namespace

void CAudioParamDelivery::addConsumer(CAudioParam& param, CAudioParamSlot& slot, CAudioParamQueue& queue,
                                      uint8_t& changedFlag, int32_t group, int32_t element) {
    CAudioParamConsumer& consumer = consumers_.take();
    consumer = {&slot, &queue, &changedFlag, group, element, nullptr};
    param.route().append(consumer);
    slot.param = &param;
    if (param.isDefined()) {
        prepareSlot(param, consumer);
    }
}

void CAudioParamDelivery::removeConsumers(CAudioParam& param, const CAudioParamQueue& queue) {
    while (CAudioParamConsumer* consumer = param.route().takeOut(&queue)) {
        consumers_.giveBack(*consumer);
    }
}

void CAudioParamDelivery::detachConsumers(CAudioParam& param) {
    while (CAudioParamConsumer* consumer = param.route().takeOut(nullptr)) {
        consumer->queue->clear();
        consumers_.giveBack(*consumer);
    }
}

void CAudioParamDelivery::prepareConsumers(CAudioParam& param) {
    for (CAudioParamConsumer* consumer = param.route().firstConsumer(); consumer; consumer = consumer->next) {
        prepareSlot(param, *consumer);
    }
}

void CAudioParamDelivery::prepareSlot(CAudioParam& param, CAudioParamConsumer& consumer) {
    CAudioParamSlot& slot = *consumer.slot;
    const CAudioParamInfo& info = param.info();
    const CAudioParamData& data = param.engineData();
    *consumer.changedFlag = 1;
    if (info.isString()) {
        CLockScope scope(param.lock());
        slot.data = data;
        return;
    }
    if (info.isSingleGroup()) {
        consumer.group = -1;
    }
    slot.data.reset(info);
    const int32_t group = consumer.group < 0 ? CAudioParamData::kAllGroups : consumer.group;
    slot.data.reserve(info.isSingleGroup() ? 0 : group, CAudioParam::kReadyElements);
    const int32_t first = std::max(consumer.group, 0);
    const int32_t last = consumer.group < 0 ? data.groupCount() : consumer.group + 1;
    for (int32_t i = first; i < last; ++i) {
        if (data.elementCount(i) > 0) {
            queueInitialGroup(param, consumer, i);
        }
    }
    // The engine-side value lags behind: the consumer gets what waits for it as well.
    param.route().waiting().forEach([&](const CAudioParamChange& change) {
        if (consumer.wants(change)) {
            queueCopy(param, consumer, change);
        }
    });
}

void CAudioParamDelivery::queueInitialGroup(CAudioParam& param, CAudioParamConsumer& consumer, int32_t group) {
    const CAudioParamData& data = param.engineData();
    CAudioParamChange* change = initialPool_.take(1);
    change->shape(param, group, 0, data.elementCount(group), true);
    change->time = -1.0;
    for (int32_t i = 0; i < change->values.count(); ++i) {
        change->values[i] = data.value(group, i / change->elementSize, i % change->elementSize);
    }
    queueInitial(*change, consumer);
}

void CAudioParamDelivery::queueCopy(CAudioParam& param, CAudioParamConsumer& consumer,
                                    const CAudioParamChange& source) {
    CAudioParamChange* change = initialPool_.take(1);
    change->shape(param, source.group, source.first, source.count, source.resize != 0);
    change->time = source.time;
    change->values = source.values;
    queueInitial(*change, consumer);
}

void CAudioParamDelivery::queueInitial(CAudioParamChange& change, CAudioParamConsumer& consumer) {
    consumer.take(change);
    ++count_;
    change.release();
}

CAudioParamChange* CAudioParamDelivery::createChange(CAudioParam& param, int32_t group, int32_t first, int32_t count,
                                                     bool resize) {
    CAudioParamChange* change = pool_.take(param.route().nodeCount());
    change->shape(param, group, first, count, resize);
    return change;
}

void CAudioParamDelivery::prepareRecords(int32_t nodes) {
    pool_.prepare(kRecords, nodes);
}

void CAudioParamDelivery::beginRound() {
    while (CAudioParam* param = touched_) {
        touched_ = param->route().nextTouched;
        param->route().nextTouched = nullptr;
        applyWaiting(*param);
    }
    ++round_;
}

void CAudioParamDelivery::deliver(CAudioParamChange& change) {
    CAudioParamRoute& route = change.param->route();
    if (route.enterRound(round_)) {
        route.nextTouched = touched_;
        touched_ = change.param;
    }
    count_ += route.deliver(change);
}

void CAudioParamDelivery::deliverAlone(CAudioParamChange& change) {
    // No round may come for long: of the audio side's own changes a parameter keeps the newest record only.
    applyWaiting(*change.param);
    deliver(change);
}

void CAudioParamDelivery::applyWaiting(CAudioParam& param) {
    param.route().waiting().takeAll(
        [&param](const CAudioParamChange& change, CAudioParamSlot*) { param.applyEngineChange(change); });
}

}  // namespace tarv
