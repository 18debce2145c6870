#include "Platform/X11/X11Monitors.h"

namespace tarv {

namespace {

int64_t squaredDistance(const CIntRect& rect, int32_t x, int32_t y) {
    const int64_t across = std::max({rect.left - x, x - (rect.right - 1), 0});
    const int64_t down = std::max({rect.top - y, y - (rect.bottom - 1), 0});
    return across * across + down * down;
}

std::vector<CIntRect> monitors(const CX11Display& display) {
    std::vector<CIntRect> found;
    const CX11Library& x = display.x();
    xcb_connection_t* connection = display.connection();
    if (!x.hasMonitors() || !x.xcb_get_extension_data(connection, x.xcb_randr_id)->present) {
        return found;
    }
    const CX11Reply<xcb_randr_query_version_reply_t> version(
        x.xcb_randr_query_version_reply(connection, x.xcb_randr_query_version(connection, 1, 5), nullptr));
    if (!version || (version->major_version == 1 && version->minor_version < 5)) {
        return found;
    }
    const CX11Reply<xcb_randr_get_monitors_reply_t> reply(
        x.xcb_randr_get_monitors_reply(connection, x.xcb_randr_get_monitors(connection, display.root(), 1), nullptr));
    if (reply) {
        for (auto it = x.xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem;
             x.xcb_randr_monitor_info_next(&it)) {
            found.push_back({it.data->x, it.data->y, it.data->x + it.data->width, it.data->y + it.data->height});
        }
    }
    return found;
}

/// What panels leave free of all monitors together; empty without a desktop that says so.
CIntRect workArea(const CX11Display& display) {
    const std::vector<uint32_t> areas = display.numbers(display.root(), CX11Atom::NetWorkArea);
    const std::vector<uint32_t> current = display.numbers(display.root(), CX11Atom::NetCurrentDesktop);
    const size_t first = current.empty() ? 0 : size_t{current[0]} * 4;
    const size_t start = first + 4 <= areas.size() ? first : 0;
    if (start + 4 > areas.size()) {
        return {};
    }
    const auto item = [&](size_t i) { return static_cast<int32_t>(areas[start + i]); };
    return {item(0), item(1), item(0) + item(2), item(1) + item(3)};
}

}  // namespace

CIntRect x11MonitorArea(const CX11Display& display, int32_t x, int32_t y) {
    CIntRect best{0, 0, display.screen().width_in_pixels, display.screen().height_in_pixels};
    int64_t distance = INT64_MAX;
    for (const CIntRect& monitor : monitors(display)) {
        const int64_t next = squaredDistance(monitor, x, y);
        if (next < distance && !monitor.isEmpty()) {
            distance = next;
            best = monitor;
        }
    }
    const CIntRect free = best.intersection(workArea(display));
    return free.isEmpty() ? best : free;
}

}  // namespace tarv
