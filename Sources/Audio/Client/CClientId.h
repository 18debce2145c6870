#pragma once

#include "Audio/Client/CClientSender.h"

namespace tarv {

/// A new id, held as long as this object.
class CClientId {
public:
    explicit CClientId(CClientSender& sender) : sender_(sender), value_(sender.newId()) {
        sender_.held_.insert(value_);
    }
    ~CClientId() { sender_.held_.erase(value_); }
    CClientId(const CClientId&) = delete;
    CClientId& operator=(const CClientId&) = delete;

    uint32_t value() const { return value_; }

private:
    CClientSender& sender_;
    const uint32_t value_;
};

}  // namespace tarv
