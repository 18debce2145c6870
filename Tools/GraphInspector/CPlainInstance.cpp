#include "CPlainInstance.h"

#include <algorithm>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Product/Product.h"

namespace tarv {

CPlainInstance* CPlainInstance::create(CError*& error) {
    ensureProductStarted();
    auto* instance = new CPlainInstance;
    error = instance->init();
    if (error != nullptr) {
        delete instance;
        return nullptr;
    }
    return instance;
}

bool CPlainInstance::set(const CString& param, int32_t group, int32_t element, double value) {
    CAudioParam* found = paramCollector()->findParam(param);
    if (found == nullptr || !found->isDefined()) {
        return false;
    }
    found->setValue(group, element, value);
    return true;
}

void CPlainInstance::start(double rate, int32_t inputs, int32_t outputs) {
    suspend();
    setSampleRate(rate);
    setChannelCounts(inputs, outputs);
    outputs_ = outputs;
    resume();
}

std::vector<std::vector<double>> CPlainInstance::run(const std::vector<std::vector<double>>& inputs, int32_t block) {
    const size_t frames = inputs.empty() ? 0 : inputs[0].size();
    std::vector<std::vector<double>> outputs(static_cast<size_t>(outputs_), std::vector<double>(frames));
    std::vector<const double*> in(inputs.size());
    std::vector<double*> out(outputs.size());
    for (size_t at = 0; at < frames; at += static_cast<size_t>(block)) {
        const size_t count = std::min(frames - at, static_cast<size_t>(block));
        for (size_t c = 0; c < in.size(); ++c) {
            in[c] = inputs[c].data() + at;
        }
        for (size_t c = 0; c < out.size(); ++c) {
            out[c] = outputs[c].data() + at;
        }
        processBlock(in.data(), out.data(), static_cast<int32_t>(count));
    }
    return outputs;
}

}  // namespace tarv
