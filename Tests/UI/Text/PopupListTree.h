#pragma once

#include "Tests/UI/Text/EditTree.h"
#include "UI/Text/CPopupList.h"

namespace tarv {

/// A list of presets: two banks of three.
class CTestDynamicList : public CObject, public CDynamicList {
public:
    [[nodiscard]] CError* generateSubList(const CString& parentId, CDynamicListRows& rows) override {
        if (parentId.isEmpty()) {
            rows.add("Session", "s", true);
            rows.add("Plain", "p");
            return nullptr;
        }
        if (parentId == CString("deep")) {
            rows.add("Deeper", "deep", true);
            rows.addPlain("[B]here[/B]", "here");
            rows.check();
            return nullptr;
        }
        if (parentId == CString("two")) {
            rows.add("Session", "s", true);
            rows.add("Deep", "deep", true);
            return nullptr;
        }
        if (!(parentId == CString("s"))) {
            TARV_FAIL("@tarvstr_CTestDynamicList_generateSubList_InvalidListId Invalid list identifier %1.", parentId);
        }
        rows.add("One", "s1");
        rows.add("Two", "s2");
        return nullptr;
    }
};

/// An opener of popup lists in a window.
struct CPopupListTree : CEditTree {
    CPopupListTree() {
        classes.push_back({"test:dynamic", &createObject<CTestDynamicList>, nullptr});
        classes.push_back({"ui:popup-list", &createObject<CPopupList>, &CPopupList::initClass});
        templates.push_back(testTemplate("ui:window-app-popup-list", "test:view",
                                         {{"is-root-view", "true"},
                                          {"is-popup-window", "true"},
                                          {"window-alignment", "{window-alignment}"},
                                          {"font-name", "shared::font.base"},
                                          {"palette", "A"}},
                                         {{"ui:window-renderer", "window-renderer"},
                                          {"ui:popup-list",
                                           "list",
                                           {{"placement", "full"},
                                            {"is-scrollable", "true"},
                                            {"is-text-wrapped", "false"},
                                            {"paragraph-spacing", "2"}}}}));
    }
    static CTestNode row(const std::string& text) {
        return {"core:object", "paragraph", {{"is-paragraph", "true"}, {"title", text}}};
    }
    /// An opener with a value list of three rows, and a receiver beside it.
    void openOpener(std::vector<CTestNode> rows = {}) {
        if (rows.empty()) {
            rows = {row("Zero"),
                    {"core:object",
                     "paragraph",
                     {{"is-paragraph", "true"}},
                     {{"core:object", "content", {{"value", "O"}}},
                      {"core:object", "content", {{"value", "ne"}, {"is-line-break", "true"}}},
                      {"core:object", "content", {{"value", "more"}}}}},
                    row("[B]Two[/B]")};
        }
        open({view("opener", {{"placement", "top"}, {"width", "120"}, {"height", "20"}},
                   {{"core:object", "value-list", {}, std::move(rows)},
                    {"test:dynamic", "presets"},
                    {"core:object", "lines", {{"title", "a\nb\nc\nd"}}}}),
              view("other", {{"placement", "top"}, {"width", "120"}, {"height", "20"}})});
        heard();
    }
    CPopupList* list(const char* name = "window-app-popup-list") const {
        return tree->findObjectOf<CPopupList>(("ui." + std::string(name) + ".list").c_str());
    }
    CWindow& windowOf(const CPopupList& of) const {
        return *dynamic_cast<CWindow*>(of.parent()->findChild("window-renderer"));
    }
    void openList(const CTexts& params = {}) { openPopup("opener", "ui:window-app-popup-list", params); }
    void moveOnto(const CPopupList& of, int32_t index) {
        const CViewRect rect = of.rowRect(index);
        system.input().moveIn(windowOf(of).handle(), static_cast<int32_t>(rect.x) + 2,
                              static_cast<int32_t>(rect.y) + 4);
    }
    void choose(const CPopupList& of, int32_t index) {
        moveOnto(of, index);
        system.input().click();
    }
    static std::string rows(const CPopupList& of) {
        std::string all;
        for (int32_t i = 0; i < of.paragraphCount(); ++i) {
            all += (i > 0 ? "|" : "") + of.paragraphText(i).toUtf8();
        }
        return all;
    }
};

}  // namespace tarv
