// Fields of messages to and from streams.

#include "Audio/Messages/CAudioInterfaceMessage.h"

namespace tarv {

CError* putField(COutputStream& stream, uint32_t value) {
    TARV_TRY(stream.writeValue(value));
    return nullptr;
}

CError* putField(COutputStream& stream, int32_t value) {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(value)));
    return nullptr;
}

CError* putField(COutputStream& stream, bool value) {
    TARV_TRY(stream.writeValue(value ? 1 : 0));
    return nullptr;
}

CError* putField(COutputStream& stream, double value) {
    TARV_TRY(stream.writeDouble(value));
    return nullptr;
}

CError* putField(COutputStream& stream, const CString& text) {
    TARV_TRY(stream.writeString(text));
    return nullptr;
}

CError* putField(COutputStream& stream, const CByteBuffer& bytes) {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(bytes.count())));
    TARV_TRY(stream.write(bytes.data(), bytes.count()));
    return nullptr;
}

CError* putField(COutputStream& stream, const CTextList& texts) {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(texts.count())));
    for (const CString& text : texts) {
        TARV_TRY(stream.writeString(text));
    }
    return nullptr;
}

CError* putField(COutputStream& stream, const CNumberList& numbers) {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(numbers.count())));
    for (const double number : numbers) {
        TARV_TRY(stream.writeDouble(number));
    }
    return nullptr;
}

CError* takeField(CInputStream& stream, uint32_t& value) {
    TARV_TRY(stream.readValue(value));
    return nullptr;
}

CError* takeField(CInputStream& stream, int32_t& value) {
    uint32_t bits = 0;
    TARV_TRY(stream.readValue(bits));
    value = static_cast<int32_t>(bits);
    return nullptr;
}

CError* takeField(CInputStream& stream, bool& value) {
    uint32_t bits = 0;
    TARV_TRY(stream.readValue(bits));
    value = bits != 0;
    return nullptr;
}

CError* takeField(CInputStream& stream, double& value) {
    TARV_TRY(stream.readDouble(value));
    return nullptr;
}

CError* takeField(CInputStream& stream, CString& text) {
    TARV_TRY(stream.readString(text));
    return nullptr;
}

CError* takeField(CInputStream& stream, CByteBuffer& bytes) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    bytes.clear();
    TARV_TRY(stream.readBytes(bytes, count));
    return nullptr;
}

CError* takeField(CInputStream& stream, CTextList& texts) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    texts.clear();
    for (uint32_t i = 0; i < count; ++i) {
        CString text;
        TARV_TRY(stream.readString(text));
        texts.append(std::move(text));
    }
    return nullptr;
}

CError* takeField(CInputStream& stream, CNumberList& numbers) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    numbers.clear();
    for (uint32_t i = 0; i < count; ++i) {
        double number = 0.0;
        TARV_TRY(stream.readDouble(number));
        numbers.append(number);
    }
    return nullptr;
}

CError* expectMessageEnd(CInputStream& stream) {
    uint8_t byte = 0;
    int64_t count = 1;
    TARV_TRY(stream.readStreamed(&byte, count));
    if (count != 0) {
        TARV_FAIL("@tarvstr_CAudioInterfaceMessage_expectMessageEnd_MoreData Message goes on behind its end.");
    }
    return nullptr;
}

CError* CInterfaceRegistryState::save(COutputStream& stream) const {
    TARV_TRY(putFields(stream, path, id, presetNaming, isMaster, isAlternate, currentProgram, bankName, programs,
                       romName, romPresets));
    return nullptr;
}

CError* CInterfaceRegistryState::load(CInputStream& stream) {
    TARV_TRY(takeFields(stream, path, id, presetNaming, isMaster, isAlternate, currentProgram, bankName, programs,
                        romName, romPresets));
    return nullptr;
}

CError* CInterfaceHistory::save(COutputStream& stream) const {
    TARV_TRY(putFields(stream, position, labels));
    return nullptr;
}

CError* CInterfaceHistory::load(CInputStream& stream) {
    TARV_TRY(takeFields(stream, position, labels));
    return nullptr;
}

CError* CInterfaceCounts::save(COutputStream& stream) const {
    TARV_TRY(putFields(stream, inputs, outputs, sidechain, groups, internalChannels));
    return nullptr;
}

CError* CInterfaceCounts::load(CInputStream& stream) {
    TARV_TRY(takeFields(stream, inputs, outputs, sidechain, groups, internalChannels));
    return nullptr;
}

CError* CInterfaceState::save(COutputStream& stream) const {
    TARV_TRY(putFields(stream, sampleRate, blockSize, latency, isRunning, counts, registries.count()));
    for (const CInterfaceRegistryState& registry : registries) {
        TARV_TRY(registry.save(stream));
    }
    TARV_TRY(history.save(stream));
    return nullptr;
}

CError* CInterfaceState::load(CInputStream& stream) {
    uint32_t count = 0;
    TARV_TRY(takeFields(stream, sampleRate, blockSize, latency, isRunning, counts, count));
    registries.clear();
    for (uint32_t i = 0; i < count; ++i) {
        CInterfaceRegistryState registry;
        TARV_TRY(registry.load(stream));
        registries.append(std::move(registry));
    }
    TARV_TRY(history.load(stream));
    return nullptr;
}

}  // namespace tarv
