#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Delivers what its attributes say: one section of type `type` for each gain in `gains` (numbers with blanks between),
/// with the coefficients of `numerators`, or of those and the design numbers behind them with `use-values`. With
/// `use-length` the first design number is a count of coefficients: zeros, and a 1 at the end.
class CTestGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override {
        TARV_TRY(CAudioFilterGen::init());
        for (const CString& gain : getAttrString("gains").split(' ')) {
            gains_.append(CString::toDouble(gain));
        }
        for (const CString& number : getAttrString("numerators").split(' ')) {
            numerators_.append(CString::toDouble(number));
        }
        type_ = getAttrInt("type");
        isParallel_ = getAttrBool("is-parallel");
        useValues_ = getAttrBool("use-values");
        useLength_ = getAttrBool("use-length");
        latency_ = getAttrInt("latency");
        return nullptr;
    }
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override {
        lastRate = sampleRate;
        restart(list);
        for (const double gain : gains_) {
            CFilterSection& section = addSection(list, type_, gain, {}, {});
            for (const double number : numerators_) {
                section.numerators.append(number);
            }
            for (int32_t i = 0; useValues_ && i < count; ++i) {
                section.numerators.append(values[i]);
            }
            if (useLength_) {
                section.numerators.resize(static_cast<int32_t>(values[0]));
                section.numerators.last() = 1.0;
            }
        }
        list.isParallel = isParallel_ ? 1 : 0;
        list.latency = latency_;
    }

    CFirSize firSize(double, const CDesignRange* ranges, int32_t count) const override {
        if (type_ != CFilterSection::kFirType) {
            return {};
        }
        const int32_t taps = useLength_ ? static_cast<int32_t>(ranges[0].high) : useValues_ ? count : 0;
        return {gains_.count(), std::max(1, numerators_.count() + taps)};
    }

    /// Hz, of the last design.
    static inline double lastRate = 0.0;

private:
    CArray<double, 4> gains_;
    CArray<double, 4> numerators_;
    int32_t type_ = 0;
    bool isParallel_ = false;
    bool useValues_ = false;
    bool useLength_ = false;
    int32_t latency_ = 0;
};

}  // namespace tarv
