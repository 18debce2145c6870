#include "Tests/Audio/Messages/MessageClient.h"

#include <cstdio>
#include <cstdlib>

#include "Audio/Parameters/CAudioParamDef.h"
#include "Audio/Parameters/CAudioParamStorage.h"
#include "Core/CApplication.h"

namespace tarv {

namespace {

void endUnless(bool holds, const char* what, uint32_t type) {
    if (!holds) {
        std::fprintf(stderr, "Message %u: %s\n", static_cast<unsigned>(type), what);
        std::abort();
    }
}

std::string firstLine(CError* error) {
    const std::string text = error ? error->lines()[0]->toUtf8() : std::string();
    delete error;
    return text;
}

CError* readWhole(CInputStream& in, CReceivedMessage& received) {
    CString path;
    TARV_TRY(takeField(in, path));
    received.definition = path.toUtf8();
    const auto* definition = CApplication::sharedRoot()->findObjectOf<CAudioParamDef>(path);
    if (!definition) {
        TARV_FAIL("@test No definition '%1'.", path);
    }
    CAudioParamData data;
    TARV_TRY(CAudioParamStorage::load(in, definition->info(), data));
    for (int32_t group = 0; group < data.groupCount(); ++group) {
        received.groups.emplace_back();
        for (int32_t element = 0; element < data.elementCount(group); ++element) {
            if (data.isString()) {
                received.texts.push_back(data.text(group, element).toUtf8());
                continue;
            }
            for (int32_t i = 0; i < data.elementSize(); ++i) {
                received.groups.back().push_back(data.storedNumber(group, element, i));
            }
        }
    }
    return nullptr;
}

CError* readPart(CInputStream& in, CReceivedMessage& received) {
    int32_t count = 0;
    uint32_t size = 0;
    TARV_TRY(takeFields(in, received.group, received.first, count, received.held, size));
    for (int32_t element = 0; element < count; ++element) {
        if (size == 0) {
            CString text;
            TARV_TRY(takeField(in, text));
            received.texts.push_back(text.toUtf8());
        }
        for (uint32_t i = 0; i < size; ++i) {
            double number = 0.0;
            TARV_TRY(takeField(in, number));
            received.numbers.push_back(number);
        }
    }
    return nullptr;
}

CError* readValues(CInputStream& in, CReceivedMessage& received) {
    uint32_t form = 0;
    TARV_TRY(takeFields(in, received.id, received.request, form));
    received.isWhole = form == 0;
    TARV_TRY(received.isWhole ? readWhole(in, received) : readPart(in, received));
    return nullptr;
}

CError* readNames(CInputStream& in, CReceivedMessage& received) {
    CTextList names;
    TARV_TRY(takeFields(in, received.id, received.request, names));
    for (const CString& name : names) {
        received.texts.push_back(name.toUtf8());
    }
    return nullptr;
}

CError* readFrame(CInputStream& in, CReceivedMessage& received) {
    uint32_t count = 0;
    TARV_TRY(takeFields(in, received.id, count));
    for (uint32_t i = 0; i < count; ++i) {
        CAudioVizData* data = nullptr;
        TARV_TRY(CAudioVizData::readAny(in, data));
        received.records.emplace_back(data);
    }
    return nullptr;
}

CError* readData(CInputStream& in, CReceivedMessage& received) {
    TARV_TRY(takeField(in, received.kind));
    if (received.kind == static_cast<uint32_t>(CDataKind::Value)) {
        CNumberList numbers;
        TARV_TRY(takeFields(in, received.id, numbers));
        received.numbers.assign(numbers.begin(), numbers.end());
    } else if (received.kind == static_cast<uint32_t>(CDataKind::OutputLabels) ||
               received.kind == static_cast<uint32_t>(CDataKind::InputLabels)) {
        CTextList labels;
        TARV_TRY(takeField(in, labels));
        for (const CString& label : labels) {
            received.texts.push_back(label.toUtf8());
        }
    } else if (received.kind == static_cast<uint32_t>(CDataKind::Kept)) {
        uint32_t count = 0;
        TARV_TRY(takeField(in, count));
        for (uint32_t i = 0; i < count; ++i) {
            CString key;
            TARV_TRY(takeFields(in, key, received.bytes));
            received.texts.push_back(key.toUtf8());
        }
    } else if (received.kind != static_cast<uint32_t>(CDataKind::Clear)) {
        TARV_TRY(takeFields(in, received.id, received.bytes));
    }
    return nullptr;
}

/// A count that travels as u32.
template <int32_t Count>
CError* readCounts(CInputStream& in, CReceivedMessage& received) {
    TARV_TRY(takeField(in, received.id));
    for (int32_t i = 0; i < Count; ++i) {
        uint32_t count = 0;
        TARV_TRY(takeField(in, count));
        received.numbers.push_back(count);
    }
    return nullptr;
}

CError* readRate(CInputStream& in, CReceivedMessage& received) {
    received.numbers.resize(1);
    TARV_TRY(takeFields(in, received.id, received.numbers[0]));
    return nullptr;
}

CError* readDefaultPreset(CInputStream& in, CReceivedMessage& received) {
    bool isThere = false;
    CString name;
    TARV_TRY(takeFields(in, received.id, isThere, name));
    received.numbers.push_back(isThere ? 1.0 : 0.0);
    received.texts.push_back(name.toUtf8());
    return nullptr;
}

CError* (*const kReaders[])(CInputStream& in, CReceivedMessage& received) = {
    [](CInputStream& in, CReceivedMessage& received) { return takeFields(in, received.id, received.state); },
    &readValues,
    [](CInputStream& in, CReceivedMessage& received) { return takeFields(in, received.id, received.registry); },
    &readNames,
    [](CInputStream& in, CReceivedMessage& received) { return takeFields(in, received.history); },
    &readRate,
    &readCounts<3>,
    &readCounts<1>,
    &readCounts<1>,
    &readFrame,
    &readData,
    &readDefaultPreset,
    [](CInputStream& in, CReceivedMessage& received) { return takeFields(in, received.id); },
};

CError* readMessage(CInputStream& in, CReceivedMessage& received) {
    TARV_TRY(takeField(in, received.type));
    if (received.type < kFirstBaseMessage || received.type >= kMessageCount) {
        TARV_FAIL("@test Message %1 of the engine.", CString::fromInt(received.type));
    }
    TARV_TRY(kReaders[received.type - kFirstBaseMessage](in, received));
    TARV_TRY(expectMessageEnd(in));
    return nullptr;
}

}  // namespace

CReceivedMessage readMessage(const std::vector<uint8_t>& bytes, std::string& failure) {
    CReceivedMessage received;
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    failure = firstLine(readMessage(reader, received));
    return received;
}

CMessageClient::CMessageClient(CAudioInterfaceBaseConnectorVST& connector) : connector_(connector) {
    number_ = connector.addClient(*this);
}

CMessageClient::~CMessageClient() {
    if (!isBaseGone_) {
        connector_.removeClient(*this);
    }
}

std::string CMessageClient::sendBytes(const uint8_t* bytes, size_t count) {
    CMemoryReader reader(bytes, static_cast<uint32_t>(count));
    CLockScope scope(connector_.callLock());
    return firstLine(connector_.processClientData(reader));
}

std::string CMessageClient::subscribe(uint32_t n, const char* param, uint32_t flags, uint32_t request) {
    return send(kSubscribeParam, id(n), CString(param), flags, request);
}

std::string CMessageClient::set(const char* param, int32_t group, int32_t first, const std::vector<double>& numbers,
                                uint32_t flags, const char* label, int32_t key) {
    CByteBuffer message;
    CBufferWriter writer(message);
    delete putFields(writer, static_cast<uint32_t>(kSetValues), uint32_t{0}, CString(param), group, first,
                     static_cast<uint32_t>(numbers.size()), flags);
    for (const double number : numbers) {
        delete putField(writer, number);
    }
    delete putFields(writer, CString(label), key);
    return sendBytes(message.data(), static_cast<size_t>(message.count()));
}

std::string CMessageClient::setTexts(const char* param, int32_t group, int32_t first,
                                     const std::vector<std::string>& texts, uint32_t flags, const char* label,
                                     int32_t key) {
    CByteBuffer message;
    CBufferWriter writer(message);
    delete putFields(writer, static_cast<uint32_t>(kSetValues), uint32_t{0}, CString(param), group, first,
                     static_cast<uint32_t>(texts.size()), flags);
    for (const std::string& text : texts) {
        delete putField(writer, CString::fromUtf8(text.data(), text.size()));
    }
    delete putFields(writer, CString(label), key);
    return sendBytes(message.data(), static_cast<size_t>(message.count()));
}

CError* CMessageClient::onProcessBaseData(CInputStream& stream) {
    std::vector<uint8_t> bytes;
    for (int64_t count = 1; count > 0;) {
        uint8_t part[256];
        count = sizeof(part);
        TARV_TRY(stream.readStreamed(part, count));
        bytes.insert(bytes.end(), part, part + count);
    }
    const std::lock_guard<std::mutex> guard(mutex_);
    queue_.push_back(std::move(bytes));
    return nullptr;
}

std::vector<CReceivedMessage> CMessageClient::take() {
    std::vector<std::vector<uint8_t>> queue;
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        queue.swap(queue_);
    }
    std::vector<CReceivedMessage> all;
    for (const std::vector<uint8_t>& bytes : queue) {
        std::string failure;
        all.push_back(readMessage(bytes, failure));
        endUnless(failure.empty(), failure.c_str(), all.back().type);
    }
    return all;
}

std::vector<CReceivedMessage> CMessageClient::take(uint32_t type) {
    std::vector<CReceivedMessage> found;
    for (CReceivedMessage& received : take()) {
        if (received.type == type) {
            found.push_back(std::move(received));
        }
    }
    return found;
}

CReceivedMessage CMessageClient::takeLast(uint32_t type) {
    const std::vector<CReceivedMessage> found = take(type);
    endUnless(!found.empty(), "None has come.", type);
    return found.back();
}

size_t CMessageClient::waiting() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return queue_.size();
}

}  // namespace tarv
