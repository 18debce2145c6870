// The printed graph: processes in run order, rates, bindings, links, states, sections.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "CGraphPrinter.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

std::vector<std::string> printedLines(const std::function<void(CGraphPrinter&)>& print) {
    FILE* file = std::tmpfile();
    CGraphPrinter printer(file);
    print(printer);
    std::string text(static_cast<size_t>(std::ftell(file)), ' ');
    std::rewind(file);
    EXPECT_EQ(std::fread(text.data(), 1, text.size(), file), text.size());
    std::fclose(file);
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> printedLines(const CSetup& setup) {
    const auto instance = start(setup);
    return printedLines([&](CGraphPrinter& printer) { printer.print(*instance->mainProcess()); });
}

/// Place of the first line from `from` on that holds the text; the count of lines if there is none.
size_t lineWith(const std::vector<std::string>& lines, const std::string& text, size_t from = 0) {
    while (from < lines.size() && lines[from].find(text) == std::string::npos) {
        ++from;
    }
    return from;
}

TEST(GraphPrinter, ShowsTheProcessesInTheOrderInWhichTheyRun) {
    const auto lines = printedLines({48000.0, 2, straight(2, 2)});
    const char* const kOrder[] = {"plugin.modMain  ",
                                  "plugin.modMain.modInRouter",
                                  "plugin.modMain.modDenorm",
                                  "plugin.modMain.modUpsampler",
                                  "modBrindleXEQ",
                                  "modBandFilter",
                                  "plugin.modMain.modOutGain",
                                  "plugin.modMain.modBypass",
                                  "plugin.modMain.modDownsampler",
                                  "plugin.modMain.modOutRouter"};
    size_t at = 0;
    for (const char* name : kOrder) {
        at = lineWith(lines, name, at);
        ASSERT_LT(at, lines.size()) << name;
    }
}

TEST(GraphPrinter, ShowsRatesBindingsLinksStatesAndSections) {
    CSetup setup{48000.0, 2, straight(2, 2)};
    setup.sets.push_back({kGains, 0, 0, 2.0});
    const auto lines = printedLines(setup);
    const char* const kParts[] = {"48000 Hz", "192000 Hz",
                                  "slot 0 routing = 1 2 0 0 0 0 0 0  (plugin.modMain.io-params.in-routing)", "link ",
                                  "bypass state 11 (denorm-enable): not active",
                                  // The first band's gain, and the sections of a channel.
                                  " = 2  (plugin.modMain.modBrindleXEQ.xeq-gains)", "channel 0 group 0: ", " type "};
    for (const char* part : kParts) {
        EXPECT_LT(lineWith(lines, part), lines.size()) << part;
    }
}

TEST(GraphPrinter, ShowsTheSetOfInstructionsInUse) {
    const auto lines = printedLines([](CGraphPrinter& printer) { printer.printInstructions(); });
    // That of this machine, unless the one who runs the test asks for a narrower one.
    const CInstructionSet set = chosenSet(readProcessorFeatures(), std::getenv("TARV_INSTRUCTION_SET"));
    const char* const kNames[] = {"instructions sse2", "instructions avx2", "instructions avx512"};
    EXPECT_EQ(lines, std::vector<std::string>{kNames[static_cast<int32_t>(set)]});
}

}  // namespace
}  // namespace tarv::engine
