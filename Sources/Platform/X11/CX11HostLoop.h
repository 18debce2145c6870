#pragma once

#include <cstdint>
#include <functional>

namespace tarv {

/// Calls a function every 10 ms from the loop that the host's thread runs, where that is one of GLib (hosts on GTK, and
/// on Qt as most systems build it), so that an editor lives without idle calls, too. Elsewhere, or on a thread that
/// does not run the process's main loop, it does nothing. One thread.
class CX11HostLoop {
public:
    explicit CX11HostLoop(std::function<void()> call);
    ~CX11HostLoop();
    CX11HostLoop(const CX11HostLoop&) = delete;
    CX11HostLoop& operator=(const CX11HostLoop&) = delete;

    bool isRunning() const { return source_ != 0; }

private:
    static int onTimeout(void* self);

    const std::function<void()> call_;
    const uint64_t threadId_;
    void* library_ = nullptr;
    unsigned source_ = 0;
};

}  // namespace tarv
