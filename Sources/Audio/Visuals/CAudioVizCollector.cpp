#include "Audio/Visuals/CAudioVizCollector.h"

#include <algorithm>

#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamDef.h"

namespace tarv {

namespace {

constexpr int32_t kMaxRecordsPerFrame = 64;
constexpr auto kMaxCapacity =
    static_cast<int32_t>(std::min(CAudioVizDataInfo::kMaxBytes, CAudioVizDataSpectrum::kMaxBins));

}  // namespace

CError* CAudioVizCollector::init() {
    TARV_TRY(CObject::init());
    env_ = findObjectOf<CAudioEnv>(getAttrString("env"));
    if (!env_) {
        TARV_FAIL("@tarvstr_CAudioVizCollector_init_NoAudioEnv No audio environment object '%1' found.",
                  getAttrString("env"));
    }
    collector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!collector_) {
        TARV_FAIL("@tarvstr_CAudioVizCollector_init_NoParamCollector No parameter collector '%1' found.",
                  getAttrString("param-collector"));
    }
    const auto* definition = findObjectOf<CAudioParamDef>("shared::audio.param-enable-viz");
    if (!definition) {
        TARV_FAIL(
            "@tarvstr_CAudioVizCollector_init_NoParamDef No parameter 'audio.param-enable-viz' definition found.");
    }
    enableParam_ = collector_->define("audio.param-enable-viz", definition->info());
    enable_.bind(*enableParam_);
    return nullptr;
}

void CAudioVizCollector::bindSwitch(CAudioVizSource& source) const {
    if (source.switch_.isBound()) {
        source.switch_.update();
    } else if (CAudioParam* param = collector_->findParam(source.name_ + "-enable")) {
        source.switch_.bind(*param);
    }
}

void CAudioVizCollector::start() {
    {
        CLockScope scope(lock_);
        for (CAudioVizSource* source : sources_) {
            bindSwitch(*source);  // its parameter may have been defined since
        }
    }
    enable_.update();
    isGoing_ = true;
}

CAudioVizSource* CAudioVizCollector::addSource(const CString& name, CAudioVizKind kind, int32_t recordsPerFrame,
                                               int32_t capacity) {
    if (recordsPerFrame < 1 || recordsPerFrame > kMaxRecordsPerFrame || capacity < 0 || capacity > kMaxCapacity) {
        return nullptr;
    }
    CLockScope scope(lock_);
    int32_t records = recordsPerFrame * CAudioVizSource::kFramesKept;
    for (CAudioVizSource* source : sources_) {
        if (source->name_ == name) {
            return source;
        }
        records += source->recordCount();
    }
    sources_.append(
        new CAudioVizSource(*this, name, static_cast<uint32_t>(sources_.count()), kind, recordsPerFrame, capacity));
    ready_.makeRoom(records);
    bindSwitch(*sources_.last());
    return sources_.last();
}

CString CAudioVizCollector::sourceName(uint32_t number) const {
    CLockScope scope(lock_);
    return number < static_cast<uint32_t>(sources_.count()) ? sources_[static_cast<int32_t>(number)]->name_ : CString();
}

void CAudioVizCollector::setPosition(double seconds) {
    position_ = seconds;
    const double fps = env_->vizFps();
    if (!isEnabled() || !(fps > 0.0) || seconds < nextFrame_) {
        return;
    }
    ++frame_;
    // On a fixed grid, so that long blocks don't lower the rate; a frame that comes later than the next one is due
    // starts a new grid.
    const double next = nextFrame_ + 1.0 / fps;
    nextFrame_ = next > seconds ? next : seconds + 1.0 / fps;
}

}  // namespace tarv
