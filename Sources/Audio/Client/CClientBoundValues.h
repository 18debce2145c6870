#pragma once

#include "Audio/Client/CClientId.h"

namespace tarv {

/// The values of the engine that an editor follows by name. The owner sends `bound-value-changed` (`id`) for each that
/// comes; the event's handlers may destroy it. The editor's thread.
class CClientBoundValues {
public:
    CClientBoundValues(CObject& owner, CClientSender& sender) : owner_(owner), sender_(sender) {}

    /// Gives the id to read the value by.
    [[nodiscard]] CError* bind(const CString& name, int32_t count, uint32_t& id);
    [[nodiscard]] CError* unbind(uint32_t id);
    void unbindAll();
    /// Number of a bound value, 0.0 until it has come.
    double value(uint32_t id, int32_t index) const;
    /// Asks for all of them again.
    [[nodiscard]] CError* refresh() const;

    /// Of kData, behind its kind.
    [[nodiscard]] CError* take(CPosInputStream& stream);

private:
    struct CEntry : public CHeapObject {
        explicit CEntry(CClientSender& sender) : id(sender) {}
        CClientId id;
        CNumberList numbers;
    };
    int32_t indexOf(uint32_t id) const;
    void removeAt(int32_t index);
    const CString& errorContextName() const { return owner_.fullName(); }

    CObject& owner_;
    CClientSender& sender_;
    COwnedArray<CEntry> entries_;
};

}  // namespace tarv
