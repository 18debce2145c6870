#pragma once

#include <initializer_list>

#include "Audio/Filters/CDesignRange.h"
#include "Audio/Filters/CFirSize.h"
#include "Audio/Filters/CSectionList.h"
#include "Core/CObject.h"

namespace tarv {

/// Base of the filter generators: objects of the tree that turn a rate and a few design numbers into sections.
/// They hold no audio state. Thread: a design runs on any thread once the tree is built (the audio thread in practice).
class CAudioFilterGen : public CObject {
public:
    /// Empties `list` and fills it. `sampleRate` is in Hz, that of the place where the filter runs. `values` holds
    /// `count` design numbers: [0] frequency in Hz, [1] linear gain, [2] bandwidth in octaves, Q or pole radius.
    /// Too few values leave the list empty, which makes a pass-through. Numbers outside what a filter can have give
    /// useless coefficients; a design never fails.
    virtual void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const = 0;

    /// What FIR sections take at most while each of `count` design values lies in its range; exactly what a design
    /// takes if every range holds one value. Nothing for generators without such sections.
    virtual CFirSize firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const {
        return (void)sampleRate, (void)ranges, (void)count, CFirSize{};
    }

    /// Whether a design of this generator may call one of `other`.
    virtual bool uses(const CAudioFilterGen& other) const { return this == &other; }

protected:
    /// Reads the attribute `type` as a number of 0 to `maximum`; absent or empty is 0. False when it is anything else.
    bool readType(int32_t maximum, int32_t& type) const;
    /// Empties the list, as every design begins: no section, not parallel, no latency.
    static void restart(CSectionList& list);
    /// Appends a section. Lists of up to four sections with up to four coefficients in each list allocate nothing.
    static CFilterSection& addSection(CSectionList& list, int32_t type, double gain,
                                      std::initializer_list<double> numerators,
                                      std::initializer_list<double> denominators);
};

/// The highest frequency of pass and shelf designs, as a part of their rate: above it their poles reach the unit
/// circle.
constexpr double kHighestPlace = 0.48;

/// The coefficient k of v += (x - v) k for a one-pole low-pass at `angle` radians a sample.
double onePoleCoefficient(double angle);

/// Reads numbers separated by commas; false when a piece is no number. An empty text has no numbers.
bool readNumbers(const CString& text, CArray<double, 8>& numbers);

}  // namespace tarv
