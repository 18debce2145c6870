#pragma once

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Visuals/CAudioVizData.h"
#include "Audio/Visuals/CAudioVizRing.h"

namespace tarv {

class CAudioVizCollector;

/// Whether a parameter is on (0.5 or more in group 0, element 0), for the audio thread, which does not take the
/// parameter's lock. The parameter must outlive it.
class CAudioVizSwitch : private CAudioParamListener {
public:
    CAudioVizSwitch() = default;
    CAudioVizSwitch(const CAudioVizSwitch&) = delete;
    CAudioVizSwitch& operator=(const CAudioVizSwitch&) = delete;
    ~CAudioVizSwitch();

    /// Once. Any thread but the audio thread.
    void bind(CAudioParam& param);
    bool isBound() const { return param_ != nullptr; }
    /// Reads the parameter again. Any thread but the audio thread.
    void update();
    /// Any thread; false while not bound.
    bool isOn() const { return isOn_.load(std::memory_order_relaxed); }

private:
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;

    CAudioParam* param_ = nullptr;
    CLock lock_;
    std::atomic<bool> isOn_{false};
};

/// One process's end of a collector, which owns it: hands in the records of one kind. The records are made in advance
/// and used in turn, so that the audio thread neither allocates nor waits. While all of them wait to be taken, a new
/// one is dropped.
class CAudioVizSource : public CHeapObject {
public:
    /// Frames for which there are records.
    static constexpr int32_t kFramesKept = 8;

    const CString& name() const { return name_; }
    CAudioVizKind kind() const { return kind_; }
    /// What its records carry as `source`.
    uint32_t number() const { return number_; }

    /// A record to fill, of the class of kind(), with its source and time set and all else as it was left; null while
    /// collecting or this source's switch is off, when this frame has its records, or when none is free. It takes no
    /// more bins or bytes than announced. Audio thread.
    CAudioVizData* beginRecord();
    /// Hands in what beginRecord gave. Audio thread.
    void endRecord();
    /// Records that were dropped since none was free. Any thread.
    uint64_t dropped() const { return dropped_.load(std::memory_order_relaxed); }

private:
    friend class CAudioVizCollector;
    struct CRecord : CHeapObject {
        CRecord(CAudioVizSource& owner, CAudioVizData* data) : source(owner), data(data) {}
        CRecord(const CRecord&) = delete;
        CRecord& operator=(const CRecord&) = delete;
        ~CRecord() { delete data; }
        CAudioVizSource& source;
        CAudioVizData* const data;
    };

    CAudioVizSource(CAudioVizCollector& collector, const CString& name, uint32_t number, CAudioVizKind kind,
                    int32_t recordsPerFrame, int32_t capacity);
    int32_t recordCount() const { return records_.count(); }

    CAudioVizCollector& collector_;
    const CString name_;
    const uint32_t number_;
    const CAudioVizKind kind_;
    const int32_t recordsPerFrame_;
    CAudioVizSwitch switch_;
    COwnedArray<CRecord, 1> records_;
    CAudioVizRing<CRecord> free_;
    CRecord* open_ = nullptr;
    uint64_t frame_ = 0;
    int32_t begunInFrame_ = 0;
    std::atomic<uint64_t> dropped_{0};
};

}  // namespace tarv
