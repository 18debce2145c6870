#include "Audio/Engine/CEngineVisuals.h"

#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

struct CEngineVisuals::CFrame : public CHeapObject {
    uint32_t count = 0;
    CMemoryWriteBuffer records;
};

int32_t CEngineVisuals::indexOf(uint32_t id) const {
    for (int32_t i = 0; i < subscribers_.count(); ++i) {
        if (subscribers_[i].id == id) {
            return i;
        }
    }
    return -1;
}

bool CEngineVisuals::unsubscribe(uint32_t id) {
    const int32_t index = indexOf(id);
    if (index >= 0) {
        subscribers_.removeAt(index);
    }
    return index >= 0;
}

void CEngineVisuals::clientGone(int32_t client) {
    for (int32_t i = subscribers_.count() - 1; i >= 0; --i) {
        if (clientOf(subscribers_[i].id) == client) {
            subscribers_.removeAt(i);
        }
    }
}

CError* CEngineVisuals::sendFrames() {
    COwnedArray<CFrame, 4> frames;
    for (int32_t i = 0; i < subscribers_.count(); ++i) {
        frames.append(new CFrame);
    }
    TARV_TRY(collector_.takeRecords([&](const CAudioVizData& data) -> CError* {
        const CString name = collector_.sourceName(data.source);
        for (int32_t i = 0; i < frames.count(); ++i) {
            const CString& wanted = subscribers_[i].source;
            if (wanted.isEmpty() || wanted == name) {
                TARV_TRY(data.write(frames[i]->records));
                ++frames[i]->count;
            }
        }
        return nullptr;
    }));
    for (int32_t i = 0; i < frames.count(); ++i) {
        if (frames[i]->count > 0) {
            TARV_TRY(send(subscribers_[i].id, *frames[i]));
        }
    }
    return nullptr;
}

CError* CEngineVisuals::send(uint32_t id, const CFrame& frame) const {
    CByteBuffer message;
    TARV_TRY(packMessage(message, kFrame, id, frame.count));
    CByteBuffer records;
    frame.records.copyTo(records);
    CBufferWriter writer(message);
    TARV_TRY(writer.write(records.data(), records.count()));
    TARV_TRY(sender_.deliver(clientOf(id), message));
    return nullptr;
}

}  // namespace tarv
