#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Core/CError.h"

namespace tarv {

/// First line of a failure, which it consumes; empty for success.
inline std::string messageOf(CError* error) {
    if (!error) {
        return "";
    }
    const std::string message = (*error->lines().begin())->toUtf8();
    delete error;
    return message;
}

}  // namespace tarv

// NOLINTNEXTLINE: a macro, so that the failing line is the test's.
#define EXPECT_GOOD(expression) EXPECT_EQ(::tarv::messageOf(expression), "")
