// Any bytes as a compiled tree: expressions in braces, templates, paths and nesting included. They end in a message or
// in a tree that can be walked and destroyed.

#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Core/CObject.h"
#include "Tests/Fuzz/FuzzTools.h"

using namespace tarv;

namespace {

/// A separator ends a step of a path, and a step with "#-" counts from the last child: such names don't lead back.
bool isFollowed(const CString& name) {
    const int32_t mark = name.indexOf('#');
    const bool isNegative = mark >= 0 && name.substring(mark + 1).startsWith("-");
    return !name.isEmpty() && name.indexOf('.') < 0 && !isNegative;
}

void walk(const CObject& object, int depth) {
    must(depth <= CTreeCursor::kMaxDepth + 1);
    for (const CObject* child : object.children()) {
        must(child->parent() == &object && child->root() == object.root());
        if (isFollowed(child->name()))
            must(object.findChild(child->name()) == child);
        walk(*child, depth + 1);
    }
}

const CCreatorRow kCreators[] = {{"core:object", &createObject<CObject>, &CObject::initClass}};
const CProductTables kTables{kCreators, 1, nullptr, nullptr, nullptr};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    CGlobalData::instance().setFileAccess(false);
    CLocalData::instance().setFileAccess(false);
    mustSucceed(CApplication::start(kTables));
    std::atexit(&CApplication::finish);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CObject* root = nullptr;
    mustSucceed(CApplication::initRootObject(root));
    CTreeCursor cursor{data, data + size};
    if (!isFailure(root->createFromBinary(cursor, true, true, false, false)))
        walk(*root, 0);
    delete root;
    return 0;
}
