// The recursive lock of POSIX systems.

#include "Platform/Lock.h"

#include <pthread.h>

#include <new>

namespace tarv {

namespace {

pthread_mutex_t* mutexIn(unsigned char* storage) {
    return std::launder(reinterpret_cast<pthread_mutex_t*>(storage));
}

void pauseOnce() {
#if defined(__x86_64__)
    __builtin_ia32_pause();
#endif
}

}  // namespace

static_assert(sizeof(pthread_mutex_t) <= 40 && alignof(pthread_mutex_t) <= 8);

CLock::CLock() {
    auto* mutex = new (storage_) pthread_mutex_t;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CLock::~CLock() {
    pthread_mutex_destroy(mutexIn(storage_));
}

void CLock::enter() {
    for (unsigned spin = 0; spin < kSpinCount; ++spin) {
        if (tryEnter()) {
            return;
        }
        pauseOnce();
    }
    pthread_mutex_lock(mutexIn(storage_));
}

bool CLock::tryEnter() {
    return pthread_mutex_trylock(mutexIn(storage_)) == 0;
}

void CLock::leave() {
    pthread_mutex_unlock(mutexIn(storage_));
}

}  // namespace tarv
