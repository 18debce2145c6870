#include "Audio/Parameters/CAudioGlobalParam.h"

namespace tarv {

namespace {
// Times are as short as a millisecond, in seconds.
constexpr int32_t kDecimals = 7;
}  // namespace

CAudioGlobalParam::CAudioGlobalParam(CAudioParam& param, CApplicationData& store, const CString& key)
    : param_(param), store_(store), key_(key), bridge_(this, &CAudioGlobalParam::storeChanged) {
    takeStored();
    bridge_.subscribe(store_, key_);
    param_.addListener(*this);
}

CAudioGlobalParam::~CAudioGlobalParam() {
    param_.removeListener(*this);
    bridge_.disconnect();
}

void CAudioGlobalParam::takeStored() {
    bool isNumber = false;
    const CString text = store_.readText(key_, CString());
    const double value = CString::toDouble(text, &isNumber);
    if (!text.isEmpty() && isNumber) {
        param_.setValue(0, 0, value, 0, this);
    }
}

void CAudioGlobalParam::storeChanged(CCheckedObject*) {
    takeStored();
}

void CAudioGlobalParam::onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) {
    store_.writeText(key_, CString::fromDouble(param_.value(0, 0), kDecimals));
}

}  // namespace tarv
