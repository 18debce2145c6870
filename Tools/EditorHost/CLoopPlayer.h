#pragma once

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "CVstHost.h"

namespace tarv::host {

/// Plays a recording through an effect again and again on a thread of its own, by the system's sound device, or at the
/// pace of the clock where there is none. The effect is prepared and resumed here, and suspended at the end.
/// Thread: made and destroyed on that of the effect.
class CLoopPlayer {
public:
    static constexpr int32_t kBlock = 512;

    /// `sound` is interleaved, of `channels` channels, and stays with its owner; without a frame silence runs. The
    /// effect has at least so many inputs and outputs.
    CLoopPlayer(CVstHost& host, const std::vector<double>& sound, int32_t channels, double rate);
    ~CLoopPlayer();
    CLoopPlayer(const CLoopPlayer&) = delete;
    CLoopPlayer& operator=(const CLoopPlayer&) = delete;

    /// Whether the system has a device that plays it.
    bool isHeard() const { return isHeard_; }
    int64_t frames() const { return frames_; }

private:
    class CDevice;
    void run();
    void playBlock(std::vector<float>& played);

    CVstHost& host_;
    const std::vector<double>& sound_;
    int32_t channels_;
    double rate_;
    size_t position_ = 0;  ///< of the next sample of `sound`
    std::vector<std::vector<double>> ins_;
    std::vector<std::vector<double>> outs_;
    std::vector<double*> inPointers_;
    std::vector<double*> outPointers_;
    std::atomic<bool> isHeard_ = false;
    std::atomic<bool> isEnding_ = false;
    std::atomic<int64_t> frames_ = 0;
    std::thread thread_;
};

}  // namespace tarv::host
