#include "Core/Log.h"

#include <new>

#include "Platform/File.h"
#include "Platform/Lock.h"

namespace tarv {

namespace {

struct CLogState {
    CLock lock;
    CLogSink sink = nullptr;
    void* user = nullptr;
    CString context;
    CString path;
    bool isFileBegun = false;
};

// Never destroyed: objects with static lifetime may log after main has ended.
CLogState& logState() {
    alignas(CLogState) static unsigned char storage[sizeof(CLogState)];
    static CLogState* state = new (storage) CLogState;
    return *state;
}

/// A log that can't be written has nowhere to report it.
void writeToFile(CLogState& state, const CString& line) {
    CFile file;
    if (file.open(state.path.wideData(), state.isFileBegun ? CFileAccess::kAppend : CFileAccess::kRewrite,
                  {true, true}) != 0) {
        return;
    }
    state.isFileBegun = true;
    const CString ended = line + "\r\n";
    int64_t count = ended.length();
    (void)file.write(ended.narrowData(), count);
}

}  // namespace

void setLogSink(CLogSink sink, void* user) {
    CLogState& state = logState();
    CLockScope scope(state.lock);
    state.sink = sink;
    state.user = user;
}

void setLogFile(const CString& path) {
    CLogState& state = logState();
    CLockScope scope(state.lock);
    state.path = path;
    state.path.widen();
    state.isFileBegun = false;
}

void setLogContext(const CString& context) {
    CLogState& state = logState();
    CLockScope scope(state.lock);
    state.context = context;
}

void logLine(const CString& text) {
    CString line(text);
    line.narrow();
    CLogState& state = logState();
    CLockScope scope(state.lock);
    if (state.sink) {
        state.sink(state.user, line.narrowData());
    }
    if (!state.path.isEmpty()) {
        writeToFile(state, line);
    }
}

void logLineIn(const CString& text, const CString& context) {
    logLine(context.isEmpty() ? text : text + " // " + context);
}

void logErrorLine(const CString& text) {
    CString context;
    {
        CLogState& state = logState();
        CLockScope scope(state.lock);
        context = state.context;
    }
    logLineIn(text, context);
}

}  // namespace tarv
