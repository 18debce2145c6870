#include "Audio/Messages/CAudioInterfaceMessage.h"

#include <cmath>

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

CTextList texts(std::initializer_list<const char*> all) {
    CTextList list;
    for (const char* text : all) {
        list.append(text);
    }
    return list;
}

std::vector<uint8_t> bytesOf(const CByteBuffer& buffer) {
    return {buffer.begin(), buffer.end()};
}

TEST(InterfaceMessage, FieldsLieInTheirOrderLittleEndian) {
    CByteBuffer inner;
    inner.append(9);
    CByteBuffer message;
    EXPECT_EQ(consumed(packMessage(message, kPass, int32_t{-2}, true, CString("ab"), inner, texts({"c"}))), "");
    EXPECT_EQ(bytesOf(message),
              (std::vector<uint8_t>{23,  0,   0, 0, 0xfe, 0xff, 0xff, 0xff, 1, 0, 0, 0, 2, 0, 0, 0,
                                    'a', 'b', 1, 0, 0,    0,    9,    1,    0, 0, 0, 1, 0, 0, 0, 'c'}));
}

TEST(InterfaceMessage, EveryKindOfFieldComesBack) {
    CNumberList numbers;
    numbers.append(0.5);
    numbers.append(-1e300);
    CByteBuffer message;
    EXPECT_EQ(consumed(packMessage(message, kData, -0.0, numbers, texts({"", "x"}), CString(u"\u4e2d"))), "");
    CMemoryReader reader(message.data(), static_cast<uint32_t>(message.count()));
    uint32_t type = 0;
    double number = 1.0;
    CNumberList list;
    CTextList names;
    CString text;
    EXPECT_EQ(consumed(takeMessage(reader, type, number, list, names, text)), "");
    EXPECT_EQ(type, kData);
    EXPECT_TRUE(std::signbit(number));
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list[1], -1e300);
    ASSERT_EQ(names.count(), 2);
    EXPECT_EQ(names[1], CString("x"));
    EXPECT_EQ(text, CString(u"\u4e2d"));
}

TEST(InterfaceMessage, MoreThanItsFieldsIsAFailure) {
    CByteBuffer message;
    EXPECT_EQ(consumed(packMessage(message, kUnbindValue, uint32_t{1}, uint32_t{2})), "");
    CMemoryReader reader(message.data(), static_cast<uint32_t>(message.count()));
    uint32_t type = 0;
    uint32_t id = 0;
    const std::string failure = consumed(takeMessage(reader, type, id));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "Message goes on behind its end.");
}

CInterfaceState someState() {
    CInterfaceState state;
    state.sampleRate = 48000.0;
    state.blockSize = 512;
    state.latency = 33;
    state.isRunning = true;
    state.counts = {2, 4, 1, 8, 6};
    CInterfaceRegistryState registry;
    registry.path = "plugin.r";
    registry.id = "TEST";
    registry.presetNaming = "Master preset";
    registry.isMaster = true;
    registry.isAlternate = true;
    registry.currentProgram = 1;
    registry.bankName = "Session";
    registry.programs = texts({"a", "b"});
    registry.romName = "ROM";
    registry.romPresets = texts({"c"});
    state.registries.append(registry);
    state.history.position = 1;
    state.history.labels = texts({"Undo history start", "x"});
    return state;
}

TEST(InterfaceMessage, TheFullStateComesBack) {
    CByteBuffer message;
    CBufferWriter writer(message);
    EXPECT_EQ(consumed(someState().save(writer)), "");
    CMemoryReader reader(message.data(), static_cast<uint32_t>(message.count()));
    CInterfaceState read;
    EXPECT_EQ(consumed(takeMessage(reader, read)), "");
    CByteBuffer again;
    CBufferWriter second(again);
    EXPECT_EQ(consumed(read.save(second)), "");
    EXPECT_EQ(bytesOf(again), bytesOf(message));
    EXPECT_EQ(read.counts, (CInterfaceCounts{2, 4, 1, 8, 6}));
    ASSERT_EQ(read.registries.count(), 1);
    EXPECT_TRUE(read.registries[0].isAlternate);
    EXPECT_EQ(read.registries[0].programs[1], CString("b"));
    EXPECT_EQ(read.history.labels[1], CString("x"));
}

TEST(InterfaceMessage, AStateThatIsCutAnywhereIsAFailure) {
    CByteBuffer message;
    CBufferWriter writer(message);
    EXPECT_EQ(consumed(someState().save(writer)), "");
    for (int32_t size = 0; size < message.count(); ++size) {
        CMemoryReader reader(message.data(), static_cast<uint32_t>(size));
        CInterfaceState read;
        EXPECT_NE(consumed(takeMessage(reader, read)), "") << size;
    }
}

TEST(InterfaceMessage, TheUpperHalfOfAnIdIsItsClient) {
    EXPECT_EQ(clientOf(0x00020001), 2);
    EXPECT_EQ(clientOf(0xffff0000), 0xffff);
}

}  // namespace
}  // namespace tarv
