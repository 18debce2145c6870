#include "Audio/VST/CHostTraits.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

TEST(CHostTraitsTest, NamesAreKept) {
    const CHostTraits traits = traitsOfHost(2400, "Some Vendor", "Some Product");
    EXPECT_EQ(traits.vendor, CString("Some Vendor"));
    EXPECT_EQ(traits.product, CString("Some Product"));
}

TEST(CHostTraitsTest, ManyChannelsNeedVersion23AndAnotherProductThanOne) {
    const struct {
        int32_t version;
        const char* product;
        bool isMany;
    } rows[] = {
        {2400, "Any", true},
        {2300, "Any", true},
        {2299, "Any", false},
        {2, "Any", false},
        {2400, "Sony ACID Pro", false},
        {2400, "Sony ACID Pro 6", true},
        {2400, "sony acid pro", true},
        {2400, "", true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(traitsOfHost(row.version, "Any", row.product).isManyChannels, row.isMany)
            << row.version << ' ' << row.product;
    }
}

TEST(CHostTraitsTest, ProductsWithOneWordNeedTheProcessLock) {
    const struct {
        const char* product;
        bool needsLock;
    } rows[] = {{"WaveLab", true}, {"My WaveLab 6", true}, {"Wavelab", false}, {"Wave Lab", false}, {"", false}};
    for (const auto& row : rows) {
        EXPECT_EQ(traitsOfHost(2400, "Any", row.product).needsProcessLock, row.needsLock) << row.product;
    }
}

TEST(CHostTraitsTest, HostsOfOneVendorKeepTheFocus) {
    const struct {
        const char* vendor;
        bool isTaken;
    } rows[] = {{"Steinberg", false}, {"steinberg", true}, {"Steinberg Media", true}, {"Any", true}, {"", true}};
    for (const auto& row : rows) {
        EXPECT_EQ(traitsOfHost(2400, row.vendor, "Any").isFocusTaken, row.isTaken) << row.vendor;
    }
}

TEST(CHostTraitsTest, OneProductTakesEditsOnTheFirstThreadOnly) {
    const struct {
        const char* product;
        bool isFirstOnly;
    } rows[] = {{"Ardour", true}, {"ardour", false}, {"Ardour 7", false}, {"Any", false}, {"", false}};
    for (const auto& row : rows) {
        EXPECT_EQ(traitsOfHost(2400, "Any", row.product).needsEditsOnFirstThread, row.isFirstOnly) << row.product;
    }
}

}  // namespace
}  // namespace tarv
