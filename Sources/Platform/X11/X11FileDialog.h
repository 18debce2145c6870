#pragma once

#include <functional>

#include "Platform/WindowSystem.h"

namespace tarv {

/// Asks for a file by the desktop's own dialog, which the program `zenity` shows in another process. While it is
/// open, `serve` is called every 10 ms at least; false from it ends the dialog. False if the user gave up, or with a
/// `message` for the user if there is no dialog.
bool askByDesktop(const CFileDialogRequest& request, const std::function<bool()>& serve, std::u16string& path,
                  std::u16string& message);

}  // namespace tarv
