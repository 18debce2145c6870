#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "Core/CObjectEventBridge.h"
#include "Core/CSharedAttribute.h"
#include "Platform/Posix/EventQueue.h"
#include "Platform/ThreadId.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {

/// Records each `update` that it receives: the value at that time, and the thread.
class CUpdateListener : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CUpdateListener::receive>("receive");
        return nullptr;
    }
    CError* receive(CAttributeMap& params) {
        values.push_back(root()->findObject(params["sender"].asString())->getAttrString("tablet-mode").toUtf8());
        threads.push_back(currentThreadId());
        if (onUpdate) {
            onUpdate();
        }
        return nullptr;
    }
    std::vector<std::string> values;
    std::vector<uint64_t> threads;
    void (*onUpdate)() = nullptr;
};

/// Editors' trees over the process's two stores, which lie in a folder of the test's own.
class CSettingsTest : public testing::Test {
protected:
    CSettingsTest() {
        std::filesystem::remove_all(folder);
        useRoot(folder);
    }
    ~CSettingsTest() override {
        unsetenv("TARV_DATA_ROOT");
        std::filesystem::remove_all(folder);
    }
    /// The stores begin anew, in this folder, as in another process.
    static void useRoot(const std::string& path) {
        setenv("TARV_DATA_ROOT", path.c_str(), 1);
        CGlobalData::instance().reset();
        CLocalData::instance().reset();
    }
    static CTestNode shared(const std::string& name, std::vector<std::pair<std::string, std::string>> more = {}) {
        CTestNode node{"core:shared-attribute",
                       name,
                       {{"attribute", "tablet-mode"}, {"def-value", "false"}, {"is-global", "true"}}};
        for (const auto& attribute : more) {
            std::erase_if(node.attributes, [&](const auto& known) { return known.first == attribute.first; });
            node.attributes.push_back(attribute);
        }
        return node;
    }
    /// An anchor `ui` with the setting `tablet`, one object that follows it and one that listens for `update`.
    std::unique_ptr<CObject> makeEditor(std::vector<std::pair<std::string, std::string>> more = {}) const {
        auto root = application.makeRoot({{"ui:ui-event-bridge",
                                           "ui",
                                           {},
                                           {shared("tablet", std::move(more)),
                                            {"core:object", "follower", {{"value", "{*/ui.tablet tablet-mode}"}}},
                                            {"test:listener", "listener"}}}});
        root->findObject("ui.listener")->listenObject("ui.tablet", "update", "receive");
        return root;
    }
    static std::string valueOf(const CObject& root) {
        return root.findObject("ui.tablet")->getAttrString("tablet-mode").toUtf8();
    }
    static void change(const CObject& root, const char* value) {
        EXPECT_EQ(consumed(root.findObject("ui.tablet")->setAttribute("tablet-mode", CString(value))), "");
    }
    static CUpdateListener& listener(const CObject& root) { return *root.findObjectOf<CUpdateListener>("ui.listener"); }
    std::string filePath(const std::string& name, bool isGlobal = true) const {
        return folder + "/user/Tarvelo/Audio Plug-Ins/" + (isGlobal ? "" : "Brindle XEQ/") + name;
    }
    void putFile(const std::string& path, const std::string& content) const {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }
    static std::string fileText(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    std::string folder = testing::TempDir() + "tarv-settings";
    CTestApplication application{{
        {"core:object", &createObject<CObject>, nullptr},
        {"core:shared-attribute", &createObject<CSharedAttribute>, &CSharedAttribute::initClass},
        {"test:listener", &createObject<CUpdateListener>, &CUpdateListener::initClass},
        {"ui:ui-event-bridge", &createObject<CStdEventBridge>, nullptr},
    }};
};

}  // namespace tarv
