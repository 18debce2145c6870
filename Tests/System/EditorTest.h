#pragma once

#include <functional>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Core/CApplication.h"
#include "Platform/Posix/EventQueue.h"
#include "Tests/Core/TreeBuilder.h"
#include "Tests/System/MessageTest.h"

namespace tarv {

inline std::string firstLine(CError* error) {
    const std::string text = error ? error->lines()[0]->toUtf8() : std::string();
    delete error;
    return text;
}

struct CChange {
    int32_t group;
    int32_t first;
    int32_t count;
    double value;
    bool isReplacing;
};

struct CParamRecorder : CAudioInterfaceParamListener {
    void onParamChanged(const CAudioParamData& data, int32_t group, int32_t first, int32_t count,
                        bool isReplacing) override {
        changes.push_back({group, first, count, data.value(group, first), isReplacing});
        if (onChange)
            onChange();
    }
    void onParamGone() override { ++gone; }
    std::vector<CChange> changes;
    std::function<void()> onChange;
    int gone = 0;
};

struct CRegistryRecorder : CAudioInterfaceRegistryListener {
    void onRegistryChanged(const CInterfaceRegistryState& state) override { states.push_back(state); }
    void onAlternateChanged(bool isAlternate) override { alternates.push_back(isAlternate); }
    void onDataAcquired(uint32_t request, const CByteBuffer& bytes) override {
        data = bytes;
        requests.push_back(request);
    }
    void onRegistryGone() override { ++gone; }
    std::vector<CInterfaceRegistryState> states;
    std::vector<bool> alternates;
    CByteBuffer data;
    std::vector<uint32_t> requests;
    int gone = 0;
};

/// The objects that an editor needs to exchange messages with an engine.
struct CEditorTree {
    static std::vector<CTestNode> nodes(const char* groupNames = kGroupNamesParam,
                                        const char* baseConnector = "plugin.interface-base-connector",
                                        const char* clientConnector = "ui.connector") {
        return {{"ui:ui-event-bridge",
                 "ui",
                 {},
                 {{"audio:interface-client-connector-vst", "connector", {{"base-connector", baseConnector}}},
                  {"audio:interface-client",
                   "client",
                   {{"client-connector", clientConnector}, {"group-names-param", groupNames}}}}}};
    }
};

/// An editor's tree on this thread, beside the instance.
class CEditorTest : public CMessageTest, protected CEditorTree {
protected:
    CEditorTest() { open(); }

    std::unique_ptr<CObject> makeRoot(bool withPlugin = true) {
        CObject* root = nullptr;
        EXPECT_EQ(firstLine(CApplication::initRootObject(root)), "");
        if (withPlugin) {
            delete root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(instance_->instanceRoot()));
        }
        return std::unique_ptr<CObject>(root);
    }
    void open() {
        editor_ = makeRoot();
        ASSERT_EQ(firstLine(loadTree(*editor_, nodes())), "");
        client_ = editor_->findObjectOf<CAudioInterfaceClient>("ui.client");
        clientConnector_ = editor_->findObjectOf<CAudioInterfaceClientConnectorVST>("ui.connector");
    }

    std::unique_ptr<CObject> editor_;
    CAudioInterfaceClient* client_ = nullptr;
    CAudioInterfaceClientConnectorVST* clientConnector_ = nullptr;
};

}  // namespace tarv
