#include "UI/Controls/Lists/CRoutingLabels.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

using CWhich = CRoutingLabels::CWhich;

CRoutingLabels stereo() {
    CRoutingLabels labels;
    labels.hostInputs = 2;
    for (const char* name : {"L", "R", ""}) {
        labels.inputNames.append(name);
    }
    labels.channels.append({1, 0});
    labels.channels.append({2, 0});
    labels.channels.append({0, 1});
    labels.channels.append({3, 2});
    return labels;
}

TEST(RoutingLabels, NameTheInputsOfAGroup) {
    const CRoutingLabels labels = stereo();
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "L R");
    EXPECT_EQ(labels.label(1, CWhich::All).toUtf8(), "no channels");
    EXPECT_EQ(labels.label(2, CWhich::All).toUtf8(), "IN3") << "an input without a name has its number";
    EXPECT_EQ(labels.label(7, CWhich::All).toUtf8(), "no channels");
}

TEST(RoutingLabels, OfActiveChannelsLeaveOutWhatTheHostLacksAndWhatIsMuted) {
    CRoutingLabels labels = stereo();
    EXPECT_TRUE(labels.isUsed(2, CWhich::All));
    EXPECT_FALSE(labels.isUsed(2, CWhich::Active));
    EXPECT_EQ(labels.label(2, CWhich::Active).toUtf8(), "no channels");
    labels.channels[0].isMuted = true;
    EXPECT_EQ(labels.label(0, CWhich::Active).toUtf8(), "R");
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "L R");
}

TEST(RoutingLabels, OfACodedPairSayMidAndSide) {
    CRoutingLabels labels = stereo();
    labels.channels[0].pair = 1;
    labels.channels[1].pair = 1;
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "M[SUP]LR[/SUP] S[SUP]LR[/SUP]");
    labels.channels[1].group = 1;
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "M[SUP]LR[/SUP]");
    EXPECT_EQ(labels.label(1, CWhich::All).toUtf8(), "S[SUP]LR[/SUP]");
}

TEST(RoutingLabels, OnlyTheFirstTwoChannelsOfAPairAreCoded) {
    CRoutingLabels labels = stereo();
    labels.channels[0].pair = 3;
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "L R") << "one alone is not coded";
    labels.channels[2] = {0, 0, 3};
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "L R") << "a channel that does not exist codes nothing";
    labels.channels[1].pair = 3;
    labels.channels[3] = {1, 0, 3};
    EXPECT_EQ(labels.label(0, CWhich::All).toUtf8(), "M[SUP]LR[/SUP] S[SUP]LR[/SUP] L");
}

}  // namespace
}  // namespace tarv
