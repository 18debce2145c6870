#include "Tests/UI/Windows/WindowTree.h"

#include "Core/CObjectWatch.h"

namespace tarv {

std::vector<std::string> CFilledView::heard;
std::map<std::string, CFilledView::CAction> CFilledView::actions;
int32_t CFilledView::drawnViews = 0;
std::function<void(CFilledView&, const std::string&)> CFilledView::onEvent;
std::function<void(const CFilledView&)> CFilledView::onGone;
std::vector<std::string> CEventLog::heard;
CAttributeMap CEventLog::last;
std::function<void(const std::string&)> CEventLog::onEvent;

namespace {

std::vector<CCreatorRow> creators(const std::vector<CCreatorRow>& more) {
    std::vector<CCreatorRow> rows = {
        {"core:global-settings", &createObject<CGlobalSettings>, &CGlobalSettings::initClass},
        {"core:object", &createObject<CObject>, nullptr},
        {"core:timer", &createObject<CTimer>, &CTimer::initClass},
        {"test:log", &createObject<CEventLog>, &CEventLog::initClass},
        {"test:view", &createObject<CFilledView>, &CFilledView::initClass},
        {"ui:ui-event-bridge", &createObject<CUIEventBridge>, nullptr},
        {"ui:view-state", &createObject<CViewState>, nullptr},
        {"ui:window-renderer", &createObject<CWindow>, &CWindow::initClass},
        {"ui:window-shared-data", &createObject<CWindowSharedData>, &CWindowSharedData::initClass}};
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

}  // namespace

CFilledView::~CFilledView() {
    if (onGone) {
        onGone(*this);
    }
}

CError* CFilledView::inputEvent(const CString& event, CAttributeMap& eventParams) {
    params = eventParams;
    const std::string text = name().toUtf8() + "." + event.toUtf8();
    heard.push_back(text);
    if (onEvent) {
        const CObjectWatch watch(*this);
        onEvent(*this, event.toUtf8());
        if (!watch.isAlive()) {
            return nullptr;
        }
    }
    const auto action = actions.find(text);
    if (action != actions.end()) {
        const CObjectWatch watch(*this);
        const CAction run = action->second;
        run(*this, eventParams);
        if (!watch.isAlive()) {
            return nullptr;
        }
    }
    return CView::inputEvent(event, eventParams);
}

CError* CFilledView::draw() {
    ++drawCount;
    ++drawnViews;
    if (getAttrBool("is-bad")) {
        TARV_FAIL("@tarvstr_CFilledView_draw_Bad Bad view.");
    }
    if (!getAttrString("fill").isEmpty()) {
        const CIntRect clip = target().clip;
        for (int32_t y = clip.top; y < clip.bottom; ++y) {
            std::fill(target().bitmap->row(y) + clip.left, target().bitmap->row(y) + clip.right,
                      static_cast<uint32_t>(getAttrInt("fill")));
        }
    }
    return nullptr;
}

CError* CEventLog::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CEventLog::receive>("receive");
    return nullptr;
}

CError* CEventLog::receive(CAttributeMap& params) {
    heard.push_back(params["event-name"].asString().toUtf8());
    last = params;
    if (onEvent) {
        onEvent(heard.back());
    }
    return nullptr;
}

CWindowTree::CWindowTree(std::vector<CIntRect> monitors) : system(std::move(monitors)) {
    host = system.desktop().openHost({kHostX, kHostY, kHostX + 400, kHostY + 300});
    CFilledView::heard.clear();
    CFilledView::actions.clear();
    CFilledView::onEvent = {};
    CFilledView::onGone = {};
    CEventLog::heard.clear();
    CEventLog::onEvent = {};
}

CWindowTree::~CWindowTree() {
    close();
    CFilledView::onEvent = {};
    CFilledView::onGone = {};
    application.reset();
}

CTestNode CWindowTree::view(const std::string& name, CTexts attributes, std::vector<CTestNode> children) {
    return {"test:view", name, std::move(attributes), std::move(children)};
}

CTestNode CWindowTree::popup(const std::string& name, int32_t width, int32_t height, CTexts attributes,
                             std::vector<CTestNode> children) {
    attributes.insert(attributes.begin(),
                      {{"is-root-view", "true"}, {"width", std::to_string(width)}, {"height", std::to_string(height)}});
    children.insert(children.begin(), {"ui:window-renderer", "window-renderer"});
    return testTemplate(name, "test:view", std::move(attributes), std::move(children));
}

std::string CWindowTree::tryBuild(std::vector<CTestNode> views, CTexts rootAttributes, CTexts windowAttributes) {
    close();
    application = std::make_unique<CTestApplication>(creators(classes), templates);
    if (hasGraphics) {
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
        isEditorOpen_ = true;
    }
    CObject* root = nullptr;
    EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
    tree.reset(root);
    EXPECT_EQ(consumed(root->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host)))),
              "");
    rootAttributes.insert(rootAttributes.begin(), {{"is-root-view", "true"},
                                                   {"width", "300"},
                                                   {"height", "200"},
                                                   {"is-input", "false"},
                                                   {"is-main-window", "true"}});
    windowAttributes.insert(windowAttributes.begin(), {"is-plugin-vst", "true"});
    views.insert(views.begin(), {"ui:window-renderer", "window-renderer", windowAttributes});
    return consumed(loadTree(*root, {{"ui:ui-event-bridge",
                                      "ui",
                                      {},
                                      {{"core:global-settings", "global-settings"},
                                       {"ui:window-shared-data", "window-shared-data"},
                                       {"test:log", "log"},
                                       view("main-window", rootAttributes, std::move(views))}}}));
}

void CWindowTree::open(std::vector<CTestNode> views, CTexts rootAttributes, CTexts windowAttributes) {
    ASSERT_EQ(tryBuild(std::move(views), std::move(rootAttributes), std::move(windowAttributes)), "");
    ASSERT_EQ(consumed(window().open()), "");
    system.pump();
}

void CWindowTree::close() {
    tree.reset();
    if (isEditorOpen_) {
        CApplication::closeEditor();
        isEditorOpen_ = false;
    }
    application.reset();
}

CFilledView* CWindowTree::find(const std::string& path) const {
    return tree->findObjectOf<CFilledView>(("ui." + path).c_str());
}

CFilledView& CWindowTree::at(const std::string& path) const {
    CFilledView* found = find("main-window." + path);
    EXPECT_TRUE(found) << path;
    return *found;
}

CWindow* CWindowTree::popupWindow(const std::string& name) const {
    return tree->findObjectOf<CWindow>(("ui." + name + ".window-renderer").c_str());
}

void CWindowTree::openPopup(const std::string& opener, const std::string& templateName, const CTexts& texts) {
    CAttributeMap params;
    for (const auto& [name, text] : texts) {
        params[name.c_str()] = CAttributeValue::fromString(text.c_str());
    }
    EXPECT_EQ(consumed(at(opener).openPopup(templateName.c_str(), params)), "");
    system.pump();
}

uint32_t CWindowTree::pixel(int32_t x, int32_t y) {
    CWindowByHand* shown = system.desktop().find(window().handle());
    return shown ? shown->picture().at(x, y) : 0;
}

void CWindowTree::click(int32_t x, int32_t y) {
    moveTo(x, y);
    system.input().click();
}

void CWindowTree::listen(const std::string& sender, const std::string& event) {
    tree->findObject("ui.log")->listenObject(("ui." + sender).c_str(), event.c_str(), "receive");
}

std::string CWindowTree::heard() {
    std::string text;
    for (const std::string& line : CFilledView::heard) {
        text += (text.empty() ? "" : " ") + line;
    }
    CFilledView::heard.clear();
    return text;
}

}  // namespace tarv
