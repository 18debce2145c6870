// What an editor of the product leaves as it is, and what the next one shows again.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

class ProductLife : public ProductWindow {};

TEST_F(ProductLife, OpeningIdlingAndClosingAutomatesNothingAndChangesNoByteOfTheState) {
    const std::string bank = effect.chunk(false);
    const std::string program = effect.chunk(true);
    for (int round = 0; round < 3; ++round) {
        close();
        ASSERT_TRUE(open());
        for (int turn = 0; turn < 50; ++turn) {
            desk.serve();
        }
        // The pointer wanders over it.
        for (int32_t x = 0; x < 640; x += 40) {
            desk.moveTo(parent, x, (x * 5) % 400);
        }
        EXPECT_EQ(effect.chunk(false), bank);
        EXPECT_EQ(effect.chunk(true), program);
    }
    close();
    EXPECT_EQ(heard(), "");
    EXPECT_EQ(effect.chunk(false), bank);
    EXPECT_EQ(effect.chunk(true), program);
}

TEST_F(ProductLife, APressWithoutAMoveChangesNoByteOfTheState) {
    const std::string bank = effect.chunk(false);
    click(column("xeq1", 3));
    expectSame("a press on a bar");
    EXPECT_EQ(heard(), "begin 4, end 4");
    EXPECT_EQ(effect.chunk(false), bank);
}

}  // namespace
}  // namespace tarv::host
