#include "Audio/Modules/CModFilter.h"

#include "Audio/Filters/CAudioFilterGenArrayItem.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

/// The values that a design value may take while audio runs: those of its parameter's range, or only the present one.
CDesignRange rangeOf(const CAudioParamSlot& slot, double value) {
    const CAudioParam* const param = slot.param;
    if (param == nullptr || !param->isDefined() || param->info().isString()) {
        return {value, value};
    }
    const auto [low, high] = std::minmax({param->info().minimum(0), param->info().maximum(0)});
    return {std::min(low, value), std::max(high, value)};
}

}  // namespace

CError* CModFilterDef::init() {
    TARV_TRY(CAudioProcessDefBase::init());
    genArray_ = findObjectOf<CAudioFilterGenArray>(getAttrString("gen-array"));
    useGainAlways_ = getAttrBool("use-gain-always");
    return nullptr;
}

CAudioProcessBase* CModFilterDef::createProcess() const {
    return new CModFilter;
}

CModFilterModule::~CModFilterModule() {
    retire();
}

void CModFilterModule::bindParams() {
    process().regModuleParam(0, countSlot_);
    process().regModuleParam(1, indexSlot_);
    for (int32_t i = 0; i < filterDef().designParamCount(); ++i) {
        const CAudioParamSlot* binding = nullptr;
        process().regModuleParam(2 + i, binding);
        designSlots_.append(binding);
    }
}

int32_t CModFilterModule::wantedCount() const {
    const double count = std::round(read(countSlot_, 1.0));
    return static_cast<int32_t>(count > 0.0 ? (count < kMaxCount ? count : kMaxCount) : 0.0);
}

bool CModFilterModule::hasDesignData() const {
    for (const CAudioParamSlot* slot : designSlots_) {
        if (slot == nullptr || !slot->data.isValid()) {
            return false;
        }
    }
    return true;
}

const CAudioFilterGen* CModFilterModule::readChain(int32_t index, CDesignValues& values) const {
    values.clear();
    for (const CAudioParamSlot* slot : designSlots_) {
        values.append(read(slot, 0.0, index));
    }
    const CAudioFilterGenArray* array = filterDef().genArray();
    const double position = std::round(read(indexSlot_, 0.0, index));
    const bool isPosition = position >= 0.0 && position < CAudioFilterGenArrayItem::kMaxIndex + 1;
    return array != nullptr && isPosition ? array->at(static_cast<int32_t>(position)) : nullptr;
}

bool CModFilterModule::differs() const {
    if (wantedCount() != count_) {
        return true;
    }
    if (!hasDesignData()) {
        return false;
    }
    CDesignValues values;
    for (int32_t i = 0; i < count_; ++i) {
        const CAudioFilterGen* generator = readChain(i, values);
        if (!chains_[i]->isDesignedWith(generator, values.data(), values.count()) &&
            (!chains_[i]->isDesigned() || isRoomFor(*chains_[i], generator, values))) {
            return true;
        }
    }
    return false;
}

void CModFilterModule::sizeChains(int32_t count) {
    while (chains_.count() < count) {
        chains_.append(new CFilterChain);
    }
    for (int32_t i = count; i < count_; ++i) {
        chains_[i]->release(context());
    }
    count_ = count;
}

CFirSize CModFilterModule::sizeOf(const CAudioFilterGen* generator, const CDesignValues& values) const {
    if (generator == nullptr) {
        return {};
    }
    CDesignRanges points;
    for (const double value : values) {
        points.append({value, value});
    }
    return generator->firSize(rate_, points.data(), points.count());
}

CFirSize CModFilterModule::mostSize(int32_t index) const {
    CDesignValues values;
    const CAudioFilterGen* generator = readChain(index, values);
    CDesignRanges ranges;
    for (int32_t i = 0; i < values.count(); ++i) {
        ranges.append(rangeOf(*designSlots_[i], values[i]));
    }
    CFirSize most;
    const bool isChoiceFixed = indexSlot_ == nullptr || indexSlot_->param == nullptr;
    if (!isChoiceFixed && filterDef().genArray() != nullptr) {
        most = filterDef().genArray()->firSize(rate_, ranges.data(), ranges.count());
    } else if (generator != nullptr) {
        most = generator->firSize(rate_, ranges.data(), ranges.count());
    }
    most.taps = most.taps < kMostPreparedTaps ? most.taps : kMostPreparedTaps;
    return most;
}

void CModFilterModule::design(double rate, CModFilterModule* from) {
    rate_ = rate;
    sizeChains(wantedCount());
    noteSingle();
    if (!hasDesignData()) {
        return;
    }
    for (int32_t i = 0; i < count_; ++i) {
        designChain(i, from != nullptr && i < from->count_ ? from->chains_[i] : nullptr);
    }
    noteSingle();
}

bool CModFilterModule::isRoomFor(const CFilterChain& chain, const CAudioFilterGen* generator,
                                 const CDesignValues& values) const {
    // Without room for any section the definition allows none.
    return chain.room().sections == 0 || chain.room().holds(sizeOf(generator, values));
}

void CModFilterModule::designChain(int32_t index, CFilterChain* before) {
    CFilterChain& chain = *chains_[index];
    CDesignValues values;
    const CAudioFilterGen* generator = readChain(index, values);
    if (before == nullptr || !before->isDesigned()) {
        CFirSize room = mostSize(index);
        room.extend(sizeOf(generator, values));
        chain.makeReady(context(), room);
    } else {
        chain.makeReady(context(), before->room());
        if (!isRoomFor(chain, generator, values)) {
            generator = before->generator();
            values = before->values();
        }
    }
    if (before != &chain || !before->isDesignedWith(generator, values.data(), values.count())) {
        chain.design(context(), generator, values.data(), values.count(), rate_, before);
    }
}

void CModFilterModule::retire() {
    for (CFilterChain* chain : chains_) {
        chain->release(context());
    }
    count_ = 0;
    isSingle_ = false;
}

void CModFilterModule::makeReady(const CModFilterModule* like) {
    while (chains_.count() < wantedCount()) {
        chains_.append(new CFilterChain);
    }
    for (int32_t i = 0; like != nullptr && i < like->count_ && i < chains_.count(); ++i) {
        chains_[i]->makeReady(context(), like->chains_[i]->room());
    }
}

int32_t CModFilterModule::latency() const {
    int32_t sum = 0;
    for (int32_t i = 0; i < count_; ++i) {
        sum += chains_[i]->list().latency;
    }
    return sum;
}

int32_t CModFilterModule::lastActiveChain() const {
    for (int32_t i = count_ - 1; i >= 0; --i) {
        if (!chains_[i]->list().sections.isEmpty()) {
            return i;
        }
    }
    return -1;
}

int32_t CModFilterModule::nextActiveChain(int32_t index) const {
    do {
        ++index;
    } while (index < count_ - 1 && chains_[index]->list().sections.isEmpty());
    return index;
}

CBufferHandle CModFilterModule::runSection(const CFilterChain& chain, int32_t section, CBufferHandle in, int32_t count,
                                           bool useGain, double gain) const {
    const CSectionKernels& kernels = context().sectionKernels(chain.list().sections[section].type);
    if (CFirSection* fir = chain.fir(section)) {
        // A FIR section keeps a position in the signal outside its kernels.
        process().graph().invalidateRun();
        const CBufferHandle plain = fir->run(in, count);
        const CBufferHandle scaled = takeSignal(count);
        context().issue(context().commonKernel(CCommonKernel::Mulc), count, useGain ? gain : 1.0, {scaled, plain});
        context().releaseReference(plain);
        return scaled;
    }
    const CBufferHandle out = takeSignal(count);
    // The level-dependent section has one kernel for both forms: without gain its factor is 1.
    context().issue(useGain ? kernels.runGain : kernels.run, count, useGain ? gain : 1.0,
                    {out, chain.state(section), in});
    return out;
}

CBufferHandle CModFilterModule::runSeries(const CFilterChain& chain, CBufferHandle in, int32_t count, bool isLast,
                                          double& factor) const {
    const CArray<CFilterSection, 4>& sections = chain.list().sections;
    const bool useGainAlways = filterDef().useGainAlways();
    CBufferHandle block = forward(in);
    for (int32_t k = 0; k < sections.count(); ++k) {
        factor *= sections[k].gain;
        const bool useGain = useGainAlways || (isLast && k == sections.count() - 1);
        const CBufferHandle next = runSection(chain, k, block, count, useGain, factor);
        context().releaseReference(block);
        block = next;
        factor = useGain ? 1.0 : factor;
    }
    return block;
}

CBufferHandle CModFilterModule::runParallel(const CFilterChain& chain, CBufferHandle in, int32_t count) const {
    CBufferHandle sum = kNoBuffer;
    for (int32_t k = 0; k < chain.list().sections.count(); ++k) {
        const CBufferHandle part = runSection(chain, k, in, count, true, chain.list().sections[k].gain);
        if (sum == kNoBuffer) {
            sum = part;
            continue;
        }
        const CBufferHandle next = takeSignal(count);
        context().issue(context().commonKernel(CCommonKernel::Add2), count, 0.0, {next, sum, part});
        context().releaseReference(sum);
        context().releaseReference(part);
        sum = next;
    }
    return sum;
}

void CModFilterModule::noteSingle() {
    const int32_t last = lastActiveChain();
    isSingle_ = last == 0 && chains_[0]->list().sections.count() == 1 && chains_[0]->fir(0) == nullptr;
    if (isSingle_) {
        const CFilterSection& section = chains_[0]->list().sections[0];
        singleKernel_ = context().sectionKernels(section.type).runGain;
        singleGain_ = section.gain;
    }
}

CBufferHandle CModFilterModule::run(CBufferHandle in, CBufferHandle, int32_t count) {
    if (isSingle_) {
        const CBufferHandle out = takeSignal(count);
        context().issue(singleKernel_, count, singleGain_, {out, chains_[0]->state(0), in});
        return out;
    }
    return runChains(in, count);
}

CBufferHandle CModFilterModule::runChains(CBufferHandle in, int32_t count) const {
    const int32_t last = lastActiveChain();
    CBufferHandle block = forward(in);
    double factor = 1.0;
    for (int32_t i = 0; i <= last; ++i) {
        const CFilterChain& chain = *chains_[i];
        if (chain.list().sections.isEmpty()) {
            continue;
        }
        const bool isParallel = chain.list().isParallel != 0 && chain.list().sections.count() > 1;
        const bool isEnd = i == last || chains_[nextActiveChain(i)]->list().isParallel != 0;
        const CBufferHandle next =
            isParallel ? runParallel(chain, block, count) : runSeries(chain, block, count, isEnd, factor);
        context().releaseReference(block);
        block = next;
    }
    return block;
}

}  // namespace tarv
