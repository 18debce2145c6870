#include "Audio/Parameters/CAudioParamCollector.h"

#include <algorithm>

#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

namespace {

/// Records that are ready when the graph starts. Hosts post from their audio thread, too: every external parameter a
/// block, while those of the two blocks before are still held.
constexpr int32_t kPosterRecords = 112;
constexpr int32_t kEngineRecords = 16;

}  // namespace

struct CAudioParamCollector::CConsumerBlock : public CHeapObject {
    CConsumerBlock* next;
    CAudioParamConsumer consumers[kConsumersPerBlock];
};

CAudioParamCollector::~CAudioParamCollector() {
    CAudioParamChangeList batch = batch_.takeAll();
    while (CAudioParamChange* change = batch.takeFirst()) {
        change->release();
    }
    for (const auto& entry : params_) {
        delete entry.second;
    }
    while (CConsumerBlock* block = consumerBlocks_) {
        consumerBlocks_ = block->next;
        delete block;
    }
}

CError* CAudioParamCollector::init() {
    TARV_TRY(CObject::init());
    env_ = findObjectOf<CAudioEnv>(getAttrString("env"));
    if (!env_) {
        TARV_FAIL("@tarvstr_CAudioParamCollector_init_NoAudioEnv No audio environment object '%1' found.",
                  getAttrString("env"));
    }
    return nullptr;
}

CAudioParam* CAudioParamCollector::getParam(const CString& name) {
    CLockScope scope(lock_);
    CAudioParam*& param = params_[name];
    if (!param) {
        param = new CAudioParam(*this, name);
        if (closed_) {
            offerParam(*param);
        }
    }
    return param;
}

CAudioParam* CAudioParamCollector::findParam(const CString& name) const {
    CLockScope scope(lock_);
    const auto found = params_.find(name);
    return found == params_.end() ? nullptr : found->second;
}

bool CAudioParamCollector::hasParam(const CString& name) const {
    const CAudioParam* param = findParam(name);
    return param && param->isDefined() && param->info().displayPath() != name;
}

CAudioParam* CAudioParamCollector::define(const CString& name, const CAudioParamInfo& info) {
    CAudioParam* param = getParam(name);
    CLockScope scope(param->lock_);
    if (param->isDefined()) {
        return param;
    }
    param->info_ = info;
    for (CAudioParamData* data : {&param->userData_, &param->engineData_}) {
        data->reset(info);
        data->reserve(info.isSingleGroup() ? 0 : CAudioParamData::kAllGroups, CAudioParam::kReadyElements);
        data->resetWithDefaults(info, 0);
    }
    param->defined_.store(true, std::memory_order_release);
    for (CAudioParamConsumer* consumer = param->consumers_; consumer; consumer = consumer->next) {
        prepareSlot(*param, *consumer);
    }
    return param;
}

CAudioParamConsumer* CAudioParamCollector::takeConsumer() {
    if (!freeConsumers_) {
        auto* block = new CConsumerBlock;
        block->next = consumerBlocks_;
        consumerBlocks_ = block;
        for (CAudioParamConsumer& consumer : block->consumers) {
            consumer.next = freeConsumers_;
            freeConsumers_ = &consumer;
        }
    }
    CAudioParamConsumer* consumer = freeConsumers_;
    freeConsumers_ = consumer->next;
    return consumer;
}

void CAudioParamCollector::addConsumer(CAudioParam& param, CAudioParamSlot& slot, CAudioParamQueue& queue,
                                       uint8_t& changedFlag, int32_t group, int32_t element) {
    CAudioParamConsumer* consumer = takeConsumer();
    *consumer = {&slot, &queue, &changedFlag, group, element, nullptr};
    // Behind the others, so that processes hear of a change in the order in which they were built.
    CAudioParamConsumer** end = &param.consumers_;
    while (*end) {
        end = &(*end)->next;
    }
    *end = consumer;
    param.consumerCount_.fetch_add(1, std::memory_order_relaxed);
    slot.param = &param;
    if (param.isDefined()) {
        prepareSlot(param, *consumer);
    }
}

void CAudioParamCollector::prepareSlot(CAudioParam& param, CAudioParamConsumer& consumer) {
    CAudioParamSlot& slot = *consumer.slot;
    *consumer.changedFlag = 1;
    if (param.info_.isString()) {
        CLockScope scope(param.lock_);
        slot.data = param.engineData_;
        return;
    }
    if (param.info_.isSingleGroup()) {
        consumer.group = -1;
    }
    slot.data.reset(param.info_);
    const int32_t group = consumer.group < 0 ? CAudioParamData::kAllGroups : consumer.group;
    slot.data.reserve(param.info_.isSingleGroup() ? 0 : group, CAudioParam::kReadyElements);
    const int32_t first = std::max(consumer.group, 0);
    const int32_t last = consumer.group < 0 ? param.engineData_.groupCount() : consumer.group + 1;
    for (int32_t i = first; i < last; ++i) {
        if (param.engineData_.elementCount(i) > 0) {
            queueInitialGroup(param, consumer, i);
        }
    }
    // The engine-side value lags behind: what waits for it is handed on as well.
    param.queue_.forEach([&](const CAudioParamChange& change) {
        if (consumer.wants(change)) {
            queueCopy(param, consumer, change);
        }
    });
}

void CAudioParamCollector::queueInitialGroup(CAudioParam& param, CAudioParamConsumer& consumer, int32_t group) {
    const int32_t elements = param.engineData_.elementCount(group);
    CAudioParamChange* change = initialPool_.take(1);
    shape(*change, param, group, 0, elements, true);
    change->time = -1.0;
    for (int32_t i = 0; i < change->values.count(); ++i) {
        const int32_t size = param.info_.elementSize();
        change->values[i] = param.engineData_.value(group, i / size, i % size);
    }
    hand(*change, consumer);
    change->release();
}

void CAudioParamCollector::queueCopy(CAudioParam& param, CAudioParamConsumer& consumer,
                                     const CAudioParamChange& source) {
    CAudioParamChange* change = initialPool_.take(1);
    shape(*change, param, source.group, source.first, source.count, source.resize != 0);
    change->time = source.time;
    change->values = source.values;
    hand(*change, consumer);
    change->release();
}

void CAudioParamCollector::removeConsumers(CAudioParamQueue& queue) {
    queue.clear();
    forEachParam([&](CAudioParam& param) {
        CAudioParamConsumer** link = &param.consumers_;
        while (CAudioParamConsumer* consumer = *link) {
            if (consumer->queue != &queue) {
                link = &consumer->next;
                continue;
            }
            *link = consumer->next;
            consumer->next = freeConsumers_;
            freeConsumers_ = consumer;
            param.consumerCount_.fetch_sub(1, std::memory_order_relaxed);
        }
    });
}

void CAudioParamCollector::detachConsumers() {
    forEachParam([&](CAudioParam& param) {
        while (CAudioParamConsumer* consumer = param.consumers_) {
            consumer->queue->clear();
            param.consumers_ = consumer->next;
            consumer->next = freeConsumers_;
            freeConsumers_ = consumer;
        }
        param.consumerCount_.store(0, std::memory_order_relaxed);
    });
}

void CAudioParamCollector::applyTouched() {
    while (CAudioParam* param = touched_) {
        touched_ = param->nextTouched_;
        param->nextTouched_ = nullptr;
        applyQueued(*param);
    }
    ++generation_;
}

void CAudioParamCollector::applyQueued(CAudioParam& param) {
    param.queue_.takeAll(
        [&param](const CAudioParamChange& change, CAudioParamSlot*) { param.engineData_.apply(change); });
}

void CAudioParamCollector::applyPendingChanges(double timeOffset) {
    CAudioParamChangeList batch;
    {
        CLockScope scope(env_->lock());
        batch = batch_.takeAll();
    }
    if (batch.isEmpty()) {
        return;
    }
    applyTouched();
    while (CAudioParamChange* change = batch.takeFirst()) {
        change->time += timeOffset;
        deliver(*change);
        change->release();
    }
}

void CAudioParamCollector::deliver(CAudioParamChange& change) {
    CAudioParam& param = *change.param;
    // Fewer only if the graph grew since the change was made.
    const int32_t needed = param.consumerCount_.load(std::memory_order_relaxed) + 1;
    if (change.nodes_.count() < needed) {
        change.nodes_.resize(needed);
    }
    if (param.generation_ != generation_) {
        param.generation_ = generation_;
        param.nextTouched_ = touched_;
        touched_ = &param;
    }
    change.linkTo(param.queue_, nullptr);
    for (CAudioParamConsumer* consumer = param.consumers_; consumer; consumer = consumer->next) {
        if (consumer->wants(change)) {
            hand(change, *consumer);
        }
    }
}

void CAudioParamCollector::hand(CAudioParamChange& change, CAudioParamConsumer& consumer) {
    change.linkTo(*consumer.queue, consumer.slot);
    *consumer.changedFlag = 1;
    ++deliveries_;
}

void CAudioParamCollector::closeCollection() {
    CLockScope scope(lock_);
    if (closed_) {
        return;
    }
    closed_ = true;
    int32_t consumers = 0;
    for (const auto& entry : params_) {
        offerParam(*entry.second);
        consumers = std::max(consumers, entry.second->consumerCount_.load(std::memory_order_relaxed));
    }
    enginePool_.prepare(kEngineRecords, consumers + 1);
    CLockScope poolScope(poolLock_);
    pool_.prepare(kPosterRecords, consumers + 1);
}

void CAudioParamCollector::offerParam(CAudioParam& param) {
    const CString& assigned = param.info_.registry();
    if (CAudioParamReceiver* registry = assigned.isEmpty() ? nullptr : getRegistry(assigned)) {
        registry->takeParam(param.fullName(), param);
        return;
    }
    for (CAudioParamReceiver* registry : registries_) {
        if (registry->isEnumerated() && registry->offerParam(param.fullName(), param)) {
            return;
        }
    }
    for (CAudioParamReceiver* registry : registries_) {
        if (!registry->isEnumerated()) {
            registry->offerParam(param.fullName(), param);
        }
    }
}

void CAudioParamCollector::addRegistry(CAudioParamReceiver& registry) {
    CLockScope scope(lock_);
    registries_.append(&registry);
}

void CAudioParamCollector::removeRegistry(CAudioParamReceiver& registry) {
    CLockScope scope(lock_);
    const int32_t index = registries_.indexOf(&registry);
    if (index >= 0) {
        registries_.removeAt(index);
    }
}

CAudioParamReceiver* CAudioParamCollector::getRegistry(const CString& id) const {
    CLockScope scope(lock_);
    for (CAudioParamReceiver* registry : registries_) {
        if (registry->id() == id) {
            return registry;
        }
    }
    return nullptr;
}

}  // namespace tarv
