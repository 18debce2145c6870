#include "Audio/Engine/CEngineEditorMemory.h"

#include "Audio/Messages/CAudioInterfaceMessage.h"

namespace tarv {

CError* CEngineEditorMemory::keep(CInputStream& stream) {
    CEntry entry;
    TARV_TRY(takeMessage(stream, entry.key, entry.bytes));
    int32_t index = 0;
    while (index < entries_.count() && !(entries_[index].key == entry.key)) {
        ++index;
    }
    const bool isNew = index == entries_.count();
    if (entry.bytes.isEmpty()) {
        if (!isNew) {
            entries_.removeAt(index);
        }
        return nullptr;
    }
    if ((isNew && index >= kMaxKeys) || entry.bytes.count() > kMaxBytes) {
        TARV_FAIL("@tarvstr_CEngineEditorMemory_keep_TooMuch An editor keeps no more than %1 bytes under %2 keys.",
                  CString::fromInt(kMaxBytes), CString::fromInt(kMaxKeys));
    }
    if (isNew) {
        entries_.append(std::move(entry));
    } else {
        entries_[index] = std::move(entry);
    }
    return nullptr;
}

CError* CEngineEditorMemory::send(int32_t client) const {
    if (entries_.isEmpty()) {
        return nullptr;
    }
    CMemoryWriteBuffer stream;
    TARV_TRY(putFields(stream, uint32_t{kData}, static_cast<uint32_t>(CDataKind::Kept),
                       static_cast<uint32_t>(entries_.count())));
    for (const CEntry& entry : entries_) {
        TARV_TRY(putFields(stream, entry.key, entry.bytes));
    }
    CByteBuffer message;
    stream.copyTo(message);
    TARV_TRY(sender_.deliver(client, message));
    return nullptr;
}

}  // namespace tarv
