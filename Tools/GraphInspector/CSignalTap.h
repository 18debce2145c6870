#pragma once

#include <cstdio>

#include "Audio/Graph/CAudioGraph.h"
#include "Audio/Graph/CAudioGraphObserver.h"
#include "Core/CString.h"

namespace tarv {

/// Writes what lies on a process's output 0 behind each run, as raw interleaved 64-bit floats.
class CSignalTap : public CAudioGraphObserver {
public:
    /// `stackIndex` -1 takes a process outside a stack. The file belongs to the caller.
    CSignalTap(const CString& path, int32_t stackIndex, FILE* file)
        : path_(path), stackIndex_(stackIndex), file_(file) {}

    void processed(CAudioProcessBase& process) override;
    int64_t frames() const { return frames_; }
    int32_t channels() const { return channels_; }
    double rate() const { return rate_; }

private:
    CString path_;
    int32_t stackIndex_;
    FILE* file_;
    int64_t frames_ = 0;
    int32_t channels_ = 0;
    double rate_ = 0.0;
};

}  // namespace tarv
