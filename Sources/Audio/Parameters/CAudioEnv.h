#pragma once

#include <atomic>

#include "Core/CObject.h"
#include "Platform/Lock.h"

namespace tarv {

/// The run-time constants of one instance and the lock between host threads and the audio thread (`audio:audio-env`).
/// The lock guards the running flag, rate and block size, and the pointers of the batch of pending changes. The audio
/// thread holds it for a swap only; nobody allocates or waits while holding it.
class CAudioEnv : public CObject {
public:
    [[nodiscard]] CError* init() override;

    CLock& lock() const { return lock_; }
    /// Hz, the host's rate. Set under the lock.
    double sampleRate() const { return sampleRate_.load(std::memory_order_relaxed); }
    void setSampleRate(double rate) { sampleRate_.store(rate, std::memory_order_relaxed); }
    /// Frames, the largest sub-block. Set under the lock.
    int32_t blockSize() const { return blockSize_.load(std::memory_order_relaxed); }
    void setBlockSize(int32_t frames) { blockSize_.store(frames, std::memory_order_relaxed); }
    /// Frames of delay that the graph adds, as the output module found it.
    int32_t latency() const { return latency_.load(std::memory_order_relaxed); }
    void setLatency(int32_t frames) { latency_.store(frames, std::memory_order_relaxed); }
    /// Whether the instance is between resume and suspend. Set under the lock.
    bool isRunning() const { return running_.load(std::memory_order_acquire); }
    void setRunning(bool running) { running_.store(running, std::memory_order_release); }
    /// Seconds that were processed since the instance was made. Audio thread.
    double position() const { return position_; }
    void advancePosition(double seconds) { position_ += seconds; }
    /// Frames of visual data a second (`viz-fps`).
    double vizFps() const { return vizFps_; }

private:
    mutable CLock lock_;
    std::atomic<double> sampleRate_{44100.0};
    std::atomic<int32_t> blockSize_{512};
    std::atomic<int32_t> latency_{0};
    std::atomic<bool> running_{false};
    double position_ = 0.0;
    double vizFps_ = 0.0;
};

}  // namespace tarv
