// Everything at once, in an order that no manual shows: input, automation in each block, state, openings.

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

#include "Tests/Host/Editor/HostEditorTest.h"

namespace tarv::host {
namespace {

constexpr int32_t kFrames = 512;
constexpr double kRate = 48000.0;
// What the system keeps of a kind of window that it sees for the first time, a list, a field, a file dialog, it keeps
// once. One that each opening left behind would be a hundred in the short form, and ten thousand in the long one.
constexpr int64_t kKeptOnce = 16;

/// Buffers for all channels of an effect, filled with noise.
struct CNoise {
    explicit CNoise(const CVstHost& host, uint32_t seed = 1) : random(seed) {
        const auto make = [&](int32_t count, std::vector<std::vector<double>>& rooms, std::vector<double*>& pointers) {
            rooms.assign(static_cast<size_t>(count), std::vector<double>(kFrames));
            for (std::vector<double>& room : rooms) {
                pointers.push_back(room.data());
            }
        };
        make(host.effect()->numInputs, ins, inPointers);
        make(host.effect()->numOutputs, outs, outPointers);
    }
    void fill() {
        std::uniform_real_distribution<double> level(-0.5, 0.5);
        for (std::vector<double>& room : ins) {
            for (double& sample : room) {
                sample = level(random);
            }
        }
    }
    std::mt19937 random;
    std::vector<std::vector<double>> ins, outs;
    std::vector<double*> inPointers, outPointers;
};

/// A host's audio thread that automates every parameter in each block, of any length.
class CAutomation {
public:
    explicit CAutomation(CVstHost& host) : host_(host), noise_(host, 7) {
        host_.prepare(kRate, kFrames, vst::kPrecision64);
        host_.resume();
        thread_ = std::thread([this] { run(); });
    }
    ~CAutomation() {
        isEnding_ = true;
        thread_.join();
        host_.suspend();
    }
    CAutomation(const CAutomation&) = delete;
    CAutomation& operator=(const CAutomation&) = delete;
    int64_t blocks() const { return blocks_; }

private:
    void run() {
        std::uniform_real_distribution<float> value(0.0f, 1.0f);
        while (!isEnding_) {
            for (int32_t i = 0; i < host_.effect()->numParams; ++i) {
                host_.setParameter(i, value(noise_.random));
            }
            noise_.fill();
            host_.process(noise_.inPointers.data(), noise_.outPointers.data(),
                          1 + static_cast<int32_t>(noise_.random() % kFrames));
            ++blocks_;
            // Somewhat faster than it plays.
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    CVstHost& host_;
    CNoise noise_;
    std::atomic<bool> isEnding_ = false;
    std::atomic<int64_t> blocks_ = 0;
    std::thread thread_;
};

/// What an effect makes of the same noise, behind its fades.
std::vector<double> soundOf(CVstHost& host) {
    CNoise noise(host);
    host.prepare(kRate, kFrames, vst::kPrecision64);
    host.resume();
    std::vector<double> sound;
    for (int32_t block = 0; block < 24; ++block) {
        noise.fill();
        host.process(noise.inPointers.data(), noise.outPointers.data(), kFrames);
        for (const std::vector<double>& out : noise.outs) {
            if (block >= 16) {
                sound.insert(sound.end(), out.begin(), out.end());
            }
        }
    }
    host.suspend();
    return sound;
}

class HostileHost : public HostEditorTest {
protected:
    void SetUp() override {
        HostEditorTest::SetUp();
        ASSERT_TRUE(second.open(library->entry()));
        otherParent = desk.openParent();
        desk.idle = [this] {
            idle(effect);
            idle(second);
        };
    }
    /// One step of whoever plays with the host.
    void step() {
        CVstHost& host = random() % 4 == 0 ? second : effect;
        void* const window = &host == &effect ? parent : otherParent;
        switch (random() % 24) {
            case 0:
                open(host, window);
                break;
            case 1:
                close(host);
                break;
            case 2:
                chunks[random() % 2] = host.chunk(random() % 2 == 0);
                break;
            case 3:
                if (const std::string& chunk = chunks[random() % 2]; !chunk.empty()) {
                    host.setChunk(chunk, random() % 2 == 0);
                }
                break;
            case 4:
                host.setProgram(static_cast<int32_t>(random() % 20) - 2);
                break;
            case 5:
                desk.wheel(random() % 2 == 0 ? 1 : -1);
                break;
            case 6:
                desk.strike(
                    " \r\x1b"
                    "a5"[random() % 5]);
                break;
            case 7:
                host.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, 1.0f);
                break;
            case 8:
                idle(host);
                break;
            case 9:
            case 10:
            case 11:
                desk.press();
                break;
            case 12:
            case 13:
            case 14:
                desk.release();
                break;
            default:
                desk.moveTo(window, static_cast<int>(random() % 420) - 10, static_cast<int>(random() % 320) - 10);
        }
        desk.serve();
    }
    void playAndRest(double seconds);
    void rest() {
        desk.release();
        close(effect);
        close(second);
        desk.serve();
    }

    std::mt19937 random{20261122};
    CVstHost second;
    void* otherParent = nullptr;
    std::string chunks[2];
};

/// Plays for so long, and proves that nothing is left behind, and that state and sound agree.
void HostileHost::playAndRest(double seconds) {
    using Clock = std::chrono::steady_clock;
    CHeldThings before;
    int64_t steps = 0;
    {
        CAutomation automation(effect);
        CAutomation other(second);
        const auto begin = Clock::now();
        const auto runFor = [&](double part) {
            for (; Clock::now() < begin + std::chrono::duration<double>(part * seconds); ++steps) {
                step();
            }
        };
        runFor(0.2);
        rest();
        runFor(0.4);
        rest();
        before = CHostDesk::held();
        runFor(1.0);
        EXPECT_GT(automation.blocks(), 0);
        EXPECT_GT(other.blocks(), 0);
    }
    rest();
    EXPECT_TRUE(desk.until([&] { return CHostDesk::held().graphics <= before.graphics + kKeptOnce; }))
        << CHostDesk::held().graphics << " of " << before.graphics << " in " << steps;
    EXPECT_EQ(CHostDesk::held().windows, before.windows);
    EXPECT_EQ(desk.childCount(parent) + desk.childCount(otherParent), 0);
    RecordProperty("steps", std::to_string(steps));

    for (CVstHost* host : {&effect, &second}) {
        const std::string chunk = host->chunk(true);
        CVstHost fresh;
        ASSERT_TRUE(fresh.open(library->entry()));
        ASSERT_TRUE(fresh.setChunk(chunk, true));
        EXPECT_EQ(fresh.chunk(true), chunk);
        // The bypass is in no chunk.
        host->setParameter(0, 0.0f);
        EXPECT_TRUE(soundOf(fresh) == soundOf(*host));
    }
}

double lengthOr(double seconds) {
    return std::getenv("TARV_LONG") ? 600.0 : seconds;
}

TEST_F(HostileHost, AllAtOnceLeavesNothingBehindAndStateAndSoundAgree) {
    playAndRest(lengthOr(5.0));
}

/// The product itself. Its windows come and go; a dialog of the system, which would wait for a user, can't be shown.
class HostileHostOfTheProduct : public HostileHost {
protected:
    static void SetUpTestSuite() { load(kPluginFile); }

private:
    const CNoDialogs noDialogs_;
};

TEST_F(HostileHostOfTheProduct, AllAtOnceLeavesNothingBehindAndStateAndSoundAgree) {
    playAndRest(lengthOr(5.0));
}

}  // namespace
}  // namespace tarv::host
