#include <typeinfo>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "ProductTree.h"

namespace tarv {

namespace {

class EditorTree : public CEditorProductTree {};

TEST_F(EditorTree, BeginsWithTheEndsOfTheExchange) {
    const auto editor = makeEditor();
    const CObject* ui = editor->findChild("ui");
    ASSERT_TRUE(ui);
    ASSERT_GE(ui->children().count(), 2);
    expectObject(ui->children()[0], {"interface-client-connector",
                                     "audio:interface-client-connector-vst",
                                     {{"base-connector", "plugin.interface-base-connector"}}});
    expectObject(ui->children()[1], {"interface-client",
                                     "audio:interface-client",
                                     {{"client-connector", "ui.interface-client-connector"},
                                      {"group-names-param", "plugin.modMain.io-params.group-names"}}});
    EXPECT_EQ(typeid(*ui->children()[0]), typeid(CAudioInterfaceClientConnectorVST));
    EXPECT_EQ(typeid(*ui->children()[1]), typeid(CAudioInterfaceClient));
}

TEST_F(EditorTree, HasTheEnginesStateOnceTheEventsHaveArrived) {
    auto editor = makeEditor();
    const auto* client = editor->findObjectOf<CAudioInterfaceClient>("ui.interface-client");
    ASSERT_TRUE(client);
    system_.pump();
    EXPECT_EQ(client->engineState().counts.groups, instance().groupCount());
    EXPECT_EQ(client->engineState().registries.count(), 2);
    EXPECT_EQ(client->groupName(7), CString("8"));
    const CAudioInterfaceBaseConnector* connector = instance().interfaceBase()->connector();
    EXPECT_EQ(connector->clients().count(), 1);
    editor.reset();
    EXPECT_EQ(connector->clients().count(), 0);
}

}  // namespace

}  // namespace tarv
