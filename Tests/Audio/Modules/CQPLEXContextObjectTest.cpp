#include "Audio/Modules/CQPLEXContextObject.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

TEST(CQPLEXContextObject, MakesItsContextOnceAtInit) {
    CQPLEXContextObject object;
    EXPECT_EQ(object.context(), nullptr);
    TARV_CONSUME(object.init());
    CQPLEXContext* const context = object.context();
    ASSERT_NE(context, nullptr);
    TARV_CONSUME(object.init());
    EXPECT_EQ(object.context(), context);
    EXPECT_GE(context->findKernel("com.tarvelo.qplex.copy"), 0);
}

}  // namespace
}  // namespace tarv
