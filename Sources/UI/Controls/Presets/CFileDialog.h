#pragma once

#include "Core/CString.h"

namespace tarv {

class CViewBase;

/// A file dialog in the platform's form, on the thread of the editor. It runs a loop of messages of its own: what the
/// caller uses may be destroyed before it returns. It ends with the window of the view that asks.
class CFileDialog {
public:
    struct CRequest {
        bool isSave = false;
        CString title;
        CString filterName;  ///< e.g. "Compressed bank files"; all files are offered, too
        CString extension;   ///< without a dot; appended to a name to be saved that lacks it
        CString folder;      ///< to begin in; empty: the platform's choice
        CString name;        ///< offered name
    };

    /// False if the user gave up, or with a `message` if no dialog can be shown.
    static bool ask(const CViewBase& view, const CRequest& request, CString& path, CString& message);
    /// A name for a file: what the file systems forbid becomes "_", and what is longer than kMaxName is cut.
    static CString fileNameOf(const CString& name);
    static constexpr int32_t kMaxName = 100;
    /// The last part of a path, and the folder before it without a separator at its end.
    static CString nameIn(const CString& path);
    static CString folderIn(const CString& path);
};

}  // namespace tarv
