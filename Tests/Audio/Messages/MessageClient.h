#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Audio/Visuals/CAudioVizData.h"

namespace tarv {

/// A message of the engine, read: what its type does not carry is empty.
struct CReceivedMessage {
    uint32_t type = 0;
    uint32_t id = 0;  ///< of the listener or the request
    uint32_t request = 0;
    bool isWhole = false;
    int32_t group = 0;
    int32_t first = 0;
    int32_t held = 0;             ///< elements that the group has now
    std::vector<double> numbers;  ///< of a part, a bound value, a rate or counts
    std::vector<std::string> texts;
    std::vector<std::vector<double>> groups;  ///< of a whole value
    std::string definition;
    CInterfaceState state;
    CInterfaceRegistryState registry;
    CInterfaceHistory history;
    uint32_t kind = 0;  ///< of kData
    CByteBuffer bytes;
    std::vector<std::shared_ptr<CAudioVizData>> records;
};

/// Writes the messages of an editor and reads those of the engine, byte by byte, without code of the client's classes.
/// Messages may arrive on any thread; all else is for one thread.
class CMessageClient final : public CAudioInterfaceClientEnd {
public:
    explicit CMessageClient(CAudioInterfaceBaseConnectorVST& connector);
    ~CMessageClient();
    CMessageClient(const CMessageClient&) = delete;
    CMessageClient& operator=(const CMessageClient&) = delete;

    int32_t number() const { return number_; }
    /// The id of the n-th listener or request of this client.
    uint32_t id(uint32_t n) const { return static_cast<uint32_t>(number_) << 16 | n; }

    /// Sends a message of any fields; gives the first line of the failure, "" for success.
    template <class... T>
    std::string send(uint32_t type, const T&... fields) {
        CByteBuffer message;
        delete packMessage(message, type, fields...);
        return sendBytes(message.data(), static_cast<size_t>(message.count()));
    }
    std::string sendBytes(const uint8_t* bytes, size_t count);

    /// The messages that carry more than a few fields. Parameters and registries by name.
    std::string subscribe(uint32_t n, const char* param, uint32_t flags = kSendAtOnce, uint32_t request = 0);
    std::string set(const char* param, int32_t group, int32_t first, const std::vector<double>& numbers,
                    uint32_t flags = kIsRecorded, const char* label = "", int32_t key = -1);
    std::string setTexts(const char* param, int32_t group, int32_t first, const std::vector<std::string>& texts,
                         uint32_t flags = kIsRecorded, const char* label = "", int32_t key = -1);
    std::string openRecord(const char* label, int32_t key = -1) {
        return send(kRecord, id(0), true, CString(label), key);
    }
    std::string endRecord() { return send(kRecord, id(0), false, CString(), int32_t{-1}); }
    std::string undo(int32_t count = 1) { return move(CHistoryMove::Undo, 0, count); }
    std::string redo(int32_t count = 1) { return move(CHistoryMove::Redo, 0, count); }
    std::string select(int32_t position) { return move(CHistoryMove::Select, position, 0); }

    /// All that has come since the last call, in order. A message that can't be read ends the program.
    std::vector<CReceivedMessage> take();
    /// Those of one type; the others are dropped.
    std::vector<CReceivedMessage> take(uint32_t type);
    /// The last one of a type; without one the program ends.
    CReceivedMessage takeLast(uint32_t type);
    size_t waiting() const;
    bool isBaseGone() const { return isBaseGone_; }

    CError* onProcessBaseData(CInputStream& stream) override;
    void onBaseGone() override { isBaseGone_ = true; }

private:
    std::string move(CHistoryMove kind, int32_t position, int32_t count) {
        return send(kMoveInHistory, id(0), static_cast<uint32_t>(kind), position, count);
    }

    CAudioInterfaceBaseConnectorVST& connector_;
    int32_t number_ = -1;
    bool isBaseGone_ = false;
    mutable std::mutex mutex_;
    std::vector<std::vector<uint8_t>> queue_;
};

/// Reads one message of the engine; the failure's first line goes to `failure`.
CReceivedMessage readMessage(const std::vector<uint8_t>& bytes, std::string& failure);

}  // namespace tarv
