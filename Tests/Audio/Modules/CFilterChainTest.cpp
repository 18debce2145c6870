#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Modules/CFilterChain.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarv {
namespace {

/// Delivers one section of the type in values[0], with the other values as its numerators.
class CListedGen : public CAudioFilterGen {
public:
    void design(CSectionList& list, double, const double* values, int32_t count) const override {
        restart(list);
        CFilterSection& section = addSection(list, static_cast<int32_t>(values[0]), 1.0, {}, {});
        for (int32_t i = 1; i < count; ++i) {
            section.numerators.append(values[i]);
        }
    }
};

class CFilterChainTest : public testing::Test {
protected:
    CFilterChainTest() : context(makeStandardContext()) {}
    ~CFilterChainTest() override {
        chain->release(*context);
        chain.reset();  // a released chain keeps what the next design needs
        context->flush();
        EXPECT_EQ(context->counters().buffersInUse, 0);
    }
    void design(std::initializer_list<double> values) {
        chain->design(*context, &generator, values.begin(), static_cast<int32_t>(values.size()), 44100.0, chain.get());
    }
    double stateValue(int32_t index) {
        context->flush();
        return context->signal(chain->state(0))[index];
    }

    CListedGen generator;
    std::unique_ptr<CQPLEXContext> context;
    std::unique_ptr<CFilterChain> chain = std::make_unique<CFilterChain>();
};

TEST_F(CFilterChainTest, AFirSectionConvolvesWithItsNumerators) {
    design({21.0, 0.5, -0.25, 2.0});
    ASSERT_NE(chain->fir(0), nullptr);
    EXPECT_EQ(chain->state(0), kNoBuffer);
    const CBufferHandle in = context->takeBuffer(4 * 8);
    std::fill_n(context->signal(in), 4, 0.0);
    context->signal(in)[0] = 1.0;
    const CBufferHandle out = chain->fir(0)->run(in, 4);
    context->flush();
    const double expected[] = {0.5, -0.25, 2.0, 0.0};
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(context->signal(out)[i], expected[i], 1e-15) << i;
    }
    context->releaseReference(in);
    context->releaseReference(out);
}

TEST_F(CFilterChainTest, AnotherTypeInTheFirSectionsPlaceStartsAnew) {
    design({21.0, 1.0});
    design({0.0, 0.1, 0.2});
    EXPECT_EQ(chain->fir(0), nullptr);
    EXPECT_EQ(stateValue(1), 0.2);
    EXPECT_EQ(stateValue(4), 0.0);
}

TEST_F(CFilterChainTest, HistoryIsKeptBySectionsOfOneTypeAndClearedByAnother) {
    design({0.0, 0.1, 0.2});
    context->flush();
    context->signal(chain->state(0))[4] = 7.0;  // as if a signal had run
    design({0.0, 0.3, 0.4});
    EXPECT_EQ(stateValue(0), 0.3);
    EXPECT_EQ(stateValue(4), 7.0);
    design({1.0, 0.3, 0.4});
    EXPECT_EQ(stateValue(4), 0.0);
}

TEST_F(CFilterChainTest, CoefficientsThatASectionLacksAreZero) {
    design({0.0, 0.1});
    EXPECT_EQ(stateValue(0), 0.1);
    EXPECT_EQ(stateValue(1), 0.0);
    EXPECT_EQ(stateValue(3), 0.0);
}

}  // namespace
}  // namespace tarv
