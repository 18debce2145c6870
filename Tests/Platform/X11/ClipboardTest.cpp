#include <cstring>
#include <thread>

#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv {
namespace {

/// Another program that owns the clipboard, or asks for it.
class CXClipboard {
public:
    explicit CXClipboard(CXClient& client) : client_(client), window_(client.makeWindow(700, 0, 10, 10)) {
        xcb_set_selection_owner(client.connection(), window_, client.atom("CLIPBOARD"), XCB_CURRENT_TIME);
        client.sync();
    }
    std::string text;
    bool isLong = false;         ///< sends pieces
    bool isSilent = false;       ///< never answers
    bool isOldForm = false;      ///< knows Latin-1 only
    size_t endAfter = SIZE_MAX;  ///< pieces, behind which it says no more

    /// Answers what waits.
    void serve() {
        while (const auto event = client_.nextEvent()) {
            if (isSilent)
                continue;
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<xcb_selection_request_event_t*>(event.get()));
            if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
                sendPiece(*reinterpret_cast<xcb_property_notify_event_t*>(event.get()));
        }
        xcb_flush(client_.connection());
    }

private:
    void answer(const xcb_selection_request_event_t& request) {
        const xcb_atom_t wanted = isOldForm ? xcb_atom_t{XCB_ATOM_STRING} : client_.atom("UTF8_STRING");
        const bool isGood = request.target == wanted;
        if (isGood && isLong) {
            const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(client_.connection(), request.requestor, XCB_CW_EVENT_MASK, &mask);
            const auto size = static_cast<uint32_t>(text.size());
            xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                client_.atom("INCR"), 32, 1, &size);
            sent_ = 0;
            pieces_ = 0;
            property_ = request.property;
        } else if (isGood) {
            xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                request.target, 8, static_cast<uint32_t>(text.size()), text.data());
        }
        xcb_selection_notify_event_t notify{};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = isGood ? request.property : xcb_atom_t{XCB_ATOM_NONE};
        char bytes[32] = {};
        std::memcpy(bytes, &notify, sizeof notify);
        xcb_send_event(client_.connection(), 0, request.requestor, 0, bytes);
    }
    void sendPiece(const xcb_property_notify_event_t& notify) {
        if (notify.state != XCB_PROPERTY_DELETE || notify.atom != property_ || pieces_++ >= endAfter)
            return;
        const size_t count = std::min<size_t>(text.size() - sent_, 100000);
        xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, notify.window, property_,
                            client_.atom("UTF8_STRING"), 8, static_cast<uint32_t>(count), text.data() + sent_);
        sent_ += count;
    }

    CXClient& client_;
    const xcb_window_t window_;
    xcb_atom_t property_ = 0;
    size_t sent_ = 0;
    size_t pieces_ = 0;
};

class X11Clipboard : public CXDesktop {
protected:
    /// Reads while the other program answers on a thread, as it would be a process.
    bool read(CXClipboard& other, std::u16string& text) {
        std::atomic<bool> isDone{false};
        std::thread thread([&] {
            while (!isDone) {
                other.serve();
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
        const bool isThere = system.clipboardText(text);
        isDone = true;
        thread.join();
        return isThere;
    }
    /// What another program gets when it asks for a form; "" for nothing.
    std::string asked(const char* form) {
        const xcb_window_t window = client.makeWindow(710, 0, 10, 10);
        const xcb_atom_t property = client.atom("GOT");
        xcb_convert_selection(client.connection(), window, client.atom("CLIPBOARD"), client.atom(form), property,
                              XCB_CURRENT_TIME);
        std::string text;
        bool isAnswered = false;
        until([&] {
            while (const auto event = client.nextEvent()) {
                if ((event->response_type & 0x7f) != XCB_SELECTION_NOTIFY)
                    continue;
                isAnswered = true;
                const auto cookie =
                    xcb_get_property(client.connection(), 1, window, property, XCB_ATOM_ANY, 0, 1 << 20);
                xcb_get_property_reply_t* reply = xcb_get_property_reply(client.connection(), cookie, nullptr);
                text.assign(static_cast<char*>(xcb_get_property_value(reply)),
                            static_cast<size_t>(xcb_get_property_value_length(reply)));
                std::free(reply);
            }
            return isAnswered;
        });
        EXPECT_TRUE(isAnswered);
        client.destroyWindow(window);
        return text;
    }

    CXRecorder recorder;
    const std::unique_ptr<CPlatformWindow> window = child(recorder);
};

TEST_F(X11Clipboard, TextOfAnotherProgramIsRead) {
    CXClipboard other(client);
    other.text = "-12.5 dB \xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80";
    std::u16string text;
    EXPECT_TRUE(read(other, text));
    EXPECT_EQ(text, u"-12.5 dB \u00e4\u20ac\U0001f600");
    other.isOldForm = true;
    other.text = "\xe4";
    EXPECT_TRUE(read(other, text));
    EXPECT_EQ(text, u"\u00e4");
}

TEST_F(X11Clipboard, ALongTextComesInPieces) {
    CXClipboard other(client);
    other.isLong = true;
    for (int i = 0; i < 100000; ++i)
        other.text += std::to_string(i) + '\n';
    std::u16string text;
    EXPECT_TRUE(read(other, text));
    EXPECT_EQ(std::string(text.begin(), text.end()), other.text);
}

TEST_F(X11Clipboard, AnOwnerThatNeverAnswersCostsASecondAtMost) {
    CXClipboard other(client);
    other.isSilent = true;
    std::u16string text = u"x";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(read(other, text));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_TRUE(text.empty());
    // And one that dies in the middle.
    other.isSilent = false;
    other.isLong = true;
    other.text.assign(500000, 'x');
    other.endAfter = 2;
    EXPECT_FALSE(read(other, text));
    EXPECT_TRUE(text.empty());
}

TEST_F(X11Clipboard, WhatCameMeanwhileIsDeliveredAfterwards) {
    CXClipboard other(client);
    other.isSilent = true;
    client.movePointer(110, 70);
    client.click(1);
    std::u16string text;
    EXPECT_FALSE(read(other, text));
    EXPECT_TRUE(recorder.events.empty());
    EXPECT_TRUE(until([&] { return recorder.events.size() == 2; }));
}

TEST_F(X11Clipboard, TextIsOfferedToOtherPrograms) {
    EXPECT_TRUE(system.setClipboardText(u"\u00e4\U0001f600"));
    EXPECT_EQ(asked("UTF8_STRING"), "\xc3\xa4\xf0\x9f\x98\x80");
    EXPECT_EQ(asked("text/plain;charset=utf-8"), "\xc3\xa4\xf0\x9f\x98\x80");
    EXPECT_EQ(asked("TARGETS").size(), 12u);
    EXPECT_EQ(asked("image/png"), "");
    std::u16string text;
    EXPECT_TRUE(system.clipboardText(text));
    EXPECT_EQ(text, u"\u00e4\U0001f600");
    // Another program copies: its text counts from then on.
    CXClipboard other(client);
    other.text = "new";
    settle();
    EXPECT_TRUE(read(other, text));
    EXPECT_EQ(text, u"new");
}

TEST_F(X11Clipboard, WithoutAnOwnerThereIsNoText) {
    xcb_set_selection_owner(client.connection(), 0, client.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    client.sync();
    std::u16string text = u"x";
    EXPECT_FALSE(system.clipboardText(text));
    EXPECT_TRUE(text.empty());
}

}  // namespace
}  // namespace tarv
