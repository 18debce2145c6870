#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "Tests/Architecture/CSourceTree.h"
#include "Tests/TestPaths.h"

namespace tarv {
namespace {

const std::string kDll = "build/windows/BrindleXEQ.dll";
const std::string kTwin = "build/native/BrindleXEQ.so";
const std::string kStereoDll = "build/windows/BrindleXEQ-Stereo.dll";
const std::string kStereoTwin = "build/native/BrindleXEQ-Stereo.so";

std::string bytesOf(const std::string& path) {
    std::ifstream in(std::filesystem::path(kSourceFolder) / path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::set<std::string> matches(const std::string& text, const std::regex& pattern) {
    std::set<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
        found.insert((*it)[1]);
    return found;
}

TEST(Binary, TheDllImportsOnlyLibrariesThatWindowsBrings) {
    static const std::set<std::string> kWindows = {"KERNEL32.dll", "msvcrt.dll", "USER32.dll",   "GDI32.dll",
                                                   "SHELL32.dll",  "ole32.dll",  "ADVAPI32.dll", "comdlg32.dll"};
    int state = 0;
    const std::string dump = runCommand("x86_64-w64-mingw32-objdump -p " + kDll, state);
    ASSERT_EQ(state, 0) << dump;
    const auto imports = matches(dump, std::regex(R"(DLL Name: (\S+))"));
    EXPECT_FALSE(imports.empty());
    for (const std::string& name : imports)
        EXPECT_TRUE(kWindows.count(name)) << name;
}

TEST(Binary, TheDllExportsItsTwoEntryPointsAtOneAddressAndNothingElse) {
    int state = 0;
    const std::string dump = runCommand("x86_64-w64-mingw32-objdump -p " + kDll, state);
    ASSERT_EQ(state, 0) << dump;
    const std::string names = dump.substr(std::min(dump.find("[Ordinal/Name Pointer] Table"), dump.size()));
    const std::string table = names.substr(0, names.find("\n\n"));
    EXPECT_EQ(matches(table, std::regex(R"(\[ *\d+\] (\w+))")), (std::set<std::string>{"VSTPluginMain", "main"}));
    const auto addresses = matches(dump, std::regex(R"(\[\s*\d+\] \+base\[\s*\d+\] ([0-9a-f]+) Export RVA)"));
    EXPECT_EQ(addresses.size(), 1u);
}

TEST(Binary, TheNativeTwinHasTheSameExports) {
    int state = 0;
    const std::string dump = runCommand("nm -D --defined-only " + kTwin, state);
    ASSERT_EQ(state, 0) << dump;
    EXPECT_EQ(matches(dump, std::regex(R"([0-9a-f]+ T (\w+))")), (std::set<std::string>{"VSTPluginMain", "main"}));
}

// A host without a display has none of the libraries that windows need.
TEST(Binary, TheNativeTwinNeedsNoLibraryOfTheWindowSystem) {
    int state = 0;
    const std::string dump = runCommand("objdump -p " + kTwin, state);
    ASSERT_EQ(state, 0) << dump;
    const auto needed = matches(dump, std::regex(R"(NEEDED +(\S+))"));
    EXPECT_TRUE(needed.count("libc.so.6"));
    for (const std::string& name : needed)
        EXPECT_FALSE(name.find("xcb") != std::string::npos || name.find("X11") != std::string::npos ||
                     name.find("xkb") != std::string::npos)
            << name;
}

TEST(Binary, BesideTheDllLieTheLicencesOfWhatIsInIt) {
    for (const char* name : {"gcc-runtime", "inter", "mingw-w64-runtime", "winpthreads", "zlib"}) {
        const std::string file = std::string("licences/") + name + ".txt";
        EXPECT_GT(bytesOf("Docs/" + file).size(), 500u) << name;
        EXPECT_EQ(bytesOf("build/windows/" + file), bytesOf("Docs/" + file)) << name;
    }
    // The faces' own notice goes with what was drawn from them.
    EXPECT_NE(bytesOf("build/windows/licences/inter.txt").find("Open Font License (OFL)"), std::string::npos);
}

TEST(Binary, TheStereoFaceIsTheSameFileUnderAnotherName) {
    // So exports, imports and licences are those of the full one.
    ASSERT_GT(bytesOf(kDll).size(), 100000u);
    EXPECT_EQ(bytesOf(kStereoDll), bytesOf(kDll));
    ASSERT_GT(bytesOf(kTwin).size(), 100000u);
    EXPECT_EQ(bytesOf(kStereoTwin), bytesOf(kTwin));
}

TEST(Binary, NoPathOfThisMachineIsInABinary) {
    const std::string top = kSourceFolder;
    for (const std::string& path : {kDll, kTwin}) {
        const std::string bytes = bytesOf(path);
        ASSERT_GT(bytes.size(), 100000u) << path;
        EXPECT_EQ(bytes.find(top), std::string::npos) << path << " holds " << bytes.substr(bytes.find(top), 120);
    }
}

}  // namespace
}  // namespace tarv
