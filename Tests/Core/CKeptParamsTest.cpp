#include "Core/CKeptParams.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarv {
namespace {

class COwner : public CObject {
public:
    CAttributeMap kept;
};

void fill(CAttributeMap& params, const char* name, int32_t value) {
    params[name] = CAttributeValue::fromInt(value);
}

TEST(KeptParams, TheSecondTimeTakesNoMemory) {
    COwner owner;
    for (int32_t i = 0; i < 2; ++i) {
        const uint64_t before = CHeap::counters().allocations;
        {
            CKeptParams sent(owner, owner.kept, 2);
            fill(sent.params, "offset", i);
            fill(sent.params, "count", i);
        }
        EXPECT_EQ(CHeap::counters().allocations == before, i == 1);
        EXPECT_EQ(owner.kept["count"].asInt(), i);
    }
}

TEST(KeptParams, ASendInsideASendHasItsOwn) {
    COwner owner;
    {
        CKeptParams outer(owner, owner.kept, 1);
        fill(outer.params, "level", 1);
        {
            CKeptParams inner(owner, owner.kept, 1);
            EXPECT_TRUE(inner.params.empty());
            fill(inner.params, "level", 2);
        }
        EXPECT_EQ(outer.params["level"].asInt(), 1);
    }
    EXPECT_EQ(owner.kept["level"].asInt(), 1);
}

TEST(KeptParams, OutliveTheirOwner) {
    auto owner = std::make_unique<COwner>();
    CKeptParams sent(*owner, owner->kept, 1);
    fill(sent.params, "level", 1);
    owner.reset();
    EXPECT_EQ(sent.params["level"].asInt(), 1);
}

TEST(KeptParams, WhatHandlersHaveAddedIsNotKept) {
    COwner owner;
    {
        CKeptParams sent(owner, owner.kept, 1);
        for (const char* name : {"level", "sender", "event-name", "listener", "listener-id", "listener-proc", "more"}) {
            fill(sent.params, name, 1);
        }
    }
    EXPECT_TRUE(owner.kept.empty());
    CAttributeMap params;
    for (const char* name : {"level", "sender", "event-name", "is-handled"}) {
        fill(params, name, 1);
    }
    CKeptParams::dropAdded(params, [](const CString& name) { return name == CString("level"); });
    EXPECT_EQ(params.size(), 3u);
    EXPECT_EQ(params.count("is-handled"), 0u);
}

}  // namespace
}  // namespace tarv
