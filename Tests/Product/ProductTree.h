#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Audio/Instance/CAudioWrapper.h"
#include "Core/CApplication.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Product/CreatorTable.h"
#include "Product/ResourceTable.h"

namespace tarv {

struct CAttributeRow {
    const char* name;
    const char* value;
};

/// An object as the tables list it: all of its attributes, in any order.
struct CObjectRow {
    const char* name;
    const char* tag;
    std::vector<CAttributeRow> attributes;
};

/// An instance with no host around it.
class CHostlessInstance : public CAudioWrapper {
public:
    int32_t hostProcessLevel() override { return 0; }
    bool hostTempo(double&) override { return false; }
    void hostIoChanged() override {}
    void hostParamChanged(int32_t, const CAudioExtParam&) override {}
};

/// The application with the product's own classes and resources.
class CProductTree : public testing::Test {
protected:
    static void SetUpTestSuite() {
        CError* error = CApplication::start(
            {.creators = kCreatorRows, .creatorCount = kCreatorRowCount, .resources = kResourceRows});
        ASSERT_FALSE(error) << error->joined().toUtf8();
    }
    static void TearDownTestSuite() { CApplication::finish(); }
    ~CProductTree() override { delete root_; }

    static const CObject* sharedRoot() { return CApplication::sharedRoot(); }
    static const CObject* shared(const std::string& path) {
        return sharedRoot()->findObject(CString::fromUtf8(path.data(), path.size()));
    }

    /// The tree of one instance; null, with a failed test, if it can't be made.
    const CObject* makePlugin() {
        CError* error = CApplication::initRootObject(root_);
        EXPECT_FALSE(error);
        CObject* plugin = nullptr;
        if (!error) {
            error = root_->createChild(plugin, "plugin", "plugin", true);
            EXPECT_FALSE(error) << error->joined().toUtf8();
        }
        delete error;
        return plugin;
    }

    /// The tree of an open editor, as the library embeds it, of the instance that this makes when first asked for.
    std::unique_ptr<CObject> makeEditor() {
        if (!instance_) {
            instance_ = std::make_unique<CHostlessInstance>();
            CError* error = instance_->init();
            EXPECT_FALSE(error) << error->joined().toUtf8();
            delete error;
        }
        CObject* root = nullptr;
        CError* error = CApplication::initRootObject(root);
        EXPECT_FALSE(error);
        error = root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(instance_->instanceRoot()));
        EXPECT_FALSE(error);
        error = root->loadFromResource("UserInterface.xml", true);
        EXPECT_FALSE(error) << error->joined().toUtf8();
        delete error;
        return std::unique_ptr<CObject>(root);
    }
    CHostlessInstance& instance() { return *instance_; }

    static void expectObject(const CObject* object, const CObjectRow& row) {
        ASSERT_TRUE(object) << row.name;
        EXPECT_EQ(object->name().toUtf8(), row.name);
        EXPECT_EQ(object->tag().toUtf8(), row.tag) << row.name;
        for (const CAttributeRow& attribute : row.attributes) {
            EXPECT_TRUE(object->hasAttr(attribute.name)) << row.name << ' ' << attribute.name;
            EXPECT_EQ(object->getAttrString(attribute.name).toUtf8(), attribute.value)
                << row.name << ' ' << attribute.name;
        }
        // The object's name and full name are attributes too.
        EXPECT_EQ(object->attributes().size(), row.attributes.size() + 2) << row.name;
    }

private:
    std::unique_ptr<CHostlessInstance> instance_;
    CObject* root_ = nullptr;
};

/// The same with windows in memory and the graphics loaded, as the trees of editors need them.
class CEditorProductTree : public CProductTree {
protected:
    CEditorProductTree() {
        CError* error = CApplication::openEditor();
        EXPECT_FALSE(error);
        delete error;
    }
    ~CEditorProductTree() override { CApplication::closeEditor(); }

    CWindowSystemByHand system_;
};

}  // namespace tarv
