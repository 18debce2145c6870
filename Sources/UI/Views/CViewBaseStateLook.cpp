// What the states of a view change: attributes of the view, its colour state and its range of images.

#include <algorithm>

#include "Core/CObjectExpressions.h"
#include "Core/CObjectWatch.h"
#include "UI/Views/CViewBaseState.h"

namespace tarv {

namespace {

// The attributes that move to a number, in the order of the tracks.
const char* const kMoving[] = {"width", "height", "opacity"};
constexpr int32_t kOpacity = 2;

// Handlers that set states of their own view come to rest after a few rounds, or not at all.
constexpr int32_t kMaxRounds = 16;

/// False for `compact`, percentages and whatever else does not move.
bool numberOf(int32_t track, const CString& text, double& number) {
    if (text.isEmpty()) {
        number = 1.0;
        return track == kOpacity;
    }
    bool isNumber = false;
    number = CString::toDouble(text, &isNumber);
    return isNumber;
}

}  // namespace

void CViewBaseState::prepareAttribute(const CString& name, CAttributeValue& value) {
    CViewBaseCtlEvents::prepareAttribute(name, value);
    if (writing_ && *writing_ == name) {
        return;
    }
    const int32_t track = trackOf(name);
    if (track >= 0) {
        tracks_[track].stop();
    }
    const auto found = overrides_.find(name);
    if (found != overrides_.end()) {
        own_[name] = value;
        value = expandOverride(name, found->second);
    }
}

/// Replaces `{}` by the view's text without any state, and so the names of attributes that states override; other
/// expressions are those of the view.
CAttributeValue CViewBaseState::expandOverride(const CString& name, const CString& text) {
    CString result;
    bool isPlain = false;
    int32_t at = 0;
    for (int32_t open = text.indexOf('{'); open >= 0; open = text.indexOf('{', open + 1)) {
        const int32_t close = text.indexOf('}', open);
        if (close < 0) {
            break;
        }
        const CString inner = text.substring(open + 1, close - open - 1);
        const auto own = own_.find(inner.isEmpty() ? name : inner);
        if (own == own_.end() && !inner.isEmpty()) {
            continue;
        }
        const CString found = own == own_.end() ? getAttrString(name) : own->second.asString();
        isPlain = isPlain || (own != own_.end() && own->second.isPlain());
        result += text.substring(at, open - at) + found;
        at = close + 1;
    }
    result += text.substring(at);
    if (isPlain) {
        return CAttributeValue::fromPlainString(result);
    }
    CAttributeValue value = CAttributeValue::fromString(result);
    expandValue(*this, name, value);
    return value;
}

/// Track of a moving attribute, or -1.
int32_t CViewBaseState::trackOf(const CString& name) {
    for (int32_t i = 0; i < kTracks; ++i) {
        if (name == CString(kMoving[i])) {
            return i;
        }
    }
    return -1;
}

CError* CViewBaseState::writeAttribute(const CString& name, const CAttributeValue& value) {
    const CObjectWatch watch(*this);
    const CString* const outer = writing_;
    writing_ = &name;
    CError* error = setAttribute(name, value);
    if (watch.isAlive()) {
        writing_ = outer;
    }
    return error;
}

CError* CViewBaseState::changeAttribute(const CString& name, const CAttributeValue& value, double morphSeconds) {
    const int32_t index = trackOf(name);
    const CString text(value.asString());
    if (index >= 0) {
        CViewMorphTrack& track = tracks_[index];
        if (track.isRunning() && track.finalText() == text) {
            return nullptr;
        }
        double from = 0.0;
        double to = 0.0;
        if (morphSeconds > 0.0 && numberOf(index, getAttrString(name), from) && numberOf(index, text, to) &&
            (from != to || track.isRunning())) {
            track.begin(from, to, text, now(), morphSeconds);
            startTimer();
            return nullptr;
        }
        track.stop();
    }
    const auto current = attributes().find(name);
    if (current != attributes().end() && current->second.isSame(value)) {
        return nullptr;
    }
    return writeAttribute(name, value);
}

CError* CViewBaseState::applyStates(double morphSeconds) {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    if (isApplying_) {
        isStale_ = true;
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = nullptr;
    isApplying_ = true;
    isStale_ = true;
    for (int32_t i = 0; i < kMaxRounds && isStale_ && !error; ++i) {
        isStale_ = false;
        error = applyOnce(morphSeconds);
        if (!watch.isAlive()) {
            return error;
        }
    }
    isApplying_ = false;
    return error;
}

CError* CViewBaseState::applyOnce(double morphSeconds) {
    // Out of this object for the call, which may destroy it.
    CNamedValues<CString> wanted = std::move(wanted_);
    wanted.clear();
    for (const CViewState* state : states_) {
        if (isStateSet(state->stateName())) {
            for (const auto& attribute : state->attributes()) {
                if (CViewState::isOverride(attribute.first)) {
                    wanted[attribute.first] = attribute.second.asString();
                }
            }
        }
    }
    const CObjectWatch watch(*this);
    CError* error = restoreOthers(wanted, morphSeconds);
    if (!error && watch.isAlive()) {
        error = applyOverrides(wanted, morphSeconds);
    }
    if (!error && watch.isAlive()) {
        const CArray<CString, 4> formerColors = colorStates_;
        const CString formerRange = stateRange_;
        const bool hadRange = hasStateRange_;
        composeLook();
        // A state may change nothing but attributes, which redraw what they must.
        const bool isSame = hadRange == hasStateRange_ && (!hadRange || formerRange == stateRange_) &&
                            formerColors.count() == colorStates_.count() &&
                            std::equal(formerColors.begin(), formerColors.end(), colorStates_.begin());
        if (!isSame) {
            lookChanged(morphSeconds);
        }
    }
    if (watch.isAlive()) {
        wanted_ = std::move(wanted);
    }
    return error;
}

/// Gives back the own texts of what no state overrides any more.
CError* CViewBaseState::restoreOthers(const CNamedValues<CString>& wanted, double morphSeconds) {
    CArray<CString, 4> left;
    for (const auto& item : overrides_) {
        if (wanted.find(item.first) == wanted.end()) {
            left.append(item.first);
        }
    }
    const CObjectWatch watch(*this);
    for (const CString& name : left) {
        const CAttributeValue own = own_[name];
        overrides_.erase(name);
        own_.erase(name);
        CError* error = changeAttribute(name, own, morphSeconds);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CViewBaseState::applyOverrides(const CNamedValues<CString>& wanted, double morphSeconds) {
    // All own texts first, since overrides may refer to one another's.
    for (const auto& [name, text] : wanted) {
        if (overrides_.find(name) == overrides_.end()) {
            const auto current = attributes().find(name);
            own_[name] = current == attributes().end() ? CAttributeValue() : current->second;
            const int32_t track = trackOf(name);
            if (track >= 0 && tracks_[track].isRunning()) {
                // On its way back: what it goes to is the own text.
                own_[name] = CAttributeValue::fromString(tracks_[track].finalText());
            }
        }
        overrides_[name] = text;
    }
    const CObjectWatch watch(*this);
    for (const auto& [name, text] : wanted) {
        CError* error = changeAttribute(name, expandOverride(name, text), morphSeconds);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

void CViewBaseState::composeLook() {
    colorStates_.clear();
    hasStateRange_ = false;
    for (const CViewState* state : states_) {
        if (!isStateSet(state->stateName())) {
            continue;
        }
        const CString color = expandOverride("color-state", state->getAttrString("color-state")).asString();
        const bool isWhole = color.startsWith("/");
        if (isWhole) {
            colorStates_.clear();
        }
        if (color.length() > (isWhole ? 1 : 0)) {
            colorStates_.append(isWhole ? color.substring(1) : color);
        }
        if (state->hasAttr("image-set-range")) {
            stateRange_ = expandOverride("image-set-range", state->getAttrString("image-set-range")).asString();
            hasStateRange_ = true;
        }
    }
}

CError* CViewBaseState::stepTracks(double time) {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < kTracks; ++i) {
        CViewMorphTrack& track = tracks_[i];
        if (!track.isRunning()) {
            continue;
        }
        CString text = CString::fromDouble(track.valueAt(time), 4);
        if (track.isOver(time)) {
            text = track.finalText();
            track.stop();
        }
        const CString name(kMoving[i]);
        CError* error = writeAttribute(name, CAttributeValue::fromString(text));
        if (error || !watch.isAlive()) {
            return error;
        }
        requestRedraw();
    }
    return nullptr;
}

}  // namespace tarv
