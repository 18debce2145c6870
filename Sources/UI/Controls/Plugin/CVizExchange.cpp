#include "UI/Controls/Plugin/CVizExchange.h"

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"
#include "Core/CTimer.h"

namespace tarv {

namespace {

constexpr const char* kEnableParam = "audio.param-enable-viz";
constexpr const char* kDefaultClient = "ui.interface-client";
constexpr const char* kTimer = "viz-timer";

}  // namespace

CVizExchange::~CVizExchange() {
    if (!views_.isEmpty()) {
        views_.clear();
        stop();
    }
}

CError* CVizExchange::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CVizExchange::rateChanged>("bound-value-changed");
    descriptor.addHandler<&CVizExchange::requestFrames>("request-frames");
    return nullptr;
}

CError* CVizExchange::init() {
    TARV_TRY(CObject::init());
    const CString& given = getAttrString("interface-client");
    const CString path = given.isEmpty() ? CString(kDefaultClient) : given;
    const auto* found = findObjectOf<CAudioInterfaceClient>(path);
    if (!found) {
        TARV_FAIL("@tarvstr_CVizExchange_init_NoInterfaceClient No interfacing object '%1' found.", path);
    }
    clientPath_ = found->fullName();
    listenObject(clientPath_, "bound-value-changed", "bound-value-changed");
    return nullptr;
}

CAudioInterfaceClient* CVizExchange::clientObject() const {
    return findObjectOf<CAudioInterfaceClient>(clientPath_);
}

int32_t CVizExchange::viewCount() const {
    int32_t count = 0;
    for (const CVizView* view : views_) {
        count += view ? 1 : 0;
    }
    return count;
}

CError* CVizExchange::addView(CVizView& view) {
    if (views_.indexOf(&view) >= 0) {
        return nullptr;
    }
    const bool isFirst = viewCount() == 0;
    views_.append(&view);
    return isFirst ? start() : nullptr;
}

void CVizExchange::removeView(CVizView& view) {
    const int32_t index = views_.indexOf(&view);
    if (index < 0) {
        return;
    }
    if (calls_ > 0) {
        views_[index] = nullptr;
    } else {
        views_.removeAt(index);
    }
    if (viewCount() == 0) {
        stop();
    }
}

/// Of the parameter nothing is a step of the history: it is no setting of the user.
CError* CVizExchange::enable(bool isEnabled) {
    const double value = isEnabled ? 1.0 : 0.0;
    CInterfaceUndo undo;
    undo.isRecorded = false;
    CAudioInterfaceClient* const found = clientObject();
    return found ? found->setNumbers(kEnableParam, 0, 0, &value, 1, 1, undo) : nullptr;
}

CError* CVizExchange::start() {
    CAudioInterfaceClient* const found = clientObject();
    if (!found) {
        return nullptr;
    }
    TARV_TRY(found->addVizProcessor(getAttrString("source"), *this));
    // The ticks begin when the rate has come.
    TARV_TRY(found->bindValue("viz-fps", 1, rateId_));
    isRateBound_ = true;
    return enable(true);
}

void CVizExchange::stop() {
    CAudioInterfaceClient* const found = clientObject();
    if (timer_) {
        delete timer_;
        timer_ = nullptr;
    }
    if (found && client()) {
        found->removeListener(*this);
        if (isRateBound_) {
            TARV_CONSUME(found->unbindValue(rateId_));
        }
        TARV_CONSUME(enable(false));
    }
    isRateBound_ = false;
}

CError* CVizExchange::rateChanged() {
    const CAudioInterfaceClient* const found = clientObject();
    const double rate = found && isRateBound_ ? found->boundValue(rateId_) : 0.0;
    if (rate <= 0.0) {
        return nullptr;
    }
    if (timer_) {
        return timer_->setAttribute("interval", CAttributeValue::fromReal(1.0 / rate));
    }
    CAttributeMap attributes;
    attributes["interval"] = CAttributeValue::fromReal(1.0 / rate);
    TARV_TRY(createChildOf(timer_, "core:timer", kTimer, false, &attributes));
    listenObject(timer_->fullName(), "tick", "request-frames");
    return nullptr;
}

CError* CVizExchange::requestFrames() {
    CAudioInterfaceClient* const found = clientObject();
    return found && viewCount() > 0 ? found->requestFrames() : nullptr;
}

template <class Call>
void CVizExchange::callEach(Call&& call) {
    const CObjectWatch watch(*this);
    ++calls_;
    for (int32_t i = 0; i < views_.count(); ++i) {
        if (views_[i]) {
            TARV_CONSUME(call(*views_[i]));
            if (!watch.isAlive()) {
                return;
            }
        }
    }
    if (--calls_ == 0) {
        for (int32_t i = views_.count() - 1; i >= 0; --i) {
            if (!views_[i]) {
                views_.removeAt(i);
            }
        }
    }
}

void CVizExchange::processVizData(const CAudioVizData& data) {
    callEach([&data](CVizView& view) { return view.takeVizData(data); });
}

void CVizExchange::endVizFrame() {
    callEach([](CVizView& view) { return view.endVizFrame(); });
}

}  // namespace tarv
