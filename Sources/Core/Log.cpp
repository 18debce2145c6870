#include "Core/Log.h"

#include "Platform/Lock.h"

namespace tarv {

namespace {

struct CLogState {
    CLock lock;
    CLogSink sink = nullptr;
    void* user = nullptr;
};

CLogState& logState() {
    alignas(CLogState) static unsigned char storage[sizeof(CLogState)];
    static CLogState* state = new (storage) CLogState;
    return *state;
}

}  // namespace

void setLogSink(CLogSink sink, void* user) {
    CLogState& state = logState();
    CLockScope scope(state.lock);
    state.sink = sink;
    state.user = user;
}

void logLine(const CString& text) {
    CString line(text);
    line.narrow();
    CLogState& state = logState();
    CLockScope scope(state.lock);
    if (state.sink) {
        state.sink(state.user, line.narrowData());
    }
}

void logLineIn(const CString& text, const CString& context) {
    logLine(context.isEmpty() ? text : text + " // " + context);
}

}  // namespace tarv
