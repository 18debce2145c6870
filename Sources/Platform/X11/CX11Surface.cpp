// Surfaces, and how their pixels reach a window: by shared memory, or in requests.

#include "Platform/X11/CX11Surface.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstring>

namespace tarv {

namespace {

/// Bytes of a request beside its pixels.
constexpr size_t kRequestHead = 64;

/// The constness of a surface's interface ends at its pixels: nothing is written.
const uint32_t* pixelsOf(const CSurface& surface) {
    return const_cast<CSurface&>(surface).pixels();
}

}  // namespace

CX11Painter::CX11Painter(const CX11Display& display) : display_(display) {
    const CX11Library& x = display_.x();
    xcb_connection_t* connection = display_.connection();
    context_ = x.xcb_generate_id(connection);
    const uint32_t noExposures = 0;
    x.xcb_create_gc(connection, context_, display_.root(), XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    if (display_.screen().root_depth != 24) {
        // A context draws on windows of the depth that it was made for: made by the first window instead.
        x.xcb_free_gc(connection, context_);
        context_ = 0;
    }
    if (x.hasSharedMemory() && x.xcb_get_extension_data(connection, x.xcb_shm_id)->present) {
        const CX11Reply<xcb_shm_query_version_reply_t> reply(
            x.xcb_shm_query_version_reply(connection, x.xcb_shm_query_version(connection), nullptr));
        hasSharedMemory_ = reply != nullptr;
    }
}

CX11Painter::~CX11Painter() {
    if (context_) {
        display_.x().xcb_free_gc(display_.connection(), context_);
    }
}

uint32_t CX11Painter::attach(int segment) const {
    const CX11Library& x = display_.x();
    const uint32_t picture = x.xcb_generate_id(display_.connection());
    const auto cookie = x.xcb_shm_attach_checked(display_.connection(), picture, static_cast<uint32_t>(segment), 1);
    const CX11Reply<xcb_generic_error_t> error(x.xcb_request_check(display_.connection(), cookie));
    return error || display_.isBroken() ? 0 : picture;
}

void CX11Painter::detach(uint32_t picture) const {
    display_.x().xcb_shm_detach(display_.connection(), picture);
}

void CX11Painter::put(xcb_window_t window, const CSurface& surface, uint32_t picture, int32_t x, int32_t y,
                      const CIntRect& rect) {
    const CIntRect part = rect.intersection({x, y, x + surface.width(), y + surface.height()});
    if (part.isEmpty() || !window) {
        return;
    }
    if (!context_) {
        context_ = display_.x().xcb_generate_id(display_.connection());
        const uint32_t noExposures = 0;
        display_.x().xcb_create_gc(display_.connection(), context_, window, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    }
    if (picture) {
        putShared(window, surface, picture, x, y, part);
    } else {
        putPlain(window, surface, x, y, part);
    }
}

void CX11Painter::putShared(xcb_window_t window, const CSurface& surface, uint32_t picture, int32_t x, int32_t y,
                            const CIntRect& part) {
    display_.x().xcb_shm_put_image(display_.connection(), window, context_, static_cast<uint16_t>(surface.width()),
                                   static_cast<uint16_t>(surface.height()), static_cast<uint16_t>(part.left - x),
                                   static_cast<uint16_t>(part.top - y), static_cast<uint16_t>(part.width()),
                                   static_cast<uint16_t>(part.height()), static_cast<int16_t>(part.left),
                                   static_cast<int16_t>(part.top), 24, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, picture, 0);
    isReading_ = true;
}

void CX11Painter::putPlain(xcb_window_t window, const CSurface& surface, int32_t x, int32_t y, const CIntRect& part) {
    const auto width = static_cast<size_t>(part.width());
    const size_t most = size_t{display_.x().xcb_get_maximum_request_length(display_.connection())} * 4;
    const auto rows = static_cast<int32_t>(std::max<size_t>((most - kRequestHead) / (width * 4), 1));
    for (int32_t top = part.top; top < part.bottom; top += rows) {
        const int32_t count = std::min(rows, part.bottom - top);
        const uint32_t* source = pixelsOf(surface) + int64_t{top - y} * surface.width() + (part.left - x);
        if (part.width() != surface.width()) {
            rows_.resize(width * static_cast<size_t>(count));
            for (int32_t i = 0; i < count; ++i) {
                std::memcpy(rows_.data() + width * static_cast<size_t>(i), source + int64_t{i} * surface.width(),
                            width * 4);
            }
            source = rows_.data();
        }
        display_.x().xcb_put_image(
            display_.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, context_, static_cast<uint16_t>(width),
            static_cast<uint16_t>(count), static_cast<int16_t>(part.left), static_cast<int16_t>(top), 0, 24,
            static_cast<uint32_t>(width * 4) * static_cast<uint32_t>(count), reinterpret_cast<const uint8_t*>(source));
    }
}

void CX11Painter::finish() {
    if (isReading_) {
        display_.sync();
        isReading_ = false;
    } else {
        display_.flush();
    }
}

void CX11Surface::free() {
    if (picture_) {
        painter_.detach(picture_);
        shmdt(pixels_);
        picture_ = 0;
    } else {
        std::free(pixels_);
    }
    pixels_ = nullptr;
}

bool CX11Surface::allocate(int32_t width, int32_t height) {
    const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * sizeof(uint32_t);
    width_ = width;
    height_ = height;
    if (painter_.hasSharedMemory() && allocateShared(bytes)) {
        return true;
    }
    pixels_ = static_cast<uint32_t*>(std::calloc(bytes, 1));
    return pixels_ != nullptr;
}

bool CX11Surface::allocateShared(size_t bytes) {
    const int segment = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (segment < 0) {
        return false;
    }
    void* block = shmat(segment, nullptr, 0);
    const bool isMapped = block != reinterpret_cast<void*>(-1);
    const uint32_t picture = isMapped ? painter_.attach(segment) : 0;
    // Goes with the last one that has it mapped: nothing stays behind a crash.
    shmctl(segment, IPC_RMID, nullptr);
    if (picture) {
        pixels_ = static_cast<uint32_t*>(block);
        picture_ = picture;
    } else if (isMapped) {
        shmdt(block);
    }
    return picture != 0;
}

}  // namespace tarv
