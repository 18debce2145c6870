#include "UI/Controls/Lists/CValueListAudio.h"

#include <iterator>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CParamBridgeAudio.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Binding/CUIParam.h"

namespace tarv {

namespace {

constexpr const char* kClientPath = "ui.interface-client";
constexpr const char* kContentChanged = "content-changed";
constexpr const char* kLabelModes[] = {"", "full", "active-channels", "active-groups"};

}  // namespace

/// In the order of CSource; a bridge of the tree has the name of its source.
const char* const CValueListAudio::kSourceNames[] = {
    "grouping", "group-names", "in-channel-names", "in-routing", "ms-pairs", "channel-mute", "value", "content"};

const CValueListAudio::CMode CValueListAudio::kModes[] = {
    {"audio-groups", &CValueListAudio::fillGroups, true, true},
    {"audio-curgroup", &CValueListAudio::fillCurrentGroup, true, false},
    {"audio-channels", &CValueListAudio::fillChannels, true, true},
    {"audio-ins", &CValueListAudio::fillInputs, true, true},
    {"audio-outs", &CValueListAudio::fillOutputs, true, false},
    {"audio-min-max", &CValueListAudio::fillNumbers, false, false},
    {"audio-routing-labels", &CValueListAudio::fillRoutingLabels, true, true},
    {"audio-enum-value", &CValueListAudio::fillStates, false, false},
    {"audio-param-values", &CValueListAudio::fillElements, false, false},
};

CError* CValueListAudio::initClass(CClassDescriptor& descriptor) {
    for (const char* name : {"format", "format-id", "max-value", "min-value", "mode", "update-group-count",
                             "update-internal-channel-count", "update-io-channel-counts"}) {
        descriptor.addHandler<&CValueListAudio::listChanged>(name);
    }
    descriptor.addHandler<&CValueListAudio::bridgeChanged>("bridge");
    descriptor.addHandler<&CValueListAudio::selectorChanged>("group-selector");
    descriptor.addHandler<&CValueListAudio::labelModeChanged>("routing-label-mode");
    descriptor.addHandler<&CValueListAudio::contentChanged>(kContentChanged);
    return CValueList::initClass(descriptor);
}

CError* CValueListAudio::init() {
    TARV_TRY(CValueList::init());
    TARV_TRY(checkLabelMode());
    return bindSelector();
}

CError* CValueListAudio::checkLabelMode() const {
    const CString& labelMode = getAttrString("routing-label-mode");
    bool isKnown = false;
    for (const char* name : kLabelModes) {
        isKnown |= labelMode == CString(name);
    }
    if (!isKnown) {
        TARV_FAIL("@tarvstr_CValueListAudio_init_InvalidRoutingLabelMode Invalid routing label mode specified: %1",
                  labelMode);
    }
    return nullptr;
}

CError* CValueListAudio::labelModeChanged() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    TARV_TRY(checkLabelMode());
    return listChanged();
}

CError* CValueListAudio::selectorChanged() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    TARV_TRY(bindSelector());
    return listChanged();
}

CError* CValueListAudio::bridgeChanged() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    if (isContentOwn_) {
        isContentOwn_ = false;
        delete sources_[Content];
    }
    TARV_TRY(bindContent());
    return listChanged();
}

CError* CValueListAudio::bindSelector() {
    const CString& path = getAttrString("group-selector");
    selector_ = path.isEmpty() ? nullptr : findObjectOf<CParamGroupSelector>(path);
    const bool isNeeded = !path.isEmpty() || getAttrString("mode") == CString("audio-curgroup");
    if (isNeeded && !selector_) {
        TARV_FAIL("@tarvstr_CValueListAudio_init_NoGroupSelector Unable to locate group selector: %1", path);
    }
    if (selector_) {
        listenObject(selector_->fullName(), CParamGroupSelector::kChangeEvent, "update-values");
    }
    return nullptr;
}

CError* CValueListAudio::finishInit() {
    client_ = findObjectOf<CAudioInterfaceClient>(kClientPath);
    TARV_TRY(bindSources());
    const char* const events[][2] = {{"engine-state", "update-values"},
                                     {"group-names-changed", "update-values"},
                                     {"output-labels-changed", "update-values"},
                                     {"update-group-count", "update-group-count"},
                                     {"update-internal-channel-count", "update-internal-channel-count"},
                                     {"update-io-channel-counts", "update-io-channel-counts"}};
    for (const auto& [event, handler] : events) {
        if (client_ && mode() && mode()->needsClient) {
            listenObject(client_->fullName(), event, handler);
        }
    }
    TARV_TRY(CValueList::finishInit());
    return select();
}

CError* CValueListAudio::bindSources() {
    for (int32_t i = 0; i < kSourceCount; ++i) {
        const CString name = CString("ui-param-") + kSourceNames[i];
        sources_[i] = dynamic_cast<CUIParam*>(findChild(name));
        const CString bridge = CString("ui.") + kSourceNames[i] + "-bridge";
        if (!sources_[i] && i < Value && mode() && mode()->needsRouting && findObject(bridge)) {
            TARV_TRY(makeSource(static_cast<CSource>(i), bridge));
        }
    }
    for (int32_t i = 0; i < Value; ++i) {
        // A param follows one element, a list all of them.
        if (bridge(static_cast<CSource>(i))) {
            listenObject(bridge(static_cast<CSource>(i))->fullName(), "param-change", "update-values");
        }
    }
    return bindContent();
}

CError* CValueListAudio::bindContent() {
    const CString& path = getAttrString("bridge");
    if (!sources_[Content] && !path.isEmpty()) {
        const CObject* object = findObject(path);
        TARV_TRY(makeSource(Content, object ? object->fullName() : path));
        isContentOwn_ = true;
    }
    if (bridge(Content)) {
        listenObject(bridge(Content)->fullName(), "param-change", kContentChanged);
    }
    return nullptr;
}

/// The range and the states of a parameter, which other modes list, do not follow its values.
CError* CValueListAudio::contentChanged() {
    const bool isOfValues = mode() && mode()->fill == &CValueListAudio::fillElements;
    return isOfValues ? listChanged() : nullptr;
}

CError* CValueListAudio::makeSource(CSource source, const CString& bridge) {
    CAttributeMap attributes;
    attributes["bridge"] = CAttributeValue::fromString(bridge);
    const CString name = CString("ui-param-") + kSourceNames[source];
    return createChildOf(sources_[source], "ui:ui-param", name, false, &attributes);
}

CError* CValueListAudio::onParamChanged(CUIParam& param) {
    return &param == sources_[Value] && state() == CObjectState::Finished ? select() : nullptr;
}

CError* CValueListAudio::onParamActivity(CUIParam& param) {
    return onParamChanged(param);
}

CError* CValueListAudio::onParamRangeChanged(CUIParam&) {
    return listChanged();
}

void CValueListAudio::onParamRemoved(CUIParam& param) {
    for (CUIParam*& source : sources_) {
        source = source == &param ? nullptr : source;
    }
}

CError* CValueListAudio::select() {
    const CUIParam* value = sources_[Value];
    if (!value || !value->isActive()) {
        return nullptr;
    }
    return setAttribute("selected-item", CAttributeValue::fromInt(indexOf(value->getValue())));
}

const CValueListAudio::CMode* CValueListAudio::mode() const {
    const CString& name = getAttrString("mode");
    for (const CMode& row : kModes) {
        if (name == CString(row.name)) {
            return &row;
        }
    }
    return nullptr;
}

CParamBridge* CValueListAudio::bridge(CSource source) const {
    return sources_[source] ? sources_[source]->bridge() : nullptr;
}

/// Null until its values have come.
const CParamBridgeAudio* CValueListAudio::content() const {
    const auto* found = dynamic_cast<const CParamBridgeAudio*>(bridge(Content));
    return found && found->isActive() ? found : nullptr;
}

int32_t CValueListAudio::group() const {
    return selector_ ? selector_->groupIndex() : 0;
}

CError* CValueListAudio::updateValues() {
    if (!mode()) {
        return CValueList::updateValues();
    }
    if (mode()->needsClient && !client_) {
        TARV_FAIL("@tarvstr_CValueListAudio_updateValues_NoInterfaceClient Unable to locate interface client.");
    }
    CItems items = roomForItems();
    (this->*mode()->fill)(items);
    const CObjectWatch watch(*this);
    CError* error = takeItems(std::move(items));
    return error || !watch.isAlive() ? error : select();
}

}  // namespace tarv
