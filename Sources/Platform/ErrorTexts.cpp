// Texts of the error window, the same on every system.

#include "Platform/ErrorWindow.h"

namespace tarv {

const char* const kErrorTitle = "Tarvelo Application Message";

const char* const kErrorExplanation =
    "An issue has happened when executing Tarvelo application.\n\n"
    "If this issue persists please contact Tarvelo support staff as soon as possible. Please copy the following "
    "information to the clipboard by selecting its text and pressing Ctrl+Insert, and send it via e-mail to "
    "support@tarvelo.example. Use Shift+Insert to insert information from the clipboard into your e-mail message.";

}  // namespace tarv
