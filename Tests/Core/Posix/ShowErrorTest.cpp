#include <gtest/gtest.h>

#include "Core/CError.h"
#include "Tests/Core/CoreTestHelp.h"

namespace tarv {
namespace {

TEST(ShowError, ShowingNothingSaysThatThereAreNoDetails) {
    CError* none = nullptr;
    testing::internal::CaptureStderr();
    showError(none);
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_NE(shown.find("Tarvelo Application Message"), std::string::npos);
    EXPECT_NE(shown.find("An issue has happened when executing Tarvelo application."), std::string::npos);
    EXPECT_NE(shown.find("<no details>"), std::string::npos);
}

TEST(ShowError, ShowingLogsShowsAndConsumes) {
    CGatheredLog log;
    CError* error = addErrorLocation(nullptr, "Sources/Core/A.cpp", 1, "", "@id Broken.");
    testing::internal::CaptureStderr();
    showError(error);
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_NE(shown.find("Broken.\r\nSources/Core/A( 1 )\r\n"), std::string::npos);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(log.lines.size(), 2u);
}

}  // namespace
}  // namespace tarv
