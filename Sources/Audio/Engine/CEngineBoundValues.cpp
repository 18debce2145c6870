#include "Audio/Engine/CEngineBoundValues.h"

#include <bit>

#include "Audio/Engine/CEngineStatus.h"
#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

constexpr const char* kBpmValue = "host-bpm";
constexpr const char* kBpmParam = "plugin.modMain.host-bpm";

}  // namespace

const CEngineBoundValues::CValue CEngineBoundValues::kValues[] = {
    {"sample-rate", 1, [](const CEngineBoundValues& values, int32_t) { return values.status_.sampleRate(); }},
    {"block-size", 1, [](const CEngineBoundValues& values, int32_t) -> double { return values.status_.blockSize(); }},
    {"latency", 1, [](const CEngineBoundValues& values, int32_t) -> double { return values.status_.latency(); }},
    {"is-running", 1, [](const CEngineBoundValues& values, int32_t) { return values.status_.isRunning() ? 1.0 : 0.0; }},
    {kBpmValue, 1,
     [](const CEngineBoundValues& values, int32_t) {
         const CAudioParam* param = values.collector_.findParam(kBpmParam);
         return param ? param->value(0, 0) : 0.0;
     }},
    {"io-channel-counts", 3,
     [](const CEngineBoundValues& values, int32_t index) -> double {
         const CInterfaceCounts counts = values.status_.counts();
         const int32_t numbers[] = {counts.inputs, counts.outputs, counts.sidechain};
         return numbers[index];
     }},
    {"group-count", 1,
     [](const CEngineBoundValues& values, int32_t) -> double { return values.status_.counts().groups; }},
    {"internal-channel-count", 1,
     [](const CEngineBoundValues& values, int32_t) -> double { return values.status_.counts().internalChannels; }},
    {"viz-fps", 1, [](const CEngineBoundValues& values, int32_t) { return values.status_.vizFps(); }},
};

CEngineBoundValues::~CEngineBoundValues() {
    if (bpmParam_) {
        bpmParam_->removeListener(*this);
    }
}

int32_t CEngineBoundValues::indexOf(uint32_t id) const {
    for (int32_t i = 0; i < bindings_.count(); ++i) {
        if (bindings_[i].id == id) {
            return i;
        }
    }
    return -1;
}

bool CEngineBoundValues::has(uint32_t id) const {
    CLockScope scope(lock_);
    return indexOf(id) >= 0;
}

CError* CEngineBoundValues::bind(uint32_t id, const CString& name, uint32_t count) {
    const CValue* found = nullptr;
    for (const CValue& row : kValues) {
        found = name == row.name ? &row : found;
    }
    if (!found || count < 1 || count > static_cast<uint32_t>(found->count)) {
        TARV_FAIL("@tarvstr_CEngineBoundValues_bind_NoValue No value '%1' of %2 numbers found.", name,
                  CString::fromInt(count));
    }
    if (name == kBpmValue && !bpmParam_) {
        bpmParam_ = collector_.findParam(kBpmParam);
        if (bpmParam_) {
            bpmParam_->addListener(*this);
        }
    }
    CLockScope scope(lock_);
    CBinding binding{id, found, {}};
    binding.numbers.resize(static_cast<int32_t>(count));
    bindings_.append(std::move(binding));
    sendBinding(bindings_.last(), true);
    return nullptr;
}

bool CEngineBoundValues::unbind(uint32_t id) {
    CLockScope scope(lock_);
    const int32_t index = indexOf(id);
    if (index >= 0) {
        bindings_.removeAt(index);
    }
    return index >= 0;
}

bool CEngineBoundValues::send(uint32_t id) {
    CLockScope scope(lock_);
    const int32_t index = indexOf(id);
    if (index >= 0) {
        sendBinding(bindings_[index], true);
    }
    return index >= 0;
}

void CEngineBoundValues::sendChanged() {
    CLockScope scope(lock_);
    for (CBinding& binding : bindings_) {
        sendBinding(binding, false);
    }
}

void CEngineBoundValues::clientGone(int32_t client) {
    CLockScope scope(lock_);
    for (int32_t i = bindings_.count() - 1; i >= 0; --i) {
        if (clientOf(bindings_[i].id) == client) {
            bindings_.removeAt(i);
        }
    }
}

void CEngineBoundValues::sendBinding(CBinding& binding, bool isForced) const {
    bool isOther = isForced;
    for (int32_t i = 0; i < binding.numbers.count(); ++i) {
        const double now = binding.value->read(*this, i);
        isOther = isOther || std::bit_cast<uint64_t>(now) != std::bit_cast<uint64_t>(binding.numbers[i]);
        binding.numbers[i] = now;
    }
    if (isOther) {
        TARV_CONSUME(
            sender_.sendTo(binding.id, kData, static_cast<uint32_t>(CDataKind::Value), binding.id, binding.numbers));
    }
}

void CEngineBoundValues::onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) {
    sendChanged();
}

}  // namespace tarv
