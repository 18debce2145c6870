#include <memory>
#include <typeinfo>

#include "Core/CApplicationData.h"
#include "Core/CGlobalSettings.h"
#include "Core/CObjectEventBridge.h"
#include "Core/CSettingRange.h"
#include "Core/CSharedAttribute.h"
#include "ProductTree.h"

namespace tarv {

namespace {

struct CSettingRow {
    const char* name;
    const char* attribute;
    const char* value;
    bool isGlobal;
    const char* other = "2";  ///< another value that it can take
    CSettingRange range = {};
};

const CSettingRow kSettings[] = {
    {"builtin-refresh", "builtin-refresh", "false", true},
    {"drag-precision", "drag-precision", "0.7", true, "0.35", kPrecisionRange},
    {"mouse-wheel-precision", "mouse-wheel-precision", "0.5", true, "1", kPrecisionRange},
    {"oversampling-level", "oversampling-level", "1", true, "3", kOversamplingRange},
    {"shift-key-precision", "shift-key-precision", "0.5", true, "0.1", kPrecisionRange},
    {"show-knob-labels", "show-knob-labels", "true", true},
    {"show-virtual-keyboard", "show-virtual-keyboard", "true", true},
    {"tablet-mode", "tablet-mode", "false", true},
    {"radial-knob-mode", "radial-knob-mode", "false", true},
    {"ui-color-scheme", "palette-name", "Default", false},
    {"ui-show-hints", "show-hints", "true", false},
    {"ui-scale", "scale", "1.0", false},
};

std::string pathOf(const CSettingRow& row) {
    return std::string(row.isGlobal ? "ui.global-data." : "ui.local-data.") + row.name;
}

CApplicationData& storeOf(const CSettingRow& row) {
    return row.isGlobal ? static_cast<CApplicationData&>(CGlobalData::instance()) : CLocalData::instance();
}

/// Trees of open editors, as the library embeds them.
class SettingsTree : public CEditorProductTree {
protected:
    SettingsTree() {
        CGlobalData::instance().reset();
        CLocalData::instance().reset();
    }
    static CObject* at(const CObject& root, const std::string& path) { return root.findObject(path.c_str()); }
};

TEST_F(SettingsTree, HoldsEverySettingWithItsDefaultAndItsStore) {
    auto editor = makeEditor();
    for (const CSettingRow& row : kSettings) {
        const CObject* object = at(*editor, pathOf(row));
        ASSERT_TRUE(object) << row.name;
        EXPECT_EQ(typeid(*object), typeid(CSharedAttribute)) << row.name;
        EXPECT_EQ(object->getAttrString("attribute").toUtf8(), row.attribute) << row.name;
        EXPECT_EQ(object->getAttrString("def-value").toUtf8(), row.value) << row.name;
        EXPECT_EQ(object->getAttrBool("is-global"), row.isGlobal) << row.name;
        EXPECT_FALSE(object->hasAttr("data-name")) << row.name;
        const CSettingRange& range = static_cast<const CSharedAttribute*>(object)->range();
        EXPECT_EQ(range.minimum, row.range.minimum) << row.name;
        EXPECT_EQ(range.maximum, row.range.maximum) << row.name;
        EXPECT_EQ(range.isInteger, row.range.isInteger) << row.name;
        EXPECT_EQ(object->getAttrString(row.attribute).toUtf8(), row.value) << row.name;
    }
    EXPECT_EQ(at(*editor, "ui.global-data")->children().count(), 9);
    EXPECT_EQ(at(*editor, "ui.local-data")->children().count(), 3);
}

TEST_F(SettingsTree, StandsBelowTheAnchorInOrder) {
    auto editor = makeEditor();
    const CObject* ui = editor->findChild("ui");
    ASSERT_TRUE(dynamic_cast<const CStdEventBridge*>(ui));
    const std::vector<std::pair<std::string, std::string>> kOrder = {
        {"global-data", "core:object"}, {"local-data", "core:object"}, {"global-settings", "core:global-settings"}};
    std::vector<std::pair<std::string, std::string>> found;
    for (const CObject* child : ui->children()) {
        const std::pair<std::string, std::string> entry{child->name().toUtf8(), child->tag().toUtf8()};
        if (std::find(kOrder.begin(), kOrder.end(), entry) != kOrder.end()) {
            found.push_back(entry);
        }
    }
    EXPECT_EQ(found, kOrder);
}

TEST_F(SettingsTree, TheGlobalSettingsFollowTheSharedAttributesOfTheirNames) {
    auto editor = makeEditor();
    const CObject* settings = at(*editor, "ui.global-settings");
    ASSERT_TRUE(dynamic_cast<const CGlobalSettings*>(settings));
    int links = 0;
    for (const CSettingRow& row : kSettings) {
        EXPECT_EQ(settings->hasAttr(row.name), row.isGlobal) << row.name;
        if (row.isGlobal) {
            EXPECT_EQ(settings->getAttrString(row.name).toUtf8(), row.value) << row.name;
            EXPECT_FALSE(at(*editor, pathOf(row))->setAttribute(row.attribute, CString(row.other)));
            EXPECT_EQ(settings->getAttrString(row.name).toUtf8(), row.other) << row.name;
            EXPECT_FALSE(at(*editor, pathOf(row))->setAttribute(row.attribute, CString(row.value)));
            ++links;
        }
    }
    EXPECT_EQ(links, 9);
}

TEST_F(SettingsTree, WhatTheViewsReadComesFromTheStore) {
    CGlobalData::instance().writeText("drag-precision", "0.35");
    CGlobalData::instance().writeText("tablet-mode", "true");
    auto editor = makeEditor();
    EXPECT_EQ(globalSettings().dragPrecision, 0.35);
    EXPECT_TRUE(globalSettings().isTabletMode);
    EXPECT_FALSE(at(*editor, "ui.global-data.drag-precision")->setAttribute("drag-precision", CString("0.7")));
    EXPECT_FALSE(at(*editor, "ui.global-data.tablet-mode")->setAttribute("tablet-mode", CString("false")));
    EXPECT_EQ(globalSettings().dragPrecision, 0.7);
    EXPECT_FALSE(globalSettings().isTabletMode);
}

TEST_F(SettingsTree, EachSettingIsStoredUnderItsNameAndComesBackInTheNextEditor) {
    for (const CSettingRow& row : kSettings) {
        auto editor = makeEditor();
        EXPECT_FALSE(at(*editor, pathOf(row))->setAttribute(row.attribute, CString(row.other)));
        EXPECT_EQ(storeOf(row).readText(row.name, "none").toUtf8(), row.other) << row.name;
        EXPECT_EQ(at(*makeEditor(), pathOf(row))->getAttrString(row.attribute).toUtf8(), row.other) << row.name;
        EXPECT_FALSE(at(*editor, pathOf(row))->setAttribute(row.attribute, CString(row.value)));
    }
}

}  // namespace

}  // namespace tarv
