// Which instructions the library runs: the one that the switch names, seen from outside. Narrow instructions leave the
// upper halves of the vector registers as they are, and wide functions clear them when they return.

#include <cstdlib>

#include "Tests/Host/HostTest.h"

namespace tarv::host {
namespace {

constexpr int32_t kFrames = 64;

void fillUpperHalf() {
    static const int64_t kOnes[4] = {-1, -1, -1, -1};
    asm volatile("vmovups %0, %%ymm15" : : "m"(kOnes) : "xmm15");
}

/// Whether the upper half is what it was filled with; leaves it empty.
bool isUpperHalfKept() {
    int64_t upper[2] = {};
    asm volatile("vextractf128 $1, %%ymm15, %0\n\tvzeroupper" : "=m"(upper) : : "xmm15");
    return upper[0] == -1 && upper[1] == -1;
}

struct CPlayed {
    CSignal<double> out;
    bool isWide = false;
};

/// A new process as far as the library is concerned: it is loaded for this alone.
CPlayed play(const char* set) {
    _putenv_s("TARV_INSTRUCTION_SET", set);
    CPlayed played;
    CPluginLibrary library;
    std::string error;
    EXPECT_TRUE(library.load(kPluginFile, error)) << error;
    CVstHost host;
    if (!library.entry() || !host.open(library.entry())) {
        ADD_FAILURE() << "no effect";
        return played;
    }
    host.prepare(48000.0, kFrames, vst::kPrecision64);
    host.setParameter(kEqA0, 0.7f);
    host.resume();
    // By then nothing changes any more, and the run is recorded.
    const CSignal<double> input = noise<double>(kChannels, 40 * kFrames);
    process(host, input, {kFrames, false, false, kFrames});
    const CSignal<double> last = noise<double>(kChannels, kFrames);
    fillUpperHalf();
    played.out = process(host, last, {kFrames, false, false, kFrames});
    played.isWide = !isUpperHalfKept();
    _putenv_s("TARV_INSTRUCTION_SET", "");
    return played;
}

TEST(InstructionSetTest, TheLibraryRunsTheOneThatTheSwitchNames) {
    if (!__builtin_cpu_supports("avx2")) {
        GTEST_SKIP() << "this machine has one set alone";
    }
    // What a host does between two blocks leaves the registers alone.
    fillUpperHalf();
    const CSignal<double> copied = noise<double>(kChannels, kFrames);
    EXPECT_TRUE(isUpperHalfKept());

    const CPlayed narrow = play("sse2");
    const CPlayed wide = play("avx2");
    const CPlayed widest = play("");
    EXPECT_FALSE(narrow.isWide);
    EXPECT_TRUE(wide.isWide);
    EXPECT_TRUE(widest.isWide);
    EXPECT_GT(peak(narrow.out[0]), 0.1);
    EXPECT_TRUE(sameBits(narrow.out, wide.out));
    EXPECT_TRUE(sameBits(narrow.out, widest.out));
}

}  // namespace
}  // namespace tarv::host
