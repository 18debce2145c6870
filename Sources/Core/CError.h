#pragma once

#include "Core/CArray.h"
#include "Core/CString.h"

namespace tarv {

/// What went wrong: message lines first, then one location line for each level that passed it on, innermost first.
/// A null pointer is success. The holder of the pointer owns it until logError or showError consumes it.
class CError {
public:
    CError() = default;
    ~CError();
    // Lives outside the pool heap, so that it can report a failure there.
    static void* operator new(size_t size);
    static void operator delete(void* p);

    const COwnedArray<CString, 4>& lines() const { return lines_; }
    void addLine(const CString& line);
    /// All lines, each followed by CR LF.
    CString joined() const;

private:
    COwnedArray<CString, 4> lines_;
};

/// Adds a message (if not empty; see the message form in Docs) and a location line to `error`, made anew when null.
/// `sourcePath` may be __FILE__: the extension is cut off. Returns the error.
[[gnu::cold]] CError* addErrorLocation(CError* error, const char* sourcePath, int line, const CString& objectFullName,
                                       const CString& message, const CString& a1 = CString(),
                                       const CString& a2 = CString(), const CString& a3 = CString(),
                                       const CString& a4 = CString(), const CString& a5 = CString());

/// Writes the lines to the log and deletes the error; null does nothing.
void logError(CError* error);
/// Logs the error, shows it to the user, waits until dismissed, deletes it and clears the variable.
void showError(CError*& error);

/// The name that a location line carries: empty in free functions; objects of the tree hide it by their own.
inline CString errorContextName() {
    return CString();
}

}  // namespace tarv

// NOLINTBEGIN: the three treatments of a failure; a macro, since the place must be the caller's.
/// Passes a failure of `expression` on with this place added.
#define TARV_TRY(expression)                                                                                       \
    do {                                                                                                           \
        if (::tarv::CError* tarvError = (expression)) {                                                            \
            return ::tarv::addErrorLocation(tarvError, __FILE__, __LINE__, errorContextName(), ::tarv::CString()); \
        }                                                                                                          \
    } while (false)
/// Fails with a message and its arguments (texts).
#define TARV_FAIL(...) return ::tarv::addErrorLocation(nullptr, __FILE__, __LINE__, errorContextName(), __VA_ARGS__)
/// Consumes a failure: logs it and goes on.
#define TARV_CONSUME(expression) ::tarv::logError(expression)
// NOLINTEND
