#pragma once

#include <map>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Audio/Parameters/CAudioParamChange.h"
#include "Audio/Parameters/CAudioParamStorage.h"
#include "Core/CObjectEventBridge.h"
#include "Core/CSharedAttribute.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/Audio/Parameters/ParamTree.h"
#include "UI/Binding/CParamBridgeAudio.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Binding/CUIParamUpdateHandler.h"

namespace tarv {

using CTexts = std::vector<std::pair<std::string, std::string>>;

/// A message by which an editor sets values, read.
struct CSetMessage {
    std::string param;
    int32_t group = 0;
    int32_t first = 0;
    std::vector<double> numbers;
    std::vector<std::string> texts;  ///< of `names`
    uint32_t flags = 0;
    std::string label;
    int32_t key = 0;
};

/// The engine's place: notes what is subscribed and set, and answers nothing by itself.
class CFakeEngine final : public CAudioInterfaceClientConnector {
public:
    CError* sendToBase(const CByteBuffer& buffer) override {
        if (isDeaf) {
            return nullptr;
        }
        CMemoryReader stream(buffer.data(), static_cast<uint32_t>(buffer.count()));
        uint32_t type = 0;
        TARV_TRY(stream.readValue(type));
        uint32_t id = 0;
        CString param;
        if (type == kSubscribeParam) {
            TARV_TRY(takeFields(stream, id, param));
            ids[param.toUtf8()] = id;
        } else if (type == kUnsubscribeParam) {
            TARV_TRY(takeFields(stream, id));
            ended.push_back(id);
        } else if (type == kSetValues) {
            TARV_TRY(takeSet(stream));
            if (onSet) {
                onSet();
            }
        }
        return nullptr;
    }
    int32_t clientId() const override { return 1; }

    std::map<std::string, uint32_t> ids;
    std::vector<uint32_t> ended;
    std::vector<CSetMessage> sets;
    std::function<void()> onSet;
    bool isDeaf = false;

private:
    CError* takeSet(CInputStream& stream) {
        CSetMessage set;
        uint32_t id = 0;
        CString param;
        int32_t count = 0;
        TARV_TRY(takeFields(stream, id, param, set.group, set.first, count, set.flags));
        set.param = param.toUtf8();
        for (int32_t i = 0; i < count; ++i) {
            CString text;
            double number = 0.0;
            if (set.param == "p.names") {
                TARV_TRY(takeField(stream, text));
                set.texts.push_back(text.toUtf8());
            } else {
                TARV_TRY(takeField(stream, number));
                set.numbers.push_back(number);
            }
        }
        CString label;
        TARV_TRY(takeMessage(stream, label, set.key));
        set.label = label.toUtf8();
        sets.push_back(set);
        return nullptr;
    }
};

/// A control that writes down what its params call.
class CControlRecorder final : public CObject, public CUIParamUpdateHandler {
public:
    CError* onParamChanged(CUIParam& param) override {
        char text[64];
        snprintf(text, sizeof text, "%s %.4f", param.name().toUtf8().c_str(), param.getValue());
        return note(text);
    }
    CError* onParamActivity(CUIParam& param) override {
        return note(param.name().toUtf8() + (param.isActive() ? " active" : " inactive"));
    }
    CError* onParamRangeChanged(CUIParam& param) override {
        char text[64];
        snprintf(text, sizeof text, "%s in %.1f..%.1f", param.name().toUtf8().c_str(), param.minimum(),
                 param.maximum());
        return note(text);
    }
    int32_t followedElements(const CUIParam&) const override { return followed; }
    void onParamRemoved(CUIParam& param) override { removed().push_back(param.name().toUtf8()); }

    /// The calls since the last time.
    std::vector<std::string> take() { return std::exchange(calls_, {}); }
    static std::vector<std::string>& removed() {
        static std::vector<std::string> names;
        return names;
    }
    std::function<void()> onCall;
    int32_t followed = 1;

private:
    CError* note(const std::string& call) {
        calls_.push_back(call);
        if (const auto handler = onCall) {
            handler();
        }
        return nullptr;
    }
    std::vector<std::string> calls_;
};

/// Counts events and keeps the parameters of the last one.
class CEventRecorder final : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CEventRecorder::take>("take");
        return nullptr;
    }
    CError* take(CAttributeMap& params) {
        last = params;
        names.push_back(params["event-name"].asString().toUtf8());
        return nullptr;
    }
    std::vector<std::string> names;
    CAttributeMap last;
};

inline CTestNode uiParam(const std::string& name, CTexts attributes) {
    return {"ui:ui-param", name, std::move(attributes)};
}

/// An editor's tree with a client, bridges to the parameters `p.gains` (dB), `p.mode` (one group) and `p.names`
/// (texts), a group selector `ui.sel` and a setting `ui.setting`. The test plays the engine.
class CBindingTest : public testing::Test {
protected:
    explicit CBindingTest(const std::vector<CCreatorRow>& more = {})
        : application_(creators(more), {{"core:object", "audio", {}, definitions()}}) {
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
        CControlRecorder::removed().clear();
    }
    ~CBindingTest() override {
        close();
        CApplication::closeEditor();
    }

    /// Failure of loading the editor with these objects at its end; "" for success.
    std::string tryOpen(std::vector<CTestNode> more) {
        close();
        CObject* root = nullptr;
        EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
        tree_.reset(root);
        std::vector<CTestNode> nodes = {
            {"test:engine", "engine"},
            {"audio:interface-client", "client", {{"client-connector", "ui.engine"}}},
            bridge("gains"),
            bridge("mode"),
            bridge("names"),
            {"ui:param-group-selector", "sel", {{"group-index", "1"}}},
            {"core:shared-attribute", "setting", {{"attribute", "amount"}, {"def-value", "0.7"}}},
            {"test:events", "events"}};
        nodes.insert(nodes.end(), more.begin(), more.end());
        const std::string failure = consumed(loadTree(*root, {{"ui:ui-event-bridge", "ui", {}, std::move(nodes)}}));
        if (!failure.empty()) {
            tree_.reset();
            return failure.substr(0, failure.find_first_of("\r\n"));
        }
        engine_ = tree_->findObjectOf<CFakeEngine>("ui.engine");
        client_ = tree_->findObjectOf<CAudioInterfaceClient>("ui.client");
        return "";
    }
    void open(std::vector<CTestNode> more = {}) { ASSERT_EQ(tryOpen(std::move(more)), ""); }
    /// An editor with a control of these params.
    CControlRecorder& openControl(std::vector<CTestNode> params) {
        EXPECT_EQ(tryOpen({{"test:control", "c", {}, std::move(params)}}), "");
        return *tree_->findObjectOf<CControlRecorder>("ui.c");
    }
    void close() {
        tree_.reset();
        engine_ = nullptr;
        client_ = nullptr;
    }
    template <class T>
    T& at(const std::string& path) {
        T* found = tree_->findObjectOf<T>(("ui." + path).c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    CUIParam& param(const std::string& path) { return at<CUIParam>(path); }
    CParamBridge& bridgeAt(const std::string& name) { return at<CParamBridge>(name + "-bridge"); }
    CEventRecorder& events() { return at<CEventRecorder>("events"); }
    static void set(CObject& object, const char* name, const char* text) {
        EXPECT_EQ(consumed(object.setAttribute(name, CString(text))), "") << name;
    }
    static const CAudioParamInfo& info(const std::string& name) {
        return CApplication::sharedRoot()->findObjectOf<CAudioParamDef>(("audio." + name).c_str())->info();
    }

    /// The engine sends the whole value: group by group, real numbers.
    void sendWhole(const std::string& name, const std::vector<std::vector<double>>& groups) {
        CAudioParamData data;
        data.reset(info(name));
        for (size_t group = 0; group < groups.size(); ++group) {
            CAudioParamChange change;
            fillChange(change, static_cast<int32_t>(group), 0, groups[group]);
            data.apply(change);
        }
        sendData(name, data);
    }
    void sendTexts(const std::string& name, const std::vector<std::string>& texts) {
        CAudioParamData data;
        data.reset(info(name));
        CAudioParamData pool;
        CAudioParamChange change;
        change.isString = 1;
        change.sourcePool = &pool;
        change.count = static_cast<int32_t>(texts.size());
        for (const std::string& text : texts) {
            change.values.append(pool.addString(text.c_str()));
        }
        data.apply(change);
        sendData(name, data);
    }
    /// The engine sends elements of a group, which holds `held` of them then.
    void sendPart(const std::string& name, int32_t group, int32_t first, const std::vector<double>& numbers,
                  int32_t held) {
        CMemoryWriteBuffer stream;
        EXPECT_EQ(consumed(putFields(stream, uint32_t{kParamValues}, idOf(name), uint32_t{0},
                                     static_cast<uint32_t>(CValuesForm::Part), group, first,
                                     static_cast<int32_t>(numbers.size()), held, int32_t{1})),
                  "");
        for (const double number : numbers) {
            EXPECT_EQ(consumed(putField(stream, number)), "");
        }
        deliver(stream);
    }
    void sendGroupCount(uint32_t count) {
        CMemoryWriteBuffer stream;
        EXPECT_EQ(consumed(putFields(stream, uint32_t{kGroupCount}, kNoRequest, count)), "");
        deliver(stream);
    }

    CWindowSystemByHand system_;
    CTestApplication application_;
    std::unique_ptr<CObject> tree_;
    CFakeEngine* engine_ = nullptr;
    CAudioInterfaceClient* client_ = nullptr;

private:
    static std::vector<CCreatorRow> creators(const std::vector<CCreatorRow>& more) {
        std::vector<CCreatorRow> rows = paramCreators();
        rows.insert(
            rows.end(),
            {{"audio:interface-client", &createObject<CAudioInterfaceClient>, &CAudioInterfaceClient::initClass},
             {"core:shared-attribute", &createObject<CSharedAttribute>, &CSharedAttribute::initClass},
             {"test:control", &createObject<CControlRecorder>, nullptr},
             {"test:engine", &createObject<CFakeEngine>, &CAudioInterfaceClientConnector::initClass},
             {"test:events", &createObject<CEventRecorder>, &CEventRecorder::initClass},
             {"ui:param-bridge", &createObject<CParamBridgeAudio>, &CParamBridgeAudio::initClass},
             {"ui:param-group-selector", &createObject<CParamGroupSelector>, &CParamGroupSelector::initClass},
             {"ui:ui-event-bridge", &createObject<CStdEventBridge>, nullptr},
             {"ui:ui-param", &createObject<CUIParam>, &CUIParam::initClass}});
        rows.insert(rows.end(), more.begin(), more.end());
        return rows;
    }
    static std::vector<CTestNode> definitions() {
        return {converterTree(), paramNode("gains", "gain", "-12", "12", "0", {{"visual-name", "Gains"}}),
                paramNode("mode", "enum", "0", "5", "2", {{"is-single-group", "true"}}),
                paramNode("names", "text", "", "", "L,R", {{"data-type", "string"}, {"visual-name", "Names"}})};
    }
    static CTestNode bridge(const std::string& name) {
        return {"ui:param-bridge", name + "-bridge", {{"interface-client", "ui.client"}, {"param", "p." + name}}};
    }
    uint32_t idOf(const std::string& name) const { return engine_->ids.at("p." + name); }
    void sendData(const std::string& name, const CAudioParamData& data) {
        CMemoryWriteBuffer stream;
        EXPECT_EQ(consumed(putFields(stream, uint32_t{kParamValues}, idOf(name), uint32_t{0},
                                     static_cast<uint32_t>(CValuesForm::Whole), CString(("audio." + name).c_str()))),
                  "");
        EXPECT_EQ(consumed(CAudioParamStorage::save(stream, info(name), data)), "");
        deliver(stream);
    }
    void deliver(CMemoryWriteBuffer& stream) {
        CByteBuffer bytes;
        stream.copyTo(bytes);
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
        EXPECT_EQ(consumed(client_->processMessage(reader)), "");
    }
};

}  // namespace tarv
