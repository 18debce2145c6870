#pragma once

#include "Core/CString.h"

namespace tarv {

/// Receives each line of the log. Set by tests and tools; null drops the lines. Must not log itself.
using CLogSink = void (*)(void* user, const char* line);
void setLogSink(CLogSink sink, void* user);
/// File that also takes each line, ended by CR LF: emptied at the first line, then appended to. Empty for none, as in
/// the product.
void setLogFile(const CString& path);
/// What stands behind each line of an error, for the whole process; empty for nothing.
void setLogContext(const CString& context);

/// Writes one line in 8-bit units. Never call it on the audio thread.
void logLine(const CString& text);
/// "%s // %s" with the context behind the text, or the text alone if the context is empty.
void logLineIn(const CString& text, const CString& context);
/// The same with the context of the process.
void logErrorLine(const CString& text);

}  // namespace tarv
