#pragma once

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Core/CHeap.h"
#include "Core/CObjectWatch.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Platform/Keyboard.h"
#include "Tests/Audio/Parameters/CountedNew.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"
#include "Tests/Product/ProductTree.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Views/CView.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

using CTexts = std::vector<std::pair<std::string, std::string>>;

/// Notes events as "sender event", and keeps the parameters of the last one (`test:heard`). Follows attributes by its
/// own attribute `change`.
class CHeardEvents : public CObject {
public:
    static inline std::vector<std::string> heard;
    static inline CAttributeMap last;
    static inline std::function<void(const std::string&)> onEvent;
    static inline std::function<void()> onChange;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CHeardEvents::receive>("receive");
        descriptor.addHandler<&CHeardEvents::changed>("change");
        return nullptr;
    }
    /// Since the last time.
    static std::string take() {
        std::string all;
        for (const std::string& line : heard) {
            all += (all.empty() ? "" : ", ") + line;
        }
        heard.clear();
        return all;
    }

private:
    [[nodiscard]] CError* changed() {
        if (onChange) {
            onChange();
        }
        return nullptr;
    }
    [[nodiscard]] CError* receive(CAttributeMap& params) {
        const std::string sender = params["sender"].asString().toUtf8();
        heard.push_back(sender.substr(sender.rfind('.') + 1) + " " + params["event-name"].asString().toUtf8());
        last = params;
        if (onEvent) {
            onEvent(heard.back());
        }
        return nullptr;
    }
};

/// The library's classes, templates and graphics, its engine, and a window `ui.w` of 400 x 300 pixels in a host's
/// window in memory, for the controls of a test. The engine's values arrive with the window's turns.
class CControlEditor : public CProductTree {
protected:
    /// Of the library and of the tests.
    static void SetUpTestSuite() {
        static const std::vector<CCreatorRow> rows = [] {
            std::vector<CCreatorRow> all(kCreatorRows, kCreatorRows + kCreatorRowCount);
            all.push_back({"test:heard", &createObject<CHeardEvents>, &CHeardEvents::initClass});
            return all;
        }();
        ASSERT_EQ(consumed(CApplication::start({.creators = rows.data(),
                                                .creatorCount = static_cast<int32_t>(rows.size()),
                                                .resources = kResourceRows})),
                  "");
    }
    CControlEditor() {
        CHeardEvents::heard.clear();
        CHeardEvents::onEvent = {};
        CHeardEvents::onChange = {};
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
        const CWindowHandle host = system_.desktop().openHost({100, 100, 700, 500});
        editor_ = makeEditor();
        EXPECT_EQ(consumed(editor_->setAttribute("ParentWindow",
                                                 CAttributeValue::fromPointer(reinterpret_cast<void*>(host)))),
                  "");
        if (!editor_->findObject("ui.window-shared-data")) {
            load("", {{"ui:window-shared-data", "window-shared-data"}});
        }
        load("", {{"test:heard", "heard"}});
        system_.pump();
    }
    ~CControlEditor() override {
        editor_.reset();
        CApplication::closeEditor();
    }

    /// A bridge `ui.NAME` to a parameter below `plugin.modMain`.
    void addBridge(const std::string& name, const std::string& param) {
        load("", {{"ui:param-bridge",
                   name,
                   {{"interface-client", "ui.interface-client"}, {"param", "plugin.modMain." + param}}}});
        system_.pump();
    }
    /// Objects of classes below `ui.PATH`; empty: below `ui`.
    void load(const std::string& path, const std::vector<CTestNode>& nodes) { ASSERT_EQ(tryLoad(path, nodes), ""); }
    /// The failure; "" for success.
    std::string tryLoad(const std::string& path, const std::vector<CTestNode>& nodes) {
        std::string failure;
        for (const CTestNode& node : nodes) {
            failure += failure.empty() ? tryAdd(object(path), node) : "";
        }
        return failure.substr(0, failure.find_first_of("\r\n"));
    }
    /// The window, with these objects in it.
    void openWindow(const std::vector<CTestNode>& nodes = {}, CTexts attributes = {}) {
        attributes.insert(attributes.end(), {{"is-root-view", "true"},
                                             {"width", "400"},
                                             {"height", "300"},
                                             {"palette", "Default"},
                                             {"font-name", "shared::font.base"},
                                             {"color", "Panel"}});
        std::vector<CTestNode> children = nodes;
        children.push_back({"ui:window-renderer", "window-renderer", {{"is-plugin-vst", "true"}}});
        load("", {{"ui:view", "w", attributes, children}});
        window_ = editor_->findObjectOf<CWindow>("ui.w.window-renderer");
        ASSERT_TRUE(window_);
        ASSERT_EQ(consumed(window_->open()), "");
        turn();
    }
    /// A view of a template in the window (`parent`: a path below it).
    template <class T = CView>
    T& make(const std::string& tag, const std::string& name, const CTexts& attributes = {},
            const std::string& parent = "w") {
        CAttributeMap map;
        for (const auto& [key, text] : attributes) {
            map[key.c_str()] = CAttributeValue::fromString(text.c_str());
        }
        CObject* made = nullptr;
        EXPECT_EQ(consumed(object(parent).createChild(made, tag.c_str(), name.c_str(), true, &map)), "") << name;
        return dynamic_cast<T&>(*made);
    }

    /// Notes the events of an object.
    void listen(const CObject& sender, const std::vector<const char*>& events) {
        for (const char* event : events) {
            object("heard").listenObject(sender.fullName(), event, "receive");
        }
    }
    static std::string heard() { return CHeardEvents::take(); }

    CObject& object(const std::string& path) {
        CObject* found = editor_->findObject(path.empty() ? "ui" : ("ui." + path).c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    template <class T = CView>
    T& at(const std::string& path) {
        return dynamic_cast<T&>(object("w." + path));
    }
    static void set(CObject& object, const char* name, const char* text) {
        EXPECT_EQ(consumed(object.setAttribute(name, CString(text))), "") << name;
    }
    /// What the engine holds of a parameter below `plugin.modMain`.
    double engineValue(const std::string& param, int32_t group = 0, int32_t element = 0) {
        return instance().paramCollector()->findParam(("plugin.modMain." + param).c_str())->value(group, element);
    }
    CParamBridge& bridge(const std::string& name) { return dynamic_cast<CParamBridge&>(object(name)); }
    /// Labels of the history's steps.
    std::string history() {
        std::string all;
        const auto labels = instance().interfaceBase()->getStepLabels();
        for (int32_t i = 1; i < labels.count(); ++i) {  // the first one is where the history begins
            all += (all.empty() ? "" : ", ") + labels[i].toUtf8();
        }
        return all;
    }

    /// A tick, and what waits for this thread.
    void turn(double seconds = 0.05) { system_.advance(seconds); }
    void pointAt(const CView& view) { pointAt(view, view.visibleRect().width / 2.0, view.visibleRect().height / 2.0); }
    void pointAt(const CView& view, double x, double y) {
        system_.input().moveIn(window_->handle(), static_cast<int32_t>(view.visibleRect().x + x),
                               static_cast<int32_t>(view.visibleRect().y + y));
    }
    void click(const CView& view, CPointerButton button = CPointerButton::Left) {
        pointAt(view);
        system_.input().click(button);
        turn();
    }
    bool tap(int32_t key, const std::u16string& characters = {}) {
        const bool isTaken = system_.input().tap(key, characters);
        turn();
        return isTaken;
    }

    /// The window gets the keys, as a host with focus in the editor sends them.
    void takeKeys() {
        EXPECT_EQ(consumed(editor_->setAttribute("IsFocusTaken", CAttributeValue::fromBool(true))), "");
        system_.input().moveIn(window_->handle(), 399, 299);
        system_.input().click();
    }
    /// Allocations of both heaps while something happens that has happened before, so that all rooms are made.
    template <class Work>
    static uint64_t allocations(Work&& work) {
        for (int32_t i = 0; i < 3; ++i) {
            work();
        }
        const uint64_t before = newCounters().news + CHeap::counters().allocations;
        work();
        return newCounters().news + CHeap::counters().allocations - before;
    }

    CWindowSystemByHand system_;
    std::unique_ptr<CObject> editor_;
    CWindow* window_ = nullptr;

private:
    static std::string tryAdd(CObject& parent, const CTestNode& node) {
        CObject* child = nullptr;
        if (CError* error = parent.addChild(child, node.tag.c_str(), node.name.c_str(), false)) {
            return consumed(error);
        }
        std::string bytes;
        appendNode(bytes, node);
        const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
        CTreeCursor cursor{data, data + bytes.size()};
        const CObjectWatch watch(*child);
        CError* error = child->createFromBinary(cursor, true, true, false, false);
        if (error && watch.isAlive()) {
            delete child;
        }
        return consumed(error);
    }
};

}  // namespace tarv
