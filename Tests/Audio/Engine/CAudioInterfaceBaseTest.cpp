#include "Audio/Engine/CAudioInterfaceBase.h"

#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Visuals/CAudioVizCollector.h"
#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

std::vector<CCreatorRow> creators() {
    std::vector<CCreatorRow> rows = paramCreators();
    rows.push_back({"audio:interface-base-connector-vst", &createObject<CAudioInterfaceBaseConnectorVST>, nullptr});
    rows.push_back({"audio:interface-base", &createObject<CAudioInterfaceBase>, nullptr});
    rows.push_back({"audio:viz-collector", &createObject<CAudioVizCollector>, nullptr});
    return rows;
}

/// The objects beside the graph, as the product's tree declares them; `spoilt` names an attribute whose path leads
/// nowhere.
std::vector<CTestNode> children(const std::string& spoilt = {}) {
    std::vector<CTestNode> nodes = {
        {"audio:audio-env", "env", {{"viz-fps", "30.0"}}},
        {"audio:param-collector", "collector", {{"env", "^env"}}},
        {"audio:viz-collector", "viz", {{"env", "^env"}, {"param-collector", "^collector"}}},
        {"audio:interface-base-connector-vst", "connector"},
        {"audio:interface-base",
         "base",
         {{"base-connector", "^connector"},
          {"undo-count-max", "32"},
          {"param-collector", "^collector"},
          {"viz-collector", "^viz"}}},
    };
    for (CTestNode& node : nodes)
        for (auto& attribute : node.attributes)
            if (node.name + '.' + attribute.first == spoilt)
                attribute.second = "nowhere";
    return nodes;
}

std::vector<CTestNode> sharedTree(bool hasSwitch = true) {
    std::vector<CTestNode> audio = {converterTree()};
    if (hasSwitch)
        audio.push_back(paramNode("param-enable-viz", "enum-enable", "0", "1", "0", {{"is-global", "true"}}));
    return {{"core:object", "audio", {}, audio}};
}

TEST(InterfaceMessages, ATableOfHandlersNeedsEachTypeOnceAndInOrder) {
    struct CRow {
        uint32_t type;
    };
    static constexpr CRow kGood[] = {{3}, {4}, {5}};
    static constexpr CRow kSwapped[] = {{3}, {5}, {4}};
    static constexpr CRow kTwice[] = {{3}, {3}, {5}};
    static_assert(isKeyedByType(kGood, 3, 6));
    EXPECT_FALSE(isKeyedByType(kGood, 3, 7));
    EXPECT_FALSE(isKeyedByType(kGood, 2, 5));
    EXPECT_FALSE(isKeyedByType(kSwapped, 3, 6));
    EXPECT_FALSE(isKeyedByType(kTwice, 3, 6));
}

TEST(InterfaceBase, TheObjectsBesideTheGraphFindEachOther) {
    CTestApplication application(creators(), sharedTree());
    auto root = application.makeRoot(children());
    auto* base = root->findObjectOf<CAudioInterfaceBase>("base");
    EXPECT_EQ(base->undoCountMax(), 32);
    EXPECT_EQ(base->connector(), root->findObject("connector"));
    EXPECT_EQ(base->connector()->base(), base);
    EXPECT_EQ(base->vizCollector(), root->findObject("viz"));
    EXPECT_EQ(base->paramCollector(), root->findObject("collector"));
    EXPECT_FALSE(base->isGoing());
    base->start();
    EXPECT_TRUE(base->isGoing());
    EXPECT_EQ(consumed(base->notify("clear")), "");
    EXPECT_EQ(root->findObjectOf<CAudioEnv>("env")->vizFps(), 30.0);
}

TEST(InterfaceBase, EachMissingObjectFailsWithItsMessage) {
    const struct {
        const char* spoilt;
        const char* message;
    } kBad[] = {
        {"base.base-connector", "No base connector 'nowhere' found."},
        {"base.param-collector", "No parameter collector 'nowhere' found."},
        {"base.viz-collector", "No visual object collector 'nowhere' found."},
        {"viz.env", "No audio environment object 'nowhere' found."},
        {"viz.param-collector", "No parameter collector 'nowhere' found."},
    };
    for (const auto& bad : kBad) {
        CTestApplication application(creators(), sharedTree());
        auto root = application.makeRoot();
        const std::string failure = consumed(loadTree(*root, children(bad.spoilt)));
        EXPECT_EQ(failure.substr(0, failure.find('\r')), bad.message) << bad.spoilt;
    }
}

TEST(VizCollector, TheSwitchIsAParameterThatTheSharedTreeDefines) {
    CTestApplication application(creators(), sharedTree());
    auto root = application.makeRoot(children());
    auto* viz = root->findObjectOf<CAudioVizCollector>("viz");
    auto* collector = root->findObjectOf<CAudioParamCollector>("collector");
    EXPECT_EQ(viz->enableParam(), collector->findParam("audio.param-enable-viz"));
    EXPECT_FALSE(viz->isEnabled());
    viz->enableParam()->setValue(0, 0, 1.0);
    EXPECT_FALSE(viz->isEnabled());
    viz->start();
    EXPECT_TRUE(viz->isEnabled());
    viz->stop();
    EXPECT_FALSE(viz->isEnabled());
}

TEST(VizCollector, WithoutTheDefinitionTheTreeFails) {
    CTestApplication application(creators(), sharedTree(false));
    auto root = application.makeRoot();
    const std::string failure = consumed(loadTree(*root, children()));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "No parameter 'audio.param-enable-viz' definition found.");
}

struct CClientStub : CAudioInterfaceClientEnd {
    CError* onProcessBaseData(CInputStream& stream) override {
        uint32_t word = 0;
        TARV_TRY(stream.readValue(word));
        words.push_back(word);
        return nullptr;
    }
    std::vector<uint32_t> words;
};

CByteBuffer wordBuffer(uint32_t word) {
    CMemoryWriteBuffer stream;
    EXPECT_EQ(consumed(stream.writeValue(word)), "");
    CByteBuffer buffer;
    stream.copyTo(buffer);
    return buffer;
}

TEST(InterfaceBaseConnector, SendsToOneClientOrToAll) {
    CClientStub first, second;  // the connector notifies its clients when it is destroyed
    CAudioInterfaceBaseConnectorVST connector;
    const int32_t firstId = connector.addClient(first);
    connector.addClient(second);
    EXPECT_EQ(consumed(connector.sendToClient(-1, wordBuffer(7))), "");
    EXPECT_EQ(consumed(connector.sendToClient(firstId, wordBuffer(8))), "");
    EXPECT_EQ(first.words, (std::vector<uint32_t>{7, 8}));
    EXPECT_EQ(second.words, (std::vector<uint32_t>{7}));
}

TEST(InterfaceBaseConnector, AClientThatWasRemovedIsNoFailure) {
    CClientStub client;
    CAudioInterfaceBaseConnectorVST connector;
    const int32_t id = connector.addClient(client);
    connector.removeClient(client);
    EXPECT_EQ(connector.clientCount(), 0);
    EXPECT_EQ(consumed(connector.sendToClient(id, wordBuffer(7))), "");
    EXPECT_EQ(consumed(connector.sendToClient(-1, wordBuffer(7))), "");
}

TEST(InterfaceBaseConnector, ANewClientGetsTheLowestNumberThatIsFree) {
    CClientStub clients[4];
    CAudioInterfaceBaseConnectorVST connector;
    for (int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(connector.addClient(clients[i]), i);
    }
    connector.removeClient(clients[1]);
    connector.removeClient(clients[0]);
    EXPECT_EQ(connector.addClient(clients[3]), 0);
    EXPECT_EQ(connector.addClient(clients[0]), 1);
    EXPECT_EQ(connector.addClient(clients[1]), 3);
    EXPECT_EQ(connector.clientCount(), 4);
    connector.removeClient(clients[2]);
    connector.removeClient(clients[2]);
    const CClientList left = connector.clients();
    EXPECT_EQ(std::vector<int32_t>(left.begin(), left.end()), (std::vector<int32_t>{0, 1, 3}));
}

TEST(InterfaceBaseConnector, AFailingClientDoesNotKeepTheMessageFromTheOthers) {
    struct CFailing : CAudioInterfaceClientEnd {
        CError* onProcessBaseData(CInputStream&) override { return addErrorLocation(nullptr, "x", 1, {}, "@x no"); }
    } failing[2];
    CClientStub good;
    CAudioInterfaceBaseConnectorVST connector;
    connector.addClient(failing[0]);
    connector.addClient(good);
    connector.addClient(failing[1]);
    EXPECT_EQ(consumed(connector.sendToClient(-1, wordBuffer(7))).substr(0, 2), "no");
    EXPECT_EQ(good.words, std::vector<uint32_t>{7});
}

TEST(InterfaceBaseConnector, NotifiesItsClientsWhenItIsDestroyed) {
    struct CLeft : CClientStub {
        void onBaseGone() override { ++gone; }
        int gone = 0;
    } client;
    {
        CAudioInterfaceBaseConnectorVST connector;
        connector.addClient(client);
    }
    EXPECT_EQ(client.gone, 1);
}

TEST(InterfaceBaseConnector, MessagesNeedABaseAndATypeOfAClient) {
    CTestApplication application(creators(), sharedTree());
    auto root = application.makeRoot(children());
    auto* connector = root->findObjectOf<CAudioInterfaceBaseConnector>("connector");
    auto send = [&](uint32_t type) {
        const CByteBuffer buffer = wordBuffer(type);
        CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
        const std::string failure = consumed(connector->processClientData(reader));
        return failure.substr(0, failure.find('\r'));
    };
    EXPECT_EQ(send(kImportLabels), "");
    EXPECT_EQ(send(kFirstBaseMessage), "Invalid data type " + std::to_string(kFirstBaseMessage) + ".");
    connector->setBase(nullptr);
    EXPECT_EQ(send(0), "No base object defined.");
}

}  // namespace
}  // namespace tarv
