#include "Core/CError.h"

#include <cstring>

#include "Core/Log.h"
#include "Platform/ErrorWindow.h"
#include "Platform/ProcessHeap.h"

namespace tarv {

namespace {

/// The text of a message without the identifier in front of it.
CString messageText(const CString& message) {
    const int32_t blank = message.indexOf(' ');
    return message.at(0) == '@' && blank >= 0 ? message.substring(blank + 1) : message;
}

CString withoutExtension(const char* path) {
    const char* dot = std::strrchr(path, '.');
    const char* slash = std::strrchr(path, '/');
    const bool isExtension = dot && (!slash || dot > slash);
    return CString(path, static_cast<int32_t>(isExtension ? dot - path : std::strlen(path)));
}

CString locationLine(const char* sourcePath, int line, const CString& objectFullName) {
    CString text = withoutExtension(sourcePath);
    text += "( ";
    text += CString::fromInt(line);
    text += " )";
    if (!objectFullName.isEmpty()) {
        text += " // ";
        text += objectFullName;
    }
    return text;
}

}  // namespace

CError::~CError() {
    lines_.deleteAll();
}

void* CError::operator new(size_t size) {
    return processHeapAlloc(size);
}

void CError::operator delete(void* p) {
    processHeapFree(p);
}

void CError::addLine(const CString& line) {
    lines_.append(new CString(line));
}

CString CError::joined() const {
    CString text;
    for (const CString* line : lines_) {
        text += *line;
        text += "\r\n";
    }
    return text;
}

CError* addErrorLocation(CError* error, const char* sourcePath, int line, const CString& objectFullName,
                         const CString& message, const CString& a1, const CString& a2, const CString& a3,
                         const CString& a4, const CString& a5) {
    if (!error) {
        error = new CError;
    }
    if (!message.isEmpty()) {
        const CString arguments[] = {a1, a2, a3, a4, a5};
        CString text;
        // A file name may hold any unit: the line takes the width of its text.
        for (const CString& argument : arguments) {
            if (argument.isWide()) {
                text.widen();
            }
        }
        text.format(messageText(message), arguments, 5);
        error->addLine(text);
    }
    error->addLine(locationLine(sourcePath, line, objectFullName));
    return error;
}

void logError(CError* error) {
    if (!error) {
        return;
    }
    for (const CString* line : error->lines()) {
        logErrorLine(*line);
    }
    delete error;
}

void showError(CError*& error) {
    CString details(error ? error->joined() : CString("<no details>"));
    logError(std::exchange(error, nullptr));
    details.widen();
    showErrorWindow(details.wideData());
}

}  // namespace tarv
