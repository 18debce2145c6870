#include "Audio/Filters/CAudioFilterGenArray.h"

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

constexpr const char* kItem = "audio:fltgen-array-item";

class GeneratorArray : public testing::Test {
protected:
    void SetUp() override {
        bypass_ = &tree_.generator("audio:fltgen-bypass", "bypass");
        peak_ = &tree_.generator("audio:fltgen-magnus", "peak", {{"type", "1"}});
        CObject* object = nullptr;
        ASSERT_EQ(tree_.add(tree_.root(), "audio:fltgen-array", "array", {}, object), nullptr);
        array_ = dynamic_cast<CAudioFilterGenArray*>(object);
        ASSERT_NE(array_, nullptr);
    }

    void addItem(const char* path, const char* index) {
        CObject* item = nullptr;
        ASSERT_EQ(tree_.add(array_, kItem, "item", {{"fltgen", path}, {"index", index}}, item), nullptr);
    }

    CFilterTree tree_;
    CAudioFilterGen* bypass_ = nullptr;
    CAudioFilterGen* peak_ = nullptr;
    CAudioFilterGenArray* array_ = nullptr;
};

TEST_F(GeneratorArray, GivesTheGeneratorAtAPosition) {
    addItem("bypass", "0");
    addItem("peak", "1");
    ASSERT_EQ(array_->finishInit(), nullptr);
    EXPECT_EQ(array_->count(), 2);
    EXPECT_EQ(array_->at(0), bypass_);
    EXPECT_EQ(array_->at(1), peak_);
}

TEST_F(GeneratorArray, GrowsAsNeededAndLeavesHoles) {
    addItem("peak", "5");
    addItem("bypass", "2");
    ASSERT_EQ(array_->finishInit(), nullptr);
    EXPECT_EQ(array_->count(), 6);
    for (int32_t i : {0, 1, 3, 4}) {
        EXPECT_EQ(array_->at(i), nullptr) << i;
    }
    EXPECT_EQ(array_->at(5), peak_);
    EXPECT_EQ(array_->at(2), bypass_);
}

TEST_F(GeneratorArray, HoldsNothingOutsideItsList) {
    addItem("peak", "0");
    ASSERT_EQ(array_->finishInit(), nullptr);
    for (int32_t i : {-1, 1, 9999, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(array_->at(i), nullptr) << i;
    }
}

TEST_F(GeneratorArray, OfTwoItemsAtOnePositionTheLastStands) {
    addItem("peak", "0");
    addItem("bypass", "0");
    ASSERT_EQ(array_->finishInit(), nullptr);
    EXPECT_EQ(array_->at(0), bypass_);
}

TEST_F(GeneratorArray, AnItemOutsideAnArrayIsReported) {
    EXPECT_EQ(tree_.failure(tree_.root(), kItem, {{"fltgen", "peak"}, {"index", "0"}}).toUtf8(),
              "CAudioFilterGenArray class parent expected.");
}

TEST_F(GeneratorArray, AGeneratorThatIsNotThereIsReported) {
    for (const char* path : {"", "nowhere", "array"}) {
        EXPECT_EQ(tree_.failure(array_, kItem, {{"fltgen", path}, {"index", "0"}}).toUtf8(),
                  "Audio filter generator with the name '" + std::string(path) + "' not found.");
    }
}

TEST_F(GeneratorArray, AnInvalidPositionIsReported) {
    for (const char* index : {"", "-1", "1024", "99999999999", "first"}) {
        EXPECT_EQ(tree_.failure(array_, kItem, {{"fltgen", "peak"}, {"index", index}}).toUtf8(),
                  "Invalid audio filter index '" + std::string(index) + "' specified");
    }
}

}  // namespace
}  // namespace tarv
