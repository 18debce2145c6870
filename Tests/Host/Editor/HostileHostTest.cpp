// Everything at once, in an order that no manual shows: input, automation in each block, state, openings.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

#include "Tests/Host/Editor/CHeapWatch.h"
#include "Tests/Host/Editor/HostEditorTest.h"

namespace tarv::host {
namespace {

constexpr int32_t kFrames = 512;
constexpr double kRate = 48000.0;
// What the system keeps of a kind of window that it sees for the first time, a list, a field, a file dialog, it keeps
// once. One that each opening left behind would be a hundred in the short form, and ten thousand in the long one.
constexpr int64_t kKeptOnce = 16;
constexpr double kLongSeconds = 600.0;
// In the second half of the long form. A step that left 16 bytes behind would make it more.
constexpr int64_t kRiseOfMemory = 1 << 20;

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

constexpr int32_t kOversampling = 17;
/// Blocks behind a change of the layout that build what it needs.
constexpr int32_t kBlocksToCalm = 8;

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
    /// From now on nothing changes the layout: a block calls the heap no more. Or, by false, it may again.
    void setCalm(bool isCalm) { isCalm_ = isCalm; }
    int64_t calmBlocks() const { return calmBlocks_; }
    int64_t heapCalls() const { return heapCalls_; }
    /// Of blocks that may.
    int64_t wildHeapCalls() const { return wildHeapCalls_; }

private:
    void run() {
        int32_t calmAfter = kBlocksToCalm;
        while (!isEnding_) {
            const bool isCalm = isCalm_;
            calmAfter = isCalm ? std::max(calmAfter - 1, 0) : kBlocksToCalm;
            noise_.fill();
            const auto frames = 1 + static_cast<int32_t>(noise_.random() % kFrames);
            automate(isCalm);
            {
                const CHeapWatch watch;
                host_.process(noise_.inPointers.data(), noise_.outPointers.data(), frames);
                if (calmAfter == 0) {
                    ++calmBlocks_;
                    heapCalls_ += watch.calls();
                } else {
                    wildHeapCalls_ += watch.calls();
                }
            }
            ++blocks_;
            // Somewhat faster than it plays.
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    void automate(bool isCalm) {
        for (int32_t i = 0; i < host_.effect()->numParams; ++i) {
            const float any = std::uniform_real_distribution<float>(0.0f, 1.0f)(noise_.random);
            host_.setParameter(i, isCalm && i == kOversampling ? host_.parameter(i) : any);
        }
    }

    CVstHost& host_;
    CNoise noise_;
    std::atomic<bool> isEnding_ = false;
    std::atomic<bool> isCalm_ = false;
    std::atomic<int64_t> blocks_ = 0;
    std::atomic<int64_t> calmBlocks_ = 0;
    std::atomic<int64_t> heapCalls_ = 0;
    std::atomic<int64_t> wildHeapCalls_ = 0;
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
    static constexpr int32_t kWidth = 640;
    static constexpr int32_t kHeight = 400;

    void SetUp() override {
        HostEditorTest::SetUp();
        CHeapWatch::prepare(*library);
        ASSERT_TRUE(second.open(library->entry()));
        factoryBank = effect.chunk(false);
        desk.destroyParent(parent);
        parent = desk.openParent(kWidth, kHeight);
        otherParent = desk.openParent(kWidth, kHeight);
        // Each of both can be seen beside the other one.
        desk.moveParent(otherParent, 140, 180);
        desk.idle = [this] {
            idle(effect);
            idle(second);
        };
    }
    int32_t any(int32_t count) { return static_cast<int32_t>(random() % static_cast<uint32_t>(count)); }
    /// One step of whoever plays with the host.
    void step() {
        CVstHost& host = any(4) == 0 ? second : effect;
        switch (any(24)) {
            case 0:
                open(host, windowOf(host));
                break;
            case 1:
                close(host);
                break;
            case 2:
                chunks[any(2)] = host.chunk(any(2) == 0);
                break;
            case 3:
                if (const std::string& chunk = chunks[any(2)]; !chunk.empty()) {
                    host.setChunk(chunk, any(2) == 0);
                }
                break;
            case 4:
                host.setProgram(any(20) - 2);
                break;
            default:
                hand();
        }
        desk.serve();
        host.edits.clear();
    }
    void* windowOf(const CVstHost& host) const { return &host == &effect ? parent : otherParent; }
    /// What opens and what hands do; `kept` is a part of the screen that they keep to, empty for all.
    void hand(const CIntRect& kept = {});
    void moveSomewhere(const CIntRect& kept);
    void playCalmly(CAutomation& automation, double seconds);
    int64_t recordMemory(double part);
    void playAndRest(double seconds);
    void rest() {
        desk.release();
        desk.release(true);
        close(effect);
        close(second);
        desk.serve();
        // What the host's windows heard is kept until somebody asks.
        desk.heard(parent);
        desk.heard(otherParent);
    }

    std::mt19937 random{20261122};
    CVstHost second;
    void* otherParent = nullptr;
    std::string chunks[2];
    std::string factoryBank;
};

void HostileHost::hand(const CIntRect& kept) {
    static constexpr char kKeys[] = " \r\x1b\ta5-.k";
    CVstHost& host = any(2) == 0 ? second : effect;
    switch (any(16)) {
        case 0:
            desk.wheel(any(2) == 0 ? 1 : -1);
            break;
        case 1:
            desk.strike(kKeys[any(static_cast<int32_t>(sizeof kKeys) - 1)]);
            break;
        case 2:
            host.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, 1.0f);
            break;
        case 3:
            desk.raise(windowOf(host));
            break;
        case 4:
        case 5:
        case 6:
        case 7:
            desk.press(kept.isEmpty() && any(5) == 0);
            break;
        case 8:
        case 9:
        case 10:
        case 11:
            desk.release(kept.isEmpty() && any(4) == 0);
            break;
        default:
            moveSomewhere(kept);
    }
}

/// Onto a window of an editor, or a little beside it.
void HostileHost::moveSomewhere(const CIntRect& kept) {
    constexpr int32_t kBeside = 10;
    CIntRect at = kept;
    if (at.isEmpty()) {
        std::vector<CIntRect> all = desk.popups();
        all.push_back(desk.place(parent));
        all.push_back(desk.place(otherParent));
        at = all[static_cast<size_t>(any(static_cast<int32_t>(all.size())))];
        at = {at.left - kBeside, at.top - kBeside, at.right + kBeside, at.bottom + kBeside};
    }
    desk.moveOnScreen(at.left + any(at.width()), at.top + any(at.height()));
}

/// Editors open and close and hands drag where nothing changes what the graph is built by: the blocks of the first
/// effect call the heap no more.
void HostileHost::playCalmly(CAutomation& automation, double seconds) {
    using Clock = std::chrono::steady_clock;
    rest();
    automation.setCalm(true);
    const CIntRect place = desk.place(parent);
    // The middle of the left half, with the bars.
    const CIntRect bars{place.left + 60, place.top + 120, place.left + 240, place.top + 280};
    const int64_t begin = automation.blocks();
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < end || automation.blocks() < begin + 4 * kBlocksToCalm) {
        if (any(20) == 0) {
            any(2) == 0 ? static_cast<void>(open(effect, parent)) : close(effect);
        }
        hand(bars);
        desk.serve();
    }
    rest();
    EXPECT_GT(automation.calmBlocks(), 0);
    EXPECT_EQ(automation.wildHeapCalls() > 0, CHeapWatch::kSeesHeap) << "a change of the layout takes memory";
    EXPECT_EQ(automation.heapCalls(), 0) << "in " << automation.calmBlocks() << " blocks";
    automation.setCalm(false);
}

/// With both editors closed, after a part of the time. Presets that hands have stored, and programs that steps of the
/// history keep, are the user's: a bank from the host ends both.
int64_t HostileHost::recordMemory(double part) {
    EXPECT_TRUE(effect.setChunk(factoryBank, false));
    EXPECT_TRUE(second.setChunk(factoryBank, false));
    const int64_t memory = CHostDesk::held().memory;
    const std::string name = std::to_string(part).substr(0, 4);
    RecordProperty("memory-" + name, std::to_string(memory));
    std::cout << "after " << name << " of the time: " << memory << " bytes" << std::endl;
    return memory;
}

/// Plays for so long, and proves that nothing is left behind, and that state and sound agree.
void HostileHost::playAndRest(double seconds) {
    using Clock = std::chrono::steady_clock;
    CHeldThings before;
    std::vector<int64_t> memory;
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
        for (const double part : {0.55, 0.7, 0.85, 1.0}) {
            runFor(part);
            rest();
            memory.push_back(recordMemory(part));
        }
        // Room of the pools settles in the first minutes.
        EXPECT_TRUE(seconds < kLongSeconds || memory.back() < memory.front() + kRiseOfMemory) << steps;
        EXPECT_GT(automation.blocks(), 0);
        EXPECT_GT(other.blocks(), 0);
        playCalmly(automation, seconds / 10.0);
        RecordProperty("blocks", std::to_string(automation.blocks() + other.blocks()));
        RecordProperty("calm-blocks", std::to_string(automation.calmBlocks()));
    }
    EXPECT_TRUE(desk.until([&] { return CHostDesk::held().graphics <= before.graphics + kKeptOnce; }))
        << CHostDesk::held().graphics << " of " << before.graphics << " in " << steps;
    EXPECT_EQ(CHostDesk::held().windows, before.windows);
    EXPECT_EQ(desk.childCount(parent) + desk.childCount(otherParent), 0);
    EXPECT_TRUE(desk.popups().empty());
    RecordProperty("steps", std::to_string(steps));
    RecordProperty("handles", std::to_string(CHostDesk::held().graphics - before.graphics));

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
    return std::getenv("TARV_LONG") ? kLongSeconds : seconds;
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
