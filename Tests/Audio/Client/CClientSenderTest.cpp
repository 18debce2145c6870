#include "Audio/Client/CClientSender.h"

#include "Audio/Client/CClientId.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

constexpr uint32_t kClient = 3;

struct CConnectorStub : CAudioInterfaceClientConnector {
    CError* sendToBase(const CByteBuffer& buffer) override {
        sent.push_back(buffer);
        return nullptr;
    }
    int32_t clientId() const override { return kClient; }
    std::vector<CByteBuffer> sent;
};

TEST(ClientSender, IdsComeInTurnUnderTheNumberOfTheClient) {
    CConnectorStub connector;
    CClientSender sender;
    sender.connect(connector);
    EXPECT_EQ(sender.newId(), kClient << 16 | 1);
    EXPECT_EQ(sender.newId(), kClient << 16 | 2);
    sender.disconnect();
    EXPECT_EQ(sender.newId(), 3u);
}

TEST(ClientSender, AfterTheLastNumberTheFirstOneThatIsNotHeldComes) {
    CClientSender sender;
    const CClientId first(sender);
    auto second = std::make_unique<CClientId>(sender);
    const CClientId third(sender);
    EXPECT_EQ(second->value(), 2u);
    for (uint32_t number = 4; number <= 0xffff; ++number) {
        ASSERT_EQ(sender.newId(), number);
    }
    EXPECT_EQ(sender.newId(), 4u) << "0 is the tick's, the others are held";
    second.reset();
    while (sender.newId() != 0xffff) {
    }
    EXPECT_EQ(sender.newId(), 2u);
}

TEST(ClientSender, SendsTheTypeAndTheFields) {
    CConnectorStub connector;
    CClientSender sender;
    sender.connect(connector);
    EXPECT_EQ(consumed(sender.send(kRequestValues, uint32_t{0x30001})), "");
    ASSERT_EQ(connector.sent.size(), 1u);
    const CByteBuffer& bytes = connector.sent[0];
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.end()), (std::vector<uint8_t>{2, 0, 0, 0, 1, 0, 3, 0}));
}

TEST(ClientSender, WithoutAConnectorAMessageFails) {
    CClientSender sender;
    const std::string failure = consumed(sender.send(kImportLabels));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "No client connector defined.");
}

}  // namespace
}  // namespace tarv
