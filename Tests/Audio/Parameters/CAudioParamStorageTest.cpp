#include "Audio/Parameters/CAudioParamStorage.h"

#include <cmath>
#include <limits>

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

/// Writes records by the documented layout, field by field.
class CRecord {
public:
    CRecord& text(const char* text) {
        EXPECT_EQ(consumed(bytes_.writeString(text)), "");
        return *this;
    }
    CRecord& words(const std::vector<uint32_t>& values) {
        for (uint32_t value : values)
            EXPECT_EQ(consumed(bytes_.writeValue(value)), "");
        return *this;
    }
    CRecord& reals(const std::vector<double>& values) {
        for (double value : values)
            EXPECT_EQ(consumed(bytes_.writeDouble(value)), "");
        return *this;
    }
    std::string bytes() const {
        CByteBuffer buffer;
        bytes_.copyTo(buffer);
        return std::string(reinterpret_cast<const char*>(buffer.data()), static_cast<size_t>(buffer.count()));
    }

private:
    CMemoryWriteBuffer bytes_;
};

class ParamStorage : public testing::Test {
protected:
    ParamStorage()
        : tree_({paramNode("gains", "real", "-99", "99", "0"),
                 paramNode("names", "text", "", "", "L,R", {{"data-type", "string"}}),
                 paramNode("channels", "text", "", "", "L,R,C,LS,RS,LFE,L,L", {{"data-type", "string"}})}) {}

    std::string load(const char* name, const std::string& bytes, CAudioParamData& data) {
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
        return consumed(CAudioParamStorage::load(reader, tree_.info(name), data));
    }
    std::string save(const char* name, const CAudioParamData& data) {
        CMemoryWriteBuffer stream;
        EXPECT_EQ(consumed(CAudioParamStorage::save(stream, tree_.info(name), data)), "");
        CByteBuffer buffer;
        stream.copyTo(buffer);
        return std::string(reinterpret_cast<const char*>(buffer.data()), static_cast<size_t>(buffer.count()));
    }

    CParamTree tree_;
};

TEST_F(ParamStorage, AFloatRecordHasTheDocumentedLayout) {
    const std::string record =
        CRecord().text("audio.gains").words({1, 1, 0, 2, 2}).reals({1.5, -2}).words({1}).reals({7}).bytes();
    CAudioParamData data;
    ASSERT_EQ(load("gains", record, data), "");
    EXPECT_EQ(data.elementCount(0), 2);
    EXPECT_EQ(data.value(0, 1), -2.0);
    EXPECT_EQ(data.value(1, 0), 7.0);
    EXPECT_EQ(save("gains", data), record);
}

TEST_F(ParamStorage, AStringRecordCarriesItsTextsBeforeTheGroups) {
    const std::string record = CRecord()
                                   .text("audio.names")
                                   .words({1, 1, 1, 1, 2, 1, 1})
                                   .text("left")
                                   .words({2, 1})
                                   .text("right")
                                   .words({2, 1, 2})
                                   .bytes();
    CAudioParamData data;
    ASSERT_EQ(load("names", record, data), "");
    EXPECT_EQ(data.text(0, 0), "left");
    EXPECT_EQ(data.text(0, 1), "right");
    EXPECT_EQ(save("names", data), record);
}

TEST_F(ParamStorage, ATableOfEightNamesStoresEightTextsAndEightIdsEvenIfTwoAreEqual) {
    CAudioParamData data;
    data.resetWithDefaults(tree_.info("channels"), 0);
    CRecord record;
    record.text("audio.channels").words({1, 1, 1, 1, 8});
    const char* const kNames[] = {"L", "R", "C", "LS", "RS", "LFE", "L", "L"};
    for (uint32_t id = 1; id <= 8; ++id)
        record.words({id, 1}).text(kNames[id - 1]);
    EXPECT_EQ(save("channels", data), record.words({8, 1, 2, 3, 4, 5, 6, 7, 8}).bytes());
}

TEST_F(ParamStorage, UnusedTextsAreDroppedAndSharedOnesStayUntilTheirLastUse) {
    const std::string record = CRecord()
                                   .text("audio.names")
                                   .words({1, 1, 1, 1, 2, 7, 1})
                                   .text("both")
                                   .words({9, 1})
                                   .text("none")
                                   .words({2, 7, 7})
                                   .bytes();
    CAudioParamData data;
    ASSERT_EQ(load("names", record, data), "");
    EXPECT_EQ(data.stringCount(), 1);
    data.release(7);
    EXPECT_EQ(data.text(0, 1), "both");
    data.release(7);
    EXPECT_EQ(data.stringCount(), 0);
}

TEST_F(ParamStorage, ARecordWithZeroGroupsRestoresAnEmptyValue) {
    CAudioParamData data;
    data.resetWithDefaults(tree_.info("gains"), 0, 3);
    ASSERT_EQ(load("gains", CRecord().text("audio.gains").words({1, 1, 0, 0}).bytes(), data), "");
    EXPECT_TRUE(data.isValid());
    EXPECT_EQ(data.groupCount(), 0);
}

TEST_F(ParamStorage, OnlyGroupsUpToTheLastThatHoldsValuesAreWritten) {
    CAudioParamData data;
    data.reset(tree_.info("gains"));
    CAudioParamChange change;
    fillChange(change, 1, 0, {4});
    data.apply(change);
    change.count = 0;
    change.group = 3;
    data.apply(change);
    EXPECT_EQ(data.groupCount(), 4);
    EXPECT_EQ(save("gains", data), CRecord().text("audio.gains").words({1, 1, 0, 2, 0, 1}).reals({4}).bytes());
}

TEST_F(ParamStorage, NumbersOutOfRangeAreReadAsWrittenAndClampedOnDemand) {
    CAudioParamData data;
    const double inf = std::numeric_limits<double>::infinity();
    const CAudioParamInfo& info = tree_.info("gains");
    ASSERT_EQ(
        load("gains", CRecord().text("").words({1, 1, 0, 1, 4}).reals({inf, std::nan(""), 0.5, -inf}).bytes(), data),
        "");
    EXPECT_EQ(data.value(0, 0), inf);
    data.clampTo(info);
    EXPECT_EQ(data.value(0, 0), info.maximum(0));
    EXPECT_EQ(data.value(0, 1), data.defaultValue(1));
    EXPECT_EQ(data.value(0, 2), 0.5);
    EXPECT_EQ(data.value(0, 3), info.minimum(0));
}

TEST_F(ParamStorage, BadRecordsFailInWordsAndLeaveTheValueAsItWas) {
    const struct {
        const char* name;
        const char* param;
        std::string bytes;
        const char* message;
    } kBad[] = {
        {"version", "gains", CRecord().text("x").words({2, 1, 0, 0}).bytes(), "Unsupported data set version 2."},
        {"element size", "gains", CRecord().text("x").words({1, 2, 0, 0}).bytes(),
         "Unsupported storage format (esize=2, dtype=0; should be: esize=1, dtype=0)."},
        {"data type", "gains", CRecord().text("x").words({1, 1, 1, 0}).bytes(),
         "Unsupported storage format (esize=1, dtype=1; should be: esize=1, dtype=0)."},
        {"text type", "names", CRecord().text("x").words({1, 1, 1, 0, 1, 1, 5}).text("a").bytes(),
         "Unknown data type 5 encountered"},
        {"unknown text", "names", CRecord().text("x").words({1, 1, 1, 1, 0, 1, 4}).bytes(),
         "Unknown string 4 encountered."},
        {"group count", "gains", CRecord().text("x").words({1, 1, 0, 0xffffffff}).bytes(),
         "Invalid group count 4294967295."},
        {"element count", "gains", CRecord().text("x").words({1, 1, 0, 1, 0x7fffffff}).bytes(),
         "Invalid element count 2147483647."},
        {"cut", "gains", CRecord().text("x").words({1, 1, 0, 1, 2}).reals({1}).bytes(),
         "Premature end of memory resource"},
        {"cut in the texts", "names", CRecord().text("x").words({1, 1, 1, 1, 0xffffffff, 1, 1}).text("a").bytes(),
         "Premature end of memory resource"},
    };
    for (const auto& bad : kBad) {
        CAudioParamData data;
        data.resetWithDefaults(tree_.info(bad.param), 0, 2);
        const std::string before = save(bad.param, data);
        EXPECT_EQ(load(bad.param, bad.bytes, data).substr(0, std::string(bad.message).size()), bad.message) << bad.name;
        EXPECT_EQ(save(bad.param, data), before) << bad.name;
    }
}

TEST_F(ParamStorage, EveryCutOfARecordFails) {
    const std::string record =
        CRecord().text("audio.names").words({1, 1, 1, 1, 1, 1, 1}).text("left").words({1, 1}).bytes();
    CAudioParamData data;
    for (size_t length = 0; length < record.size(); ++length)
        EXPECT_NE(load("names", record.substr(0, length), data), "") << length;
    EXPECT_EQ(load("names", record, data), "");
}

TEST_F(ParamStorage, TextsAreRenumberedFromOneInTheOrderOfTheirElements) {
    const std::string scattered = CRecord()
                                      .text("audio.names")
                                      .words({1, 1, 1, 2, 3, 40, 1})
                                      .text("a")
                                      .words({7, 1})
                                      .text("b")
                                      .words({900, 1})
                                      .text("c")
                                      .words({2, 900, 7, 1, 40})
                                      .bytes();
    CAudioParamData data;
    ASSERT_EQ(load("names", scattered, data), "");
    EXPECT_EQ(save("names", data), CRecord()
                                       .text("audio.names")
                                       .words({1, 1, 1, 2, 3, 1, 1})
                                       .text("c")
                                       .words({2, 1})
                                       .text("b")
                                       .words({3, 1})
                                       .text("a")
                                       .words({2, 1, 2, 1, 3})
                                       .bytes());
}

TEST_F(ParamStorage, OnlyAnotherVersionOrFormatIsForeign) {
    const struct {
        const char* name;
        std::string bytes;
        bool isForeign;
    } kRecords[] = {
        {"version", CRecord().text("x").words({2}).bytes(), true},
        {"element size", CRecord().text("x").words({1, 2, 0, 0}).bytes(), true},
        {"data type", CRecord().text("x").words({1, 1, 1, 0}).bytes(), true},
        {"cut", CRecord().text("x").words({1, 1}).bytes(), false},
        {"group count", CRecord().text("x").words({1, 1, 0, 0xffffffff}).bytes(), false},
        {"good", CRecord().text("x").words({1, 1, 0, 0}).bytes(), false},
    };
    for (const auto& row : kRecords) {
        CAudioParamData data;
        bool isForeign = !row.isForeign;
        CMemoryReader reader(row.bytes.data(), static_cast<uint32_t>(row.bytes.size()));
        const std::string failure =
            consumed(CAudioParamStorage::load(reader, tree_.info("gains"), data, nullptr, &isForeign));
        EXPECT_EQ(isForeign, row.isForeign) << row.name;
        EXPECT_EQ(failure.empty(), std::string(row.name) == "good") << row.name;
    }
}

}  // namespace
}  // namespace tarv
