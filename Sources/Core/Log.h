#pragma once

#include "Core/CString.h"

namespace tarv {

/// Receives each line of the log. Set by tests and tools; null drops the lines.
using CLogSink = void (*)(void* user, const char* line);
void setLogSink(CLogSink sink, void* user);
/// Writes one line to the sink, if any. Never call it on the audio thread.
void logLine(const CString& text);
/// "%s // %s" with the context behind the text, or the text alone if the context is empty.
void logLineIn(const CString& text, const CString& context);

}  // namespace tarv
