// The start of the library at the first call, and its end at the unloading.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Tests/Host/ChunkBytes.h"
#include "Tests/Host/HostTest.h"

namespace tarv::host {
namespace {

/// A string of one character, as a block holds it.
std::string storedText(char character) {
    return {1, 0, 0, 0, character};
}

TEST(Start, BelongsToTheFirstCallOfTheEntryAndTheEndToTheUnloading) {
    const std::filesystem::path user = std::filesystem::path(std::getenv("TARV_DATA_ROOT")) / "user";
    const std::filesystem::path shared = user / "Tarvelo/Audio Plug-Ins";
    for (const char setting : {'0', '1', '0'}) {
        std::filesystem::remove_all(user);
        std::string error;
        CPluginLibrary library;
        ASSERT_TRUE(library.load(kPluginFile, error)) << error;
        EXPECT_FALSE(std::filesystem::exists(user)) << "loading alone touches no file";
        {
            CVstHost host;
            host.answers.masterVersion = 0;
            EXPECT_FALSE(host.open(library.entry()));
            EXPECT_FALSE(std::filesystem::exists(user)) << "a host that gets no instance touches none either";
        }
        // The user's setting of the anti-denormal noise, of 1e-11, is read anew: that noise is all that sounds in
        // silence.
        std::filesystem::create_directories(shared);
        std::ofstream(shared / "denorm-enable", std::ios::binary) << block("dstr", storedText(setting));
        const auto output =
            render(library.entry(), CSignal<double>(kChannels, std::vector<double>(1000, 0.0)), 48000.0);
        double loudest = 0.0;
        for (const double sample : output[0]) {
            loudest = std::max(loudest, std::abs(sample));
        }
        EXPECT_EQ(loudest > 1e-12, setting == '1') << setting << ": " << loudest;
    }
}

TEST(Start, AnInstanceStoresNothingThatNobodySet) {
    const std::filesystem::path user = std::filesystem::path(std::getenv("TARV_DATA_ROOT")) / "user";
    std::filesystem::remove_all(user);
    std::string error;
    CPluginLibrary library;
    ASSERT_TRUE(library.load(kPluginFile, error)) << error;
    render(library.entry(), CSignal<double>(kChannels, std::vector<double>(100, 0.5)), 48000.0);
    EXPECT_FALSE(std::filesystem::exists(user));
}

}  // namespace
}  // namespace tarv::host
