#pragma once

#include <windows.h>

#include "Platform/WindowSystem.h"

namespace tarv {

/// As CWindowSystem::askForFile, by the system's own dialogs. The current folder of the process stays as it was.
bool showFileDialog(const CFileDialogRequest& request, std::u16string& path, std::u16string& message);
/// Of the dialogs' own number; empty for 0, by which the user gave up.
std::u16string fileDialogMessage(CPlatformError number);
/// Ends dialogs that a window of this thread owns as a user would, by cancelling them; they return to their caller
/// when their loop runs again.
void closeFileDialogs(HWND owner);

}  // namespace tarv
