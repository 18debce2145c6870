#pragma once

#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Modules/CAudioProcessTerminal.h"
#include "Audio/Modules/CFilterChain.h"

namespace tarv {

/// Definition of a filter (`audio:modFilter`): the array of generators that it chooses from.
class CModFilterDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CError* init() override;
    CAudioProcessBase* createProcess() const override;

    /// Null without the attribute `gen-array`: every filter is then a pass-through.
    const CAudioFilterGenArray* genArray() const { return genArray_; }
    /// Each section's gain is applied at that section instead of once at the end.
    bool useGainAlways() const { return useGainAlways_; }
    /// Design parameters, those in the slots from 2 on.
    int32_t designParamCount() const { return allocs().count() > 2 ? allocs().count() - 2 : 0; }

private:
    const CAudioFilterGenArray* genArray_ = nullptr;
    bool useGainAlways_ = false;
};

/// The filter of one channel: `count` filters in series, filter j designed with the elements j behind the
/// module's own.
///
/// A design on the audio thread allocates nothing for FIR sections: a design without history (a preparation or a change
/// of the layout) makes room for the longest ones that the definition allows, which follows from the generators and the
/// ranges of the parameters, up to kMostPreparedTaps taps. A filter whose new values need more keeps its former design
/// until the next design without history.
class CModFilterModule : public CAudioModule {
public:
    ~CModFilterModule() override;
    void bindParams() override;
    bool differs() const;
    void design(double rate, CModFilterModule* from);
    CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count);
    void retire();
    void makeReady(const CModFilterModule* like);
    int32_t latency() const;

    int32_t chainCount() const { return count_; }
    const CFilterChain& chain(int32_t index) const { return *chains_[index]; }
    /// The most filters in series.
    static constexpr int32_t kMaxCount = 64;
    /// Taps for which room is made before a design asks for them.
    static constexpr int32_t kMostPreparedTaps = 1 << 16;

private:
    using CDesignValues = CArray<double, 9>;
    using CDesignRanges = CArray<CDesignRange, 9>;
    const CModFilterDef& filterDef() const { return static_cast<const CModFilterDef&>(process().def()); }
    int32_t wantedCount() const;
    bool hasDesignData() const;
    const CAudioFilterGen* readChain(int32_t index, CDesignValues& values) const;
    /// What a design with these values takes for FIR sections.
    CFirSize sizeOf(const CAudioFilterGen* generator, const CDesignValues& values) const;
    /// What any design that the definition allows takes, as far as room is made for it.
    CFirSize mostSize(int32_t index) const;
    bool isRoomFor(const CFilterChain& chain, const CAudioFilterGen* generator, const CDesignValues& values) const;
    void designChain(int32_t index, CFilterChain* before);
    void sizeChains(int32_t count);
    int32_t lastActiveChain() const;
    /// The next chain with sections; there must be one.
    int32_t nextActiveChain(int32_t index) const;
    void noteSingle();
    CBufferHandle runChains(CBufferHandle in, int32_t count) const;
    CBufferHandle runSeries(const CFilterChain& chain, CBufferHandle in, int32_t count, bool isLast,
                            double& factor) const;
    CBufferHandle runParallel(const CFilterChain& chain, CBufferHandle in, int32_t count) const;
    CBufferHandle runSection(const CFilterChain& chain, int32_t section, CBufferHandle in, int32_t count, bool useGain,
                             double gain) const;

    const CAudioParamSlot* countSlot_ = nullptr;
    const CAudioParamSlot* indexSlot_ = nullptr;
    CArray<const CAudioParamSlot*, 4> designSlots_;
    COwnedArray<CFilterChain, 4> chains_;
    int32_t count_ = 0;
    double rate_ = 0.0;
    // A single section is the common case, and run without a look at the lists.
    bool isSingle_ = false;
    int32_t singleKernel_ = -1;
    double singleGain_ = 1.0;
};

using CModFilter = CAudioProcessTerminal<CModFilterModule>;

}  // namespace tarv
