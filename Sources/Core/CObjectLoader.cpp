// Compiled trees become objects. A node is: tag, name, template flag; then for a plain node the counted attributes
// (name and value) and the counted children (nodes); for a template definition the tag that it makes and its body, a
// counted run of bytes that is one whole node.

#include <algorithm>

#include "Core/CObject.h"
#include "Core/CObjectWatch.h"
#include "Core/CResourceReader.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

CError* failTruncated() {
    TARV_FAIL("@tarvstr_CObject_createFromBinary_Truncated Compiled tree ends within a node.");
}

}  // namespace

CError* CObject::createFromBinary(CTreeCursor& cursor, bool runInit, bool skipHead, bool skipAttributes,
                                  bool skipChildren) {
    uint32_t isTemplate = 0;
    if ((skipHead && (!cursor.skipText() || !cursor.skipText())) || !cursor.readCount(isTemplate)) {
        TARV_TRY(failTruncated());
    }
    isTemplate_ = isTemplate != 0;
    if (isTemplate_) {
        return readDefinition(cursor);
    }
    TARV_TRY(readAttributes(cursor, skipAttributes));
    if (runInit) {
        TARV_TRY(init());
        TARV_TRY(initChildren());
    }
    if (skipChildren) {
        return nullptr;
    }
    TARV_TRY(readChildren(cursor));
    if (runInit) {
        TARV_TRY(runPendingHandlers());
        TARV_TRY(finishInit());
    }
    return nullptr;
}

CError* CObject::readDefinition(CTreeCursor& cursor) {
    if (definition_) {
        TARV_FAIL("@tarvstr_CObject_createFromBinary_NestedTemplate Body of template '%1' is a template itself.", tag_);
    }
    uint32_t size = 0;
    const uint8_t* body = nullptr;
    if (!cursor.readText(realTag_) || !cursor.readCount(size) || !cursor.readBytes(size, body)) {
        TARV_TRY(failTruncated());
    }
    templateBody_.resize(static_cast<int32_t>(size));
    std::copy(body, body + size, templateBody_.data());
    TARV_TRY(initChildren());
    TARV_TRY(finishInit());
    state_ = CObjectState::Template;
    return nullptr;
}

CError* CObject::readAttributes(CTreeCursor& cursor, bool skip) {
    uint32_t count = 0;
    bool complete = cursor.readCount(count);
    for (uint32_t i = 0; i < count && complete; ++i) {
        CString name;
        CString value;
        if (skip) {
            complete = cursor.skipText() && cursor.skipText();
            continue;
        }
        complete = cursor.readText(name) && cursor.readText(value);
        if (complete) {
            TARV_TRY(addAttribute(name, value, false));
        }
    }
    if (!complete) {
        TARV_TRY(failTruncated());
    }
    return nullptr;
}

CError* CObject::readChildren(CTreeCursor& cursor) {
    uint32_t count = 0;
    if (!cursor.readCount(count)) {
        TARV_TRY(failTruncated());
    }
    if (++cursor.depth > CTreeCursor::kMaxDepth) {
        TARV_FAIL("@tarvstr_CObject_createFromBinary_TooDeep Compiled tree is nested more than %1 levels deep.",
                  CString::fromInt(CTreeCursor::kMaxDepth));
    }
    for (uint32_t i = 0; i < count; ++i) {
        CString tag;
        CString name;
        if (!cursor.readText(tag) || !cursor.readText(name)) {
            TARV_TRY(failTruncated());
        }
        CObject* child = nullptr;
        TARV_TRY(addChild(child, tag, name, false));
        const CObjectWatch watch(*child);
        CError* error = child->createFromBinary(cursor, true, false, false, false);
        if (error && watch.isAlive()) {
            delete child;
        }
        TARV_TRY(error);
        if (watch.isAlive() && child->isTemplate_) {
            templates_[child->name()] = child;
        }
    }
    --cursor.depth;
    return nullptr;
}

CError* CObject::loadFromResource(const CString& resourceName, bool runInit) {
    CResourceReader reader;
    CByteBuffer buffer;
    TARV_TRY(reader.open(resourceName));
    TARV_TRY(reader.readCompressedData(buffer, kTreeBlockId));
    TARV_TRY(reader.close());
    CTreeCursor cursor{buffer.data(), buffer.data() + buffer.count()};
    TARV_TRY(createFromBinary(cursor, runInit, true, false, false));
    return nullptr;
}

}  // namespace tarv
