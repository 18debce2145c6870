#include "Tests/Platform/X11/CXDesktop.h"

#include <unistd.h>
#include <xcb/res.h>
#include <xcb/xtest.h>

#include <cstring>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

template <class T>
using COwned = std::unique_ptr<T, void (*)(void*)>;

template <class T>
COwned<T> own(T* block) {
    return COwned<T>(block, &std::free);
}

constexpr uint32_t kHostEvents = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_BUTTON_PRESS |
                                 XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_PROPERTY_CHANGE;

}  // namespace

CXClient::CXClient(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
    EXPECT_EQ(xcb_connection_has_error(connection_), 0) << "no server at '" << display << "'";
    if (xcb_connection_has_error(connection_) == 0)
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

CXClient::~CXClient() {
    xcb_disconnect(connection_);
}

void CXClient::sync() {
    (void)focus();
}

xcb_atom_t CXClient::atom(const char* name) {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(name)), name);
    return own(xcb_intern_atom_reply(connection_, cookie, nullptr))->atom;
}

xcb_window_t CXClient::makeWindow(int x, int y, int width, int height) {
    const xcb_window_t window = xcb_generate_id(connection_);
    const uint32_t values[] = {1, kHostEvents};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, static_cast<int16_t>(x),
                      static_cast<int16_t>(y), static_cast<uint16_t>(width), static_cast<uint16_t>(height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values);
    xcb_map_window(connection_, window);
    sync();
    return window;
}

void CXClient::destroyWindow(xcb_window_t window) {
    xcb_destroy_window(connection_, window);
    sync();
}

xcb_window_t CXClient::focus() {
    const auto reply = own(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : 0;
}

void CXClient::setFocus(xcb_window_t window) {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    sync();
}

std::vector<xcb_window_t> CXClient::childrenOf(xcb_window_t window) {
    const auto reply = own(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    if (!reply)
        return {};
    const xcb_window_t* first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

bool CXClient::isOverrideRedirect(xcb_window_t window) {
    const auto cookie = xcb_get_window_attributes(connection_, window);
    const auto reply = own(xcb_get_window_attributes_reply(connection_, cookie, nullptr));
    return reply && reply->override_redirect;
}

bool CXClient::isShown(xcb_window_t window) {
    const auto cookie = xcb_get_window_attributes(connection_, window);
    const auto reply = own(xcb_get_window_attributes_reply(connection_, cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE && reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

CIntRect CXClient::boundsOf(xcb_window_t window) {
    const auto reply = own(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    return reply ? CIntRect{reply->x, reply->y, reply->x + reply->width, reply->y + reply->height} : CIntRect{};
}

uint64_t CXClient::resourceCount(const char* type) {
    const xcb_atom_t wanted = type ? atom(type) : xcb_atom_t{XCB_ATOM_NONE};
    uint64_t count = 0;
    const auto clients = own(xcb_res_query_clients_reply(connection_, xcb_res_query_clients(connection_), nullptr));
    if (!clients)
        return 0;
    for (auto it = xcb_res_query_clients_clients_iterator(clients.get()); it.rem; xcb_res_client_next(&it)) {
        const auto cookie = xcb_res_query_client_resources(connection_, it.data->resource_base);
        const auto reply = own(xcb_res_query_client_resources_reply(connection_, cookie, nullptr));
        for (auto row = xcb_res_query_client_resources_types_iterator(reply.get()); row.rem; xcb_res_type_next(&row))
            count += !wanted || row.data->resource_type == wanted ? row.data->count : 0;
    }
    return count;
}

std::vector<uint32_t> CXClient::numbers(xcb_window_t window, const char* property) {
    const auto cookie = xcb_get_property(connection_, 0, window, atom(property), XCB_ATOM_ANY, 0, 100);
    const auto reply = own(xcb_get_property_reply(connection_, cookie, nullptr));
    std::vector<uint32_t> items(reply ? static_cast<size_t>(xcb_get_property_value_length(reply.get())) / 4 : 0);
    if (!items.empty())
        std::memcpy(items.data(), xcb_get_property_value(reply.get()), items.size() * 4);
    return items;
}

std::vector<uint32_t> CXClient::pixels(xcb_window_t window, int width, int height, int x, int y) {
    const auto cookie =
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<int16_t>(x), static_cast<int16_t>(y),
                      static_cast<uint16_t>(width), static_cast<uint16_t>(height), UINT32_MAX);
    const auto reply = own(xcb_get_image_reply(connection_, cookie, nullptr));
    std::vector<uint32_t> all(reply ? static_cast<size_t>(width) * static_cast<size_t>(height) : 0);
    if (!all.empty())
        std::memcpy(all.data(), xcb_get_image_data(reply.get()), all.size() * 4);
    for (uint32_t& pixel : all)
        pixel &= 0xffffff;
    return all;
}

void CXClient::fake(uint8_t type, uint8_t detail, int x, int y) {
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_, static_cast<int16_t>(x),
                        static_cast<int16_t>(y), 0);
    sync();
}

void CXClient::movePointer(int x, int y) {
    fake(XCB_MOTION_NOTIFY, 0, x, y);
}

void CXClient::button(int number, bool isDown) {
    fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, static_cast<uint8_t>(number), 0, 0);
}

void CXClient::click(int number) {
    button(number, true);
    button(number, false);
}

void CXClient::key(int number, bool isDown) {
    fake(isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, static_cast<uint8_t>(number), 0, 0);
}

void CXClient::strike(int number) {
    key(number, true);
    key(number, false);
}

std::unique_ptr<xcb_generic_event_t, void (*)(void*)> CXClient::nextEvent() {
    return own(xcb_poll_for_event(connection_));
}

std::vector<int> CXClient::takeTypes() {
    sync();
    std::vector<int> types;
    while (const auto event = nextEvent())
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            types.push_back(event->response_type & 0x7f);
    return types;
}

void CXRecorder::note(std::string text) {
    events.push_back(std::move(text));
    // The action may destroy this object.
    if (const auto call = act)
        call();
}

void CXRecorder::onPaint(const CIntRect& dirty) {
    paints.push_back(dirty);
    if (const auto call = act)
        call();
}

void CXRecorder::onPointer(const CPointerEvent& event) {
    constexpr const char* kKinds[] = {"move", "press", "release", "leave", "capture lost"};
    constexpr const char* kButtons[] = {"", " left", " right", " other"};
    if (event.kind == CPointerKind::Move) {
        moves.push_back(event);
        return;
    }
    std::string text = kKinds[static_cast<int>(event.kind)];
    text += kButtons[static_cast<int>(event.button)];
    if (event.kind == CPointerKind::Press || event.kind == CPointerKind::Release)
        text += ' ' + std::to_string(event.x) + ',' + std::to_string(event.y);
    text += event.isDouble ? " double" : "";
    text += event.modifiers.isShift ? " shift" : "";
    text += event.modifiers.isLeft ? " L" : "";
    text += event.modifiers.isRight ? " R" : "";
    note(text);
}

bool CXRecorder::onWheel(const CWheelEvent& event) {
    const bool isTaken = isWheelTaken;
    note("wheel " + std::to_string(event.x) + ',' + std::to_string(event.y) + (event.delta > 0 ? " up" : " down"));
    return isTaken;
}

bool CXRecorder::onKey(const CKeyEvent& event) {
    const bool isTaken = isKeyTaken;
    const std::u16string characters(event.characters, event.characters + event.characterCount);
    typed += characters;
    deadKeys += event.isDead ? 1 : 0;
    note("key " + std::to_string(event.code) + (event.isDown ? " down " : " up ") + utf16ToUtf8(characters.c_str()));
    return isTaken;
}

void CXRecorder::onActivation(bool isActive, CWindowHandle active) {
    other = active;
    note(isActive ? "active" : "inactive");
}

void CXRecorder::onCloseRequest() {
    note("close");
}

void CXRecorder::onGone() {
    note("gone");
}

CXDesktop::CXDesktop() : CXDesktop(CXServer::common().display()) {}

CXDesktop::CXDesktop(const std::string& display)
    : display_("DISPLAY", display.c_str()), client(display), host(client.makeWindow(100, 50, 400, 300)) {
    client.movePointer(790, 590);
    client.setFocus(host);
    client.takeTypes();
}

std::unique_ptr<CPlatformWindow> CXDesktop::child(CWindowHandler& handler, const CIntRect& bounds) {
    CPlatformError error = 0;
    CWindowRequest request;
    request.isChild = true;
    request.parent = host;
    request.bounds = bounds;
    std::unique_ptr<CPlatformWindow> window = system.createWindow(request, handler, error);
    EXPECT_EQ(error, 0u);
    if (window) {
        window->show(true);
        settle();
    }
    return window;
}

std::unique_ptr<CPlatformWindow> CXDesktop::popup(CWindowHandler& handler, CWindowHandle owner,
                                                  const CIntRect& bounds) {
    CPlatformError error = 0;
    CWindowRequest request;
    request.parent = owner;
    request.bounds = bounds;
    request.title = u"List";
    std::unique_ptr<CPlatformWindow> window = system.createWindow(request, handler, error);
    EXPECT_EQ(error, 0u);
    if (window) {
        window->show(true);
        settle();
    }
    return window;
}

bool CXDesktop::until(const std::function<bool()>& condition) {
    for (int i = 0; i < 5000; ++i) {
        client.sync();
        system.serve();
        if (condition())
            return true;
        usleep(1000);
    }
    return false;
}

void CXDesktop::settle() {
    // What the server sends for one request may come behind the answer to the next one.
    for (int i = 0; i < 3; ++i) {
        client.sync();
        int32_t x = 0, y = 0;
        system.pointerPosition(x, y);
        system.serve();
    }
}

}  // namespace tarv
