#include "Core/CError.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Core/Log.h"
#include "Tests/Core/CoreTestHelp.h"

namespace tarv {
namespace {

std::vector<std::string> linesOf(CError* error) {
    std::vector<std::string> lines;
    for (const CString* line : error->lines()) {
        lines.push_back(line->toUtf8());
    }
    delete error;
    return lines;
}

TEST(CError, ANullErrorAndAnEmptyMessageGiveASingleLocationLine) {
    EXPECT_EQ(linesOf(addErrorLocation(nullptr, "Sources/Core/CFileReader.cpp", 65, "", "")),
              (std::vector<std::string>{"Sources/Core/CFileReader( 65 )"}));
}

TEST(CError, ALocationNamesTheObject) {
    EXPECT_EQ(linesOf(addErrorLocation(nullptr, "Sources/Core/CObject", 432, "ui.main", "")),
              (std::vector<std::string>{"Sources/Core/CObject( 432 ) // ui.main"}));
}

TEST(CError, MessagesLoseTheirIdentifier) {
    struct CCase {
        const char* message;
        const char* expected;
    };
    constexpr CCase kCases[] = {{"@tarvstr_A_b_C Text with %1.", "Text with one."},
                                {"@x", "@x"},
                                {"Plain %2 and %1", "Plain two and one"},
                                {"@id 100%", "100"},
                                {"@id ", ""}};
    for (const CCase& c : kCases) {
        EXPECT_EQ(linesOf(addErrorLocation(nullptr, "f", 1, "", c.message, "one", "two"))[0], c.expected) << c.message;
    }
}

TEST(CError, AnErrorHoldsItsMessageThenTheLocationsInnermostFirst) {
    CError* error = addErrorLocation(nullptr, "Sources/Core/A.cpp", 1, "", "@id Broken.");
    error = addErrorLocation(error, "Sources/Core/B.cpp", 2, "plugin", "");
    error = addErrorLocation(error, "Sources/Audio/C.cpp", 3, "", "");
    EXPECT_EQ(linesOf(error), (std::vector<std::string>{"Broken.", "Sources/Core/A( 1 )",
                                                        "Sources/Core/B( 2 ) // plugin", "Sources/Audio/C( 3 )"}));
}

TEST(CError, AWideArgumentKeepsItsUnits) {
    CError* error = addErrorLocation(nullptr, "f", 1, "", "Unable to open '%1'.", u"\u0141.bin");
    EXPECT_EQ(linesOf(error)[0], "Unable to open '\xc5\x81.bin'.");
}

[[nodiscard]] CError* failing() {
    TARV_FAIL("@id Failed with %1.", "five");
}

[[nodiscard]] CError* passing(bool fail) {
    if (fail) {
        TARV_TRY(failing());
    }
    return nullptr;
}

TEST(CError, TheMacrosAddThisFileAndLine) {
    EXPECT_EQ(passing(false), nullptr);
    const std::vector<std::string> lines = linesOf(passing(true));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Failed with five.");
    EXPECT_TRUE(lines[1].starts_with("Tests/Core/CErrorTest( ")) << lines[1];
    EXPECT_TRUE(lines[2].starts_with("Tests/Core/CErrorTest( ")) << lines[2];
}

TEST(CError, DoesNotLiveInThePoolHeap) {
    const uint64_t before = CHeap::counters().allocations;
    const auto error = std::make_unique<CError>();
    EXPECT_EQ(CHeap::counters().allocations, before);
}

TEST(CError, LoggingWritesEachLineWithTheContextBehindIt) {
    CGatheredLog log;
    logError(nullptr);
    EXPECT_TRUE(log.lines.empty());
    logError(addErrorLocation(nullptr, "Sources/Core/A.cpp", 1, "", "@id Broken."));
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Broken.", "Sources/Core/A( 1 )"}));
    log.lines.clear();
    setLogContext("Brindle XEQ");
    logError(addErrorLocation(nullptr, "Sources/Core/A.cpp", 1, "", ""));
    setLogContext("");
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Sources/Core/A( 1 ) // Brindle XEQ"}));
}

}  // namespace
}  // namespace tarv
