#include "CLoopPlayer.h"

// windows.h first: the other one needs it.
#include <windows.h>

#include <mmsystem.h>

#include <algorithm>
#include <chrono>

namespace tarv::host {

/// Blocks on their way to the system's first sound device.
class CLoopPlayer::CDevice {
public:
    CDevice(int32_t channels, double rate) {
        WAVEFORMATEX format{};
        format.wFormatTag = kFloatFormat;
        format.nChannels = static_cast<WORD>(channels);
        format.nSamplesPerSec = static_cast<DWORD>(rate);
        format.wBitsPerSample = 32;
        format.nBlockAlign = static_cast<WORD>(sizeof(float) * static_cast<size_t>(channels));
        format.nAvgBytesPerSec = format.nSamplesPerSec * format.nBlockAlign;
        event_ = CreateEventA(nullptr, FALSE, FALSE, nullptr);
        if (waveOutGetNumDevs() == 0 || waveOutOpen(&device_, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(event_),
                                                    0, CALLBACK_EVENT) != MMSYSERR_NOERROR) {
            device_ = nullptr;
            return;
        }
        for (CPart& part : parts_) {
            part.samples.resize(static_cast<size_t>(kBlock) * static_cast<size_t>(channels));
            part.header.lpData = reinterpret_cast<char*>(part.samples.data());
            part.header.dwBufferLength = static_cast<DWORD>(part.samples.size() * sizeof(float));
            waveOutPrepareHeader(device_, &part.header, sizeof part.header);
            part.header.dwFlags |= WHDR_DONE;
        }
    }
    ~CDevice() {
        if (device_) {
            waveOutReset(device_);
            for (CPart& part : parts_) {
                waveOutUnprepareHeader(device_, &part.header, sizeof part.header);
            }
            waveOutClose(device_);
        }
        CloseHandle(event_);
    }
    CDevice(const CDevice&) = delete;
    CDevice& operator=(const CDevice&) = delete;

    bool isOpen() const { return device_; }
    /// Waits for room, 100 ms at most. False without any.
    bool write(const std::vector<float>& samples) {
        CPart& part = parts_[next_];
        if (!(part.header.dwFlags & WHDR_DONE) && WaitForSingleObject(event_, kWaitMs) != WAIT_OBJECT_0) {
            return false;
        }
        if (!(part.header.dwFlags & WHDR_DONE)) {
            return false;
        }
        std::copy(samples.begin(), samples.end(), part.samples.begin());
        part.header.dwFlags &= ~static_cast<DWORD>(WHDR_DONE);
        waveOutWrite(device_, &part.header, sizeof part.header);
        next_ = (next_ + 1) % kParts;
        return true;
    }

private:
    static constexpr WORD kFloatFormat = 3;
    static constexpr DWORD kWaitMs = 100;
    static constexpr int32_t kParts = 6;
    struct CPart {
        std::vector<float> samples;
        WAVEHDR header{};
    };
    CPart parts_[kParts];
    int32_t next_ = 0;
    HWAVEOUT device_ = nullptr;
    HANDLE event_;
};

CLoopPlayer::CLoopPlayer(CVstHost& host, const std::vector<double>& sound, int32_t channels, double rate)
    : host_(host), sound_(sound), channels_(channels), rate_(rate) {
    const auto makeRoom = [](int32_t count, std::vector<std::vector<double>>& rooms, std::vector<double*>& pointers) {
        rooms.assign(static_cast<size_t>(count), std::vector<double>(kBlock, 0.0));
        for (std::vector<double>& room : rooms) {
            pointers.push_back(room.data());
        }
    };
    makeRoom(host_.effect()->numInputs, ins_, inPointers_);
    makeRoom(host_.effect()->numOutputs, outs_, outPointers_);
    host_.prepare(rate_, kBlock, vst::kPrecision64);
    host_.resume();
    thread_ = std::thread([this] { run(); });
}

CLoopPlayer::~CLoopPlayer() {
    isEnding_ = true;
    thread_.join();
    host_.suspend();
}

void CLoopPlayer::playBlock(std::vector<float>& played) {
    for (int32_t i = 0; i < kBlock; ++i) {
        for (int32_t c = 0; c < channels_; ++c) {
            ins_[static_cast<size_t>(c)][static_cast<size_t>(i)] = sound_.empty() ? 0.0 : sound_[position_];
            position_ = position_ + 1 < sound_.size() ? position_ + 1 : 0;
        }
    }
    host_.process(inPointers_.data(), outPointers_.data(), kBlock);
    for (int32_t i = 0; i < kBlock; ++i) {
        for (int32_t c = 0; c < channels_; ++c) {
            const double sample = outs_[static_cast<size_t>(c)][static_cast<size_t>(i)];
            played[static_cast<size_t>(i * channels_ + c)] = static_cast<float>(std::clamp(sample, -1.0, 1.0));
        }
    }
    frames_ += kBlock;
}

void CLoopPlayer::run() {
    using Clock = std::chrono::steady_clock;
    std::vector<float> played(static_cast<size_t>(kBlock) * static_cast<size_t>(channels_));
    CDevice device(channels_, rate_);
    isHeard_ = device.isOpen();
    const auto blockTime = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(kBlock / rate_));
    for (Clock::time_point due = Clock::now(); !isEnding_; due += blockTime) {
        playBlock(played);
        if (isHeard_) {
            while (!isEnding_ && !device.write(played)) {
            }
        } else {
            std::this_thread::sleep_until(due + blockTime);
        }
    }
}

}  // namespace tarv::host
