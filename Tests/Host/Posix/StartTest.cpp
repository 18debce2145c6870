// When the library starts, and that it ends.
#include <cstdlib>
#include <filesystem>

#include "Tests/Host/HostTest.h"

namespace tarv::host {
namespace {

TEST(Start, ComesWithTheFirstCallOfTheEntryAndTheEndWithTheUnloading) {
    // Here the first instance stores defaults that are not there yet.
    const std::filesystem::path stored = std::filesystem::path(std::getenv("TARV_DATA_ROOT")) / "user";
    for (int round = 0; round < 3; ++round) {
        std::filesystem::remove_all(stored);
        std::string error;
        CPluginLibrary library;
        ASSERT_TRUE(library.load(kPluginFile, error)) << error;
        EXPECT_FALSE(std::filesystem::exists(stored)) << "loading alone touches no file";
        {
            CVstHost host;
            host.answers.masterVersion = 0;
            EXPECT_FALSE(host.open(library.entry()));
            EXPECT_FALSE(std::filesystem::exists(stored)) << "nor does a host that gets no instance";
        }
        CVstHost host;
        ASSERT_TRUE(host.open(library.entry()));
        // A library that had stayed would remember what it stored in the round before, and not store it again.
        EXPECT_TRUE(std::filesystem::exists(stored)) << round;
        host.close();
    }
}

}  // namespace
}  // namespace tarv::host
