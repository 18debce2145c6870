#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <typeinfo>

#include "ProductTree.h"

namespace tarv {

namespace {

bool isPlainByPurpose(const CObject* object) {
    return object->tag() == "core:object" || object->tag() == "template";
}

void expectClasses(const CObject* object) {
    for (const CObject* child : object->children()) {
        const bool isPlain = typeid(*child) == typeid(CObject);
        EXPECT_EQ(isPlain, isPlainByPurpose(child)) << child->fullName().toUtf8() << ' ' << child->tag().toUtf8();
        expectClasses(child);
    }
}

class Creators : public CProductTree {};

TEST_F(Creators, StandInAscendingOrderOfTheirTags) {
    for (int32_t i = 1; i < kCreatorRowCount; ++i) {
        EXPECT_LT(std::strcmp(kCreatorRows[i - 1].tag, kCreatorRows[i].tag), 0) << kCreatorRows[i].tag;
    }
}

TEST_F(Creators, OfEveryTagThatTheTreesUseGiveAClassOfItsOwn) {
    expectClasses(sharedRoot());
    expectClasses(makePlugin());
}

}  // namespace

}  // namespace tarv
