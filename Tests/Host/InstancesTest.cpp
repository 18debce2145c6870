// Many effects in one process.
#include <thread>

#include "HostTest.h"
#include "ProcessMemory.h"

namespace tarv::host {
namespace {

using InstancesTest = HostTest;

void makeAndRun(vst::EntryProc entry, int count) {
    const auto input = noise<float>(kChannels, 600);
    for (int i = 0; i < count; ++i) {
        CVstHost host;
        ASSERT_TRUE(host.open(entry));
        host.prepare(44100.0, 512, vst::kPrecision32);
        host.setParameter(kOversampling, 0.25f * static_cast<float>(1 + i % 4));
        host.resume();
        host.setParameter(kEqA0 + i % 7, 0.9f);
        process(host, input);
        host.suspend();
    }
}

/// Runs in a separate thread: small blocks that a thread freed count as allocated until the thread ends.
int64_t memoryBehind(vst::EntryProc entry, int count) {
    std::thread([&] { makeAndRun(entry, count); }).join();
    return processMemory();
}

TEST_F(InstancesTest, OfFourHundredTheSecondHalfAddsNoMemory) {
#ifdef TARV_SANITIZED
    GTEST_SKIP() << "a sanitizer keeps freed blocks; it reports leaks itself";
#endif
    const int64_t before = memoryBehind(library->entry(), 200);
    const int64_t after = memoryBehind(library->entry(), 200);
    RecordProperty("bytesBefore", std::to_string(before));
    RecordProperty("bytesAfter", std::to_string(after));
    ASSERT_GT(before, 0);
    EXPECT_LE(after, before);
}

TEST_F(InstancesTest, TwoInstancesDoNotAffectEachOther) {
    const auto input = noise<double>(kChannels, 4000);
    const std::vector<CChange> loud = {{-1, kEqA0 + 3, 1.0f}, {1000, kOutGainA, 1.0f}};
    const auto expectedLoud = render(library->entry(), input, 44100.0, {}, loud);
    const auto expectedFlat = render(library->entry(), input, 96000.0);
    CVstHost first;
    ASSERT_TRUE(first.open(library->entry()));
    first.prepare(44100.0, 512, vst::kPrecision64);
    first.setParameter(kEqA0 + 3, 1.0f);
    CVstHost second;
    ASSERT_TRUE(second.open(library->entry()));
    second.prepare(96000.0, 512, vst::kPrecision64);
    EXPECT_NEAR(second.parameter(kEqA0 + 3), 0.5f, 1e-7);
    first.resume();
    second.resume();
    CSignal<double> outFirst(kChannels), outSecond(kChannels);
    for (int32_t done = 0; done < 4000; done += 500) {
        if (done == 1000) {
            first.setParameter(kOutGainA, 1.0f);
        }
        CSignal<double> part;
        for (const auto& channel : input) {
            part.emplace_back(channel.begin() + done, channel.begin() + done + 500);
        }
        const auto a = process(first, part);
        const auto b = process(second, part);
        for (int c = 0; c < kChannels; ++c) {
            outFirst[c].insert(outFirst[c].end(), a[c].begin(), a[c].end());
            outSecond[c].insert(outSecond[c].end(), b[c].begin(), b[c].end());
        }
    }
    EXPECT_TRUE(sameBits(outFirst, expectedLoud));
    EXPECT_TRUE(sameBits(outSecond, expectedFlat));
}

TEST_F(InstancesTest, SeveralThreadsMayCreateRunAndCloseInstances) {
    const auto input = noise<double>(kChannels, 4000);
    const std::vector<CChange> loud = {{-1, kEqA0 + 3, 1.0f}, {1000, kOutGainA, 1.0f}};
    const auto expectedLoud = render(library->entry(), input, 44100.0, {}, loud);
    const auto expectedFlat = render(library->entry(), input, 96000.0);
    bool isLoudRight = true;
    bool isFlatRight = true;
    std::thread first([&] {
        for (int i = 0; i < 5; ++i) {
            isLoudRight &=
                static_cast<bool>(sameBits(render(library->entry(), input, 44100.0, {}, loud), expectedLoud));
        }
    });
    std::thread second([&] {
        for (int i = 0; i < 5; ++i) {
            isFlatRight &= static_cast<bool>(sameBits(render(library->entry(), input, 96000.0), expectedFlat));
        }
    });
    first.join();
    second.join();
    EXPECT_TRUE(isLoudRight);
    EXPECT_TRUE(isFlatRight);
}

TEST_F(InstancesTest, ClosingOneLeavesTheOtherRunning) {
    const auto input = noise<double>(kChannels, 2000);
    const auto expected = render(library->entry(), input, 44100.0);
    CVstHost stays;
    ASSERT_TRUE(stays.open(library->entry()));
    stays.prepare(44100.0, 512, vst::kPrecision64);
    stays.resume();
    {
        CVstHost goes;
        ASSERT_TRUE(goes.open(library->entry()));
        goes.prepare(44100.0, 512, vst::kPrecision64);
        goes.resume();
        process(goes, input);
    }
    EXPECT_TRUE(sameBits(process(stays, input), expected));
    EXPECT_EQ(stays.text(vst::kEffectGetParamName, kOversampling), "Oversmp");
}

}  // namespace
}  // namespace tarv::host
