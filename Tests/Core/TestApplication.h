#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Tests/Core/TreeBuilder.h"

namespace tarv {

/// Text of an error, one line each, and the error's end; "" for success.
inline std::string consumed(CError* error) {
    std::string text = error ? error->joined().toUtf8() : std::string();
    delete error;
    return text;
}

/// A definition as the resource that a product embeds: length, then a compressed block of id 'cxml'.
inline std::string treeResource(const std::vector<CTestNode>& children) {
    std::string tree = compiledTree(children);
    CByteBuffer data;
    data.resize(static_cast<int32_t>(tree.size()));
    std::copy(tree.begin(), tree.end(), data.data());
    CMemoryWriteBuffer block;
    EXPECT_EQ(consumed(block.writeCompressedData(data, 0x6c6d7863)), "");
    block.copyTo(data);
    std::string resource;
    appendText(resource, std::string(reinterpret_cast<const char*>(data.data()), static_cast<size_t>(data.count())));
    return resource;
}

/// An application with creators and a shared tree of the test's own, for the length of its life. It never looks at
/// the user's files.
class CTestApplication {
public:
    explicit CTestApplication(std::vector<CCreatorRow> creators = {}, const std::vector<CTestNode>& shared = {})
        : creators_(std::move(creators)), sharedTree_(treeResource(shared)) {
        rows_[0] = CResourceRow{reinterpret_cast<const unsigned char*>(sharedTree_.data()), "SharedData.xml"};
        CGlobalData::instance().setFileAccess(false);
        CLocalData::instance().setFileAccess(false);
        CProductTables tables{creators_.data(), static_cast<int32_t>(creators_.size()), rows_};
        EXPECT_EQ(consumed(CApplication::start(tables)), "");
    }
    ~CTestApplication() {
        CApplication::finish();
        CGlobalData::instance().reset();
        CLocalData::instance().reset();
    }
    CTestApplication(const CTestApplication&) = delete;
    CTestApplication& operator=(const CTestApplication&) = delete;

    /// A root with these objects below it, all initialised.
    std::unique_ptr<CObject> makeRoot(const std::vector<CTestNode>& children = {}) const {
        CObject* root = nullptr;
        EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
        EXPECT_EQ(consumed(loadTree(*root, children)), "");
        return std::unique_ptr<CObject>(root);
    }

private:
    std::vector<CCreatorRow> creators_;
    std::string sharedTree_;
    CResourceRow rows_[2] = {};
};

}  // namespace tarv
