// Replaces the kernel's ALSA sequencer for a host that does not start without one: preloaded, it accepts ports, queues
// and events, delivers none and reports no other client. Calls that only read or write a record stay in libasound.

#include <sys/eventfd.h>
#include <sys/poll.h>

#include <atomic>
#include <cerrno>

namespace {

constexpr int kClient = 128;  // the first number that the kernel gives to a program

char sequencer;
std::atomic<int> ports{0};

/// Never readable: no event arrives.
int silentDescriptor() {
    static const int descriptor = eventfd(0, EFD_CLOEXEC);
    return descriptor;
}

}  // namespace

// Handles and records are opaque here; the headers of libasound are not needed.
extern "C" {
#pragma GCC visibility push(default)

int snd_seq_open(void** handle, const char*, int, int) {
    *handle = &sequencer;
    return 0;
}
int snd_seq_close(void*) {
    return 0;
}
int snd_seq_client_id(void*) {
    return kClient;
}
int snd_seq_set_client_name(void*, const char*) {
    return 0;
}

int snd_seq_create_simple_port(void*, const char*, unsigned, unsigned) {
    return ports++;
}
int snd_seq_delete_simple_port(void*, int) {
    return 0;
}
int snd_seq_get_port_info(void*, int, void*) {
    return 0;
}
int snd_seq_set_port_info(void*, int, void*) {
    return 0;
}
int snd_seq_subscribe_port(void*, void*) {
    return 0;
}
int snd_seq_unsubscribe_port(void*, void*) {
    return 0;
}

int snd_seq_query_next_client(void*, void*) {
    return -ENOENT;
}
int snd_seq_query_next_port(void*, void*) {
    return -ENOENT;
}
int snd_seq_query_port_subscribers(void*, void*) {
    return -ENOENT;
}
int snd_seq_get_any_client_info(void*, int, void*) {
    return -ENOENT;
}
int snd_seq_get_any_port_info(void*, int, int, void*) {
    return -ENOENT;
}

int snd_seq_alloc_queue(void*) {
    return 0;
}
int snd_seq_free_queue(void*, int) {
    return 0;
}
int snd_seq_control_queue(void*, int, int, int, void*) {
    return 0;
}
// Records keep what the host wrote to them: time 0, no skew.
int snd_seq_get_queue_status(void*, int, void*) {
    return 0;
}
int snd_seq_get_queue_tempo(void*, int, void*) {
    return 0;
}
int snd_seq_set_queue_tempo(void*, int, void*) {
    return 0;
}
int snd_seq_set_queue_timer(void*, int, void*) {
    return 0;
}

int snd_seq_poll_descriptors_count(void*, short) {
    return 1;
}
int snd_seq_poll_descriptors(void*, pollfd* descriptors, unsigned space, short) {
    if (space < 1) {
        return 0;
    }
    *descriptors = {silentDescriptor(), POLLIN, 0};
    return 1;
}
int snd_seq_event_input(void*, void** event) {
    *event = nullptr;
    return -EAGAIN;
}
int snd_seq_event_input_pending(void*, int) {
    return 0;
}
int snd_seq_event_output(void*, void*) {
    return 0;
}
int snd_seq_event_output_direct(void*, void*) {
    return 0;
}
int snd_seq_free_event(void*) {
    return 0;
}
int snd_seq_drain_output(void*) {
    return 0;
}
int snd_seq_drop_input(void*) {
    return 0;
}
int snd_seq_drop_output(void*) {
    return 0;
}
int snd_seq_remove_events(void*, void*) {
    return 0;
}

#pragma GCC visibility pop
}
