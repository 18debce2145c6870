#include "EditorViews.h"

#include <algorithm>
#include <memory>
#include <typeinfo>

#include "Core/CCreatorRegistry.h"

namespace tarv {

namespace {

const char* const kButton = "ui:button-base";
const char* const kControls[] = {kButton,
                                 "ui:control-array",
                                 "ui:control-surface",
                                 "ui:ruler",
                                 "ui:selector-group",
                                 "ui:selector-oversampling",
                                 "ui:selector-palette",
                                 "ui:selector-scale"};

const char* const kBindings[] = {"ui:min-max",    "ui:ui-param-controller",  "ui:param-group-controller",
                                 "ui:value-list", "ui:dynamic-list-presets", "ui:name-setup"};

/// What the roots of all windows have, but for lists and keyboards.
const CAttributeRow kWindow[] = {{"is-root-view", "true"},
                                 {"is-window-draggable", "true"},
                                 {"image-set", "shared::is.popup"},
                                 {"color", "WindowEdge"},
                                 {"font-name", "shared::font.base"},
                                 {"palette", "Default"},
                                 {"fps", "40"},
                                 {"window-status-path", ".window-status"}};

std::string attributeOr(const CObject& object, const char* name) {
    return object.hasAttr(name) ? object.getAttrString(name).toUtf8() : "-";
}

bool isOwner(const CObject& object) {
    return object.tag() == "ui:control-surface-group" || object.tag() == "ui:ui-param-converter";
}

bool isBinding(const CObject& object) {
    const auto isLike = [&](const char* tag) { return object.tag() == tag; };
    // The other parameters are made by their owners, but for those of a control's activity.
    return isOwner(object) || object.name() == "ui-param-values" ||
           std::any_of(std::begin(kBindings), std::end(kBindings), isLike);
}

size_t bindingsBelow(const CObject& object) {
    size_t count = 0;
    for (const CObject* child : object.children()) {
        // A label of groups makes a list for itself.
        if (child->tag() != "ui:group-label") {
            count += (isBinding(*child) || isOwner(object) ? 1 : 0) + bindingsBelow(*child);
        }
    }
    return count;
}

}  // namespace

const CEditorViews::CEqualizer CEditorViews::kEqualizers[2] = {{"ui.main-window.c.xeq1",
                                                                {{"$path", "ui.main-window.c.xeq1"},
                                                                 {"$other-edit", "ui.groupsel-eq-b"},
                                                                 {"$other-underlay", "ui.groupsel-eq-bu"},
                                                                 {"$edited", "0"},
                                                                 {"$behind", "1"},
                                                                 {"$edit", "ui.groupsel-eq-a"},
                                                                 {"$underlay", "ui.groupsel-eq-au"},
                                                                 {"$n", "1"}}},
                                                               {"ui.main-window.c.xeq2",
                                                                {{"$path", "ui.main-window.c.xeq2"},
                                                                 {"$other-edit", "ui.groupsel-eq-a"},
                                                                 {"$other-underlay", "ui.groupsel-eq-au"},
                                                                 {"$edited", "1"},
                                                                 {"$behind", "0"},
                                                                 {"$edit", "ui.groupsel-eq-b"},
                                                                 {"$underlay", "ui.groupsel-eq-bu"},
                                                                 {"$n", "2"}}}};

void CEditorViews::collect(const CView& view, const std::string& path, bool isInControl,
                           std::vector<std::string>& paths) {
    if (isInControl && view.tag() != kButton) {
        return;
    }
    paths.push_back(path);
    const bool isControl = std::find(std::begin(kControls), std::end(kControls), view.tag()) != std::end(kControls);
    for (const CObject* child : view.children()) {
        if (const auto* below = dynamic_cast<const CView*>(child)) {
            collect(*below, (path.empty() ? "" : path + ".") + below->name().toUtf8(), isControl, paths);
        }
    }
}

std::string CEditorViews::replaced(std::string text, const CReplacements& replacements) {
    for (const auto& [name, value] : replacements) {
        for (size_t at = text.find(name); at != std::string::npos; at = text.find(name)) {
            text.replace(at, name.size(), value);
        }
    }
    return text;
}

void CEditorViews::expectClass(const CObject& object, const std::string& key) {
    const std::unique_ptr<CObject> same(CCreatorRegistry::create(key.c_str()));
    ASSERT_TRUE(same) << key;
    const CObject& other = *same;
    EXPECT_EQ(typeid(object), typeid(other)) << object.fullName().toUtf8() << ' ' << key;
}

void CEditorViews::expectViews(const CView& root, const CViewTreeTable& rows, const CReplacements& replacements) {
    std::vector<std::string> found;
    collect(root, "", false, found);
    std::vector<std::string> expected;
    for (const CViewTreeRow& row : rows) {
        expected.push_back(row.path);
    }
    EXPECT_EQ(found, expected) << root.fullName().toUtf8();
    for (const CViewTreeRow& row : rows) {
        const CObject* object = row.path.empty() ? &root : root.findObject(("." + row.path).c_str());
        ASSERT_TRUE(object) << row.path;
        const std::string name = object->fullName().toUtf8();
        expectClass(*object, row.tag);
        EXPECT_EQ(attributeOr(*object, "placement") + ' ' + attributeOr(*object, "width") + ' ' +
                      attributeOr(*object, "height"),
                  row.place)
            << name;
        EXPECT_EQ(object->getAttrString("hint").toUtf8(), replaced(row.hint, replacements)) << name;
        for (const CAttributeRow& attribute : row.attributes) {
            EXPECT_EQ(attributeOr(*object, attribute.name), replaced(attribute.value, replacements))
                << name << ' ' << attribute.name;
        }
    }
}

void CEditorViews::expectBindings(const CObject& root, const CBoundTable& rows, const CReplacements& replacements) {
    for (const CBoundRow& row : rows) {
        const CObject* object = root.findObject(("." + row.path).c_str());
        ASSERT_TRUE(object) << row.path;
        expectClass(*object, row.tag);
        for (const CAttributeRow& attribute : row.attributes) {
            EXPECT_EQ(attributeOr(*object, attribute.name), replaced(attribute.value, replacements))
                << object->fullName().toUtf8() << ' ' << attribute.name;
        }
    }
    EXPECT_EQ(bindingsBelow(root), rows.size()) << root.fullName().toUtf8();
}

void CEditorViews::expectWindow(const char* templateName, const CViewTreeTable& rows, bool hasHints,
                                const CBoundTable& bindings) {
    const auto editor = makeEditor();
    CObject* ui = editor->findChild("ui");
    CObject* made = nullptr;
    EXPECT_FALSE(ui->createChild(made, templateName, "made", true)) << templateName;
    const auto* window = dynamic_cast<const CView*>(made);
    ASSERT_TRUE(window) << templateName;
    CViewTreeTable all = {rows[0]};
    all[0].attributes.insert(all[0].attributes.end(), std::begin(kWindow), std::end(kWindow));
    const std::string title = "[B]" + window->getAttrString("title").toUtf8() + "[/B]";
    all.push_back({"window-title", "ui:frame", "top 100% 28", "", {{"min-height", "28"}, {"color", "GroupCaption"}}});
    all.push_back({"window-title.label", "ui:textview", "full 100% 100%", "", {{"title", title.c_str()}}});
    all.push_back({"window-title.close", "ui:button-base", "right 24 24", "Closes this window.", {}});
    if (hasHints) {
        // Those of presets are long.
        const bool isLong = rows[0].tag == "ui:preset-manager";
        all.push_back({"window-status", "ui:frame", isLong ? "bottom 100% 36" : "bottom 100% 24", "", {}});
        all.push_back({"window-status.label", "ui:textview", "full 100% 100%", "", {}});
    }
    all.insert(all.end(), rows.begin() + 1, rows.end());
    expectViews(*window, all);
    const CObject* renderer = made->findChild("window-renderer");
    ASSERT_TRUE(renderer) << templateName;
    expectClass(*renderer, "ui:window-renderer");
    expectBindings(*made, bindings);
}

}  // namespace tarv
