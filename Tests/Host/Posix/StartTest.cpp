// The start of the library at the first call, and its end at the unloading.
#include <cstdlib>
#include <filesystem>

#include "Tests/Host/HostTest.h"

namespace tarv::host {
namespace {

TEST(Start, BelongsToTheFirstCallOfTheEntryAndTheEndToTheUnloading) {
    // The first instance stores defaults that the folder does not have yet.
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
            EXPECT_FALSE(std::filesystem::exists(stored)) << "a host that gets no instance touches none either";
        }
        CVstHost host;
        ASSERT_TRUE(host.open(library.entry()));
        // A library that stayed loaded would remember its writes of the round before, and not store the file again.
        EXPECT_TRUE(std::filesystem::exists(stored)) << round;
        host.close();
    }
}

}  // namespace
}  // namespace tarv::host
