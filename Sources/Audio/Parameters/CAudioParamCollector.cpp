#include "Audio/Parameters/CAudioParamCollector.h"

#include <algorithm>

#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

namespace {

/// Records that are ready when the graph starts. Hosts post from their audio thread, too: every external parameter a
/// block, while those of the two blocks before are still held.
constexpr int32_t kPosterRecords = 112;

}  // namespace

CAudioParamCollector::~CAudioParamCollector() {
    for (const auto& entry : params_) {
        delete entry.second;
    }
}

CError* CAudioParamCollector::init() {
    TARV_TRY(CObject::init());
    const auto* env = findObjectOf<CAudioEnv>(getAttrString("env"));
    if (!env) {
        TARV_FAIL("@tarvstr_CAudioParamCollector_init_NoAudioEnv No audio environment object '%1' found.",
                  getAttrString("env"));
    }
    batch_.setEnv(*env);
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
    CLockScope scope(param->lock());
    if (param->bind(info)) {
        delivery_.prepareConsumers(*param);
    }
    return param;
}

void CAudioParamCollector::removeConsumers(CAudioParamQueue& queue) {
    queue.clear();
    if (!delivery_.hasConsumers()) {
        return;  // as when a graph is destroyed: each of its processes comes here
    }
    forEachParam([&](CAudioParam& param) { delivery_.removeConsumers(param, queue); });
}

void CAudioParamCollector::detachConsumers() {
    forEachParam([&](CAudioParam& param) { delivery_.detachConsumers(param); });
}

CAudioParamChange* CAudioParamCollector::createChange(CAudioParam& param, int32_t group, int32_t first, int32_t count,
                                                      bool resize) {
    CAudioParamChange* change = nullptr;
    {
        CLockScope scope(poolLock_);
        change = pool_.take(param.route().nodeCount());
    }
    change->shape(param, group, first, count, resize);
    return change;
}

void CAudioParamCollector::postChange(CAudioParam& param, CAudioParamChange* change, bool queued, double time,
                                      const CAudioParamListener* origin) {
    if (!queued) {
        change->time = time;
        if (param.takesEngineChange(*change)) {
            delivery_.deliverAlone(*change);
        }
        change->release();
        return;
    }
    // A merge changes the range that the record holds.
    const int32_t group = change->group;
    const int32_t first = change->first;
    const int32_t count = change->count;
    bool isApplied = false;
    {
        CLockScope scope(param.lock());
        isApplied = post(param, change, time);
    }
    if (isApplied) {
        param.notify(group, first, count, origin);
    }
}

bool CAudioParamCollector::postWithoutNotifying(CAudioParam& param, CAudioParamChange* change) {
    CLockScope scope(param.lock());
    return post(param, change, 0.0);
}

void CAudioParamCollector::postValue(CAudioParam& param, int32_t group, int32_t element, double value, int32_t index,
                                     const CAudioParamListener* origin) {
    if (!param.takesNumber(value, index)) {
        return;
    }
    {
        CLockScope scope(param.lock());
        CAudioParamChange* change = createChange(param, group, element, 1);
        change->fillElement(param.info(), param.userData(), index, value);
        post(param, change, 0.0);
    }
    param.notify(group, element, 1, origin);
}

void CAudioParamCollector::postText(CAudioParam& param, int32_t group, int32_t element, const CString& text,
                                    const CAudioParamListener* origin) {
    if (!param.isDefined() || !param.info().isString()) {
        return;
    }
    CAudioParamData pool;
    CAudioParamChange* change = createChange(param, group, element, 1);
    change->values[0] = pool.addString(text);
    change->sourcePool = &pool;
    postWithoutNotifying(param, change);
    param.notify(group, element, 1, origin);
}

void CAudioParamCollector::postEngineValue(CAudioParam& param, int32_t group, int32_t element, double value,
                                           int32_t index) {
    if (!param.takesNumber(value, index)) {
        return;
    }
    CAudioParamChange* change = createEngineChange(param, group, element, 1);
    change->fillElement(param.info(), param.engineData(), index, value);
    if (group == 0 && element == 0 && index == 0) {
        param.noteEngineNumber(change->values[0]);
    }
    postChange(param, change, false, -1.0);
}

bool CAudioParamCollector::fits(const CAssignment& assignment) {
    const CAudioParam& param = *assignment.param;
    const CAudioParamData& data = assignment.data;
    return param.isDefined() && data.isValid() && data.elementSize() == param.info().elementSize() &&
           data.isString() == param.info().isString();
}

int32_t CAudioParamCollector::nextDifference(const CAssignment& assignment, int32_t group) {
    const CAudioParamData& present = assignment.param->userData();
    const CAudioParamData& data = assignment.data;
    if (assignment.group >= 0) {
        const bool isSame = group > assignment.group || present.isSameGroup(assignment.group, data, 0);
        return isSame ? -1 : assignment.group;
    }
    const int32_t end =
        assignment.param->info().isSingleGroup() ? 1 : std::max(present.groupCount(), data.groupCount());
    while (group < end && present.isSameGroup(group, data, group)) {
        ++group;
    }
    return group < end ? group : -1;
}

bool CAudioParamCollector::isAssigned(const CAssignment& assignment) {
    CLockScope scope(assignment.param->lock());
    return !fits(assignment) || nextDifference(assignment, 0) < 0;
}

bool CAudioParamCollector::assign(const CAssignment& assignment, CAudioParamData* before, CAudioParamData* after) {
    CAudioParam& param = *assignment.param;
    const CAudioParamData& data = assignment.data;
    CLockScope scope(param.lock());
    bool isChanged = false;
    int32_t group = fits(assignment) ? nextDifference(assignment, 0) : -1;
    for (; group >= 0; group = nextDifference(assignment, group + 1)) {
        if (!isChanged && before) {
            *before = param.userData();
        }
        const int32_t source = assignment.group < 0 ? group : 0;
        const int32_t size = data.elementSize();
        CAudioParamChange* change = createChange(param, group, 0, data.elementCount(source), true);
        for (int32_t i = 0; i < change->values.count(); ++i) {
            change->values[i] = data.storedNumber(source, i / size, i % size);
        }
        change->sourcePool = &data;
        isChanged = post(param, change, 0.0) || isChanged;
    }
    if (isChanged && after) {
        *after = param.userData();
    }
    return isChanged;
}

// The caller holds the parameter's lock until the change is in the batch, so that the changes there have the order of
// the user-side values.
bool CAudioParamCollector::post(CAudioParam& param, CAudioParamChange* change, double time) {
    if (!param.applyUserChange(*change)) {
        change->release();
        return false;
    }
    change->time = time;
    if (param.info().isString()) {
        change->release();  // no process reads texts: they never travel to the audio thread
    } else {
        enqueue(param, change);
    }
    return true;
}

void CAudioParamCollector::enqueue(CAudioParam& param, CAudioParamChange* change) {
    if (batch_.add(change, param.userData())) {
        return;
    }
    for (int32_t group = 0; group < param.userData().groupCount(); ++group) {
        CAudioParamChange* part = createChange(param, group, change->first, change->count, change->resize != 0);
        part->time = change->time;
        part->values = change->values;
        enqueue(param, part);
    }
    change->release();
}

void CAudioParamCollector::applyPendingChanges(double timeOffset) {
    CAudioParamChangeList batch = batch_.takeAll();
    if (batch.isEmpty()) {
        return;
    }
    delivery_.beginRound();
    while (CAudioParamChange* change = batch.takeFirst()) {
        change->time += timeOffset;
        delivery_.deliver(*change);
        change->release();
    }
}

void CAudioParamCollector::closeCollection() {
    CLockScope scope(lock_);
    if (closed_) {
        return;
    }
    closed_ = true;
    int32_t nodes = 1;
    for (const auto& entry : params_) {
        offerParam(*entry.second);
        nodes = std::max(nodes, entry.second->route().nodeCount());
    }
    delivery_.prepareRecords(nodes);
    CLockScope poolScope(poolLock_);
    pool_.prepare(kPosterRecords, nodes);
}

void CAudioParamCollector::offerParam(CAudioParam& param) {
    const CString& assigned = param.info().registry();
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
