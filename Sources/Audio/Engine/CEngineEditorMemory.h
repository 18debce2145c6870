#pragma once

#include "Audio/Engine/CEngineSender.h"

namespace tarv {

/// What editors remember as long as the instance lives, by keys: bytes whose form only they know. Under the connector's
/// call lock.
class CEngineEditorMemory {
public:
    static constexpr int32_t kMaxKeys = 16;
    static constexpr int32_t kMaxBytes = 65536;  ///< of one key

    explicit CEngineEditorMemory(const CEngineSender& sender) : sender_(sender) {}

    /// One message. Fails for more than the above, and keeps what it had.
    [[nodiscard]] CError* keep(CInputStream& stream);
    /// Sends everything to a client, if there is anything.
    [[nodiscard]] CError* send(int32_t client) const;

private:
    struct CEntry {
        CString key;
        CByteBuffer bytes;
    };
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineSender& sender_;
    CArray<CEntry, 1> entries_;
};

}  // namespace tarv
