#pragma once

#include <windows.h>

#include <string>

#include "CVstHost.h"

namespace tarv::host {

/// A window with the editor of an effect, and below it the values that a host sees. Closes the editor when destroyed.
/// Thread: that of the effect.
class CEditorWindow {
public:
    CEditorWindow(CVstHost& host, const std::string& title);
    ~CEditorWindow();
    CEditorWindow(const CEditorWindow&) = delete;
    CEditorWindow& operator=(const CEditorWindow&) = delete;

    /// False when the effect opens none.
    bool open();
    /// Serves the thread's windows until this one is closed, or that many seconds are over; 0 for ever.
    void run(double seconds);
    /// Shown behind the values.
    void setNote(const std::string& note) { note_ = note; }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
    /// Follows the size that the editor wants.
    void fit();
    void readValues();
    void paintValues();

    CVstHost& host_;
    HWND window_ = nullptr;
    HWND parent_ = nullptr;  ///< of the editor, at the top of the window
    SIZE size_{};            ///< of the editor
    std::string values_;
    std::string note_;
};

}  // namespace tarv::host
