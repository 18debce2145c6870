#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Platform/Win32/FileDialog.h"
#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

/// A user who waits for a dialog of this thread and answers it.
class CDialogUser {
public:
    explicit CDialogUser(WORD command)
        : dialogThread_(GetCurrentThreadId()), thread_([this, command] {
              for (int i = 0; i < 1000 && !isOver_; ++i) {
                  if (const HWND dialog = find()) {
                      hasSeen = true;
                      // Until it is gone: one that is just being filled does not listen yet.
                      if (command == IDCANCEL || isFilled(dialog)) {
                          PostMessageW(dialog, WM_COMMAND, command, 0);
                      }
                  }
                  Sleep(20);
              }
          }) {}
    ~CDialogUser() {
        isOver_ = true;
        thread_.join();
    }
    CDialogUser(const CDialogUser&) = delete;
    CDialogUser& operator=(const CDialogUser&) = delete;

    std::atomic<bool> hasSeen{false};

private:
    static BOOL CALLBACK note(HWND window, LPARAM found) {
        wchar_t name[16] = {};
        GetClassNameW(window, name, 16);
        if (std::wstring(name) == L"#32770" && IsWindowVisible(window)) {
            *reinterpret_cast<HWND*>(found) = window;
        }
        return TRUE;
    }
    /// A dialog of folders shows itself before it has chosen the one to begin in.
    static BOOL CALLBACK noteTree(HWND window, LPARAM found) {
        wchar_t name[32] = {};
        GetClassNameW(window, name, 32);
        if (std::wstring(name) == WC_TREEVIEWW && IsWindowVisible(window)) {
            *reinterpret_cast<HWND*>(found) = window;
        }
        return TRUE;
    }
    static bool isFilled(HWND dialog) {
        HWND tree = nullptr;
        EnumChildWindows(dialog, &noteTree, reinterpret_cast<LPARAM>(&tree));
        if (!tree) {
            return true;
        }
        wchar_t text[64] = {};
        TVITEMW item{};
        item.mask = TVIF_TEXT;
        item.hItem = reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
        item.pszText = text;
        item.cchTextMax = 64;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        return std::wstring(text) == L"tarv-dialogs";
    }
    HWND find() const {
        HWND found = nullptr;
        EnumThreadWindows(dialogThread_, &note, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    DWORD dialogThread_;
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

class Win32FileDialog : public testing::Test {
protected:
    std::filesystem::path folder = std::filesystem::temp_directory_path() / "tarv-dialogs";
    CFileDialogRequest request;
    std::u16string path = u"old";
    std::u16string message = u"old";

    void SetUp() override {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "there.preset") << "x";
        request.title = u"Choose";
        request.folder = folder.generic_u16string();
        request.filterName = u"Preset";
        request.extension = u"preset";
    }
    void TearDown() override { std::filesystem::remove_all(folder); }
    bool ask(WORD command) {
        const auto before = std::filesystem::current_path();
        CDialogUser user(command);
        const bool isChosen = windowSystem()->askForFile(request, path, message);
        EXPECT_TRUE(user.hasSeen);
        EXPECT_EQ(std::filesystem::current_path(), before) << "the current folder is the process's";
        return isChosen;
    }
};

TEST_F(Win32FileDialog, ANameToSaveGetsTheExtension) {
    request.isSave = true;
    request.name = u"mine";
    EXPECT_TRUE(ask(IDOK));
    EXPECT_EQ(path.find(u'\\'), std::u16string::npos);
    EXPECT_TRUE(path.ends_with(u"/tarv-dialogs/mine.preset")) << std::filesystem::path(path).string();
    EXPECT_EQ(message, u"");
}

TEST_F(Win32FileDialog, AFileToOpenIsThere) {
    request.name = u"there.preset";
    EXPECT_TRUE(ask(IDOK));
    EXPECT_TRUE(path.ends_with(u"/tarv-dialogs/there.preset")) << std::filesystem::path(path).string();
}

TEST_F(Win32FileDialog, AUserWhoGivesUpGetsNoMessage) {
    EXPECT_FALSE(ask(IDCANCEL));
    EXPECT_EQ(path, u"");
    EXPECT_EQ(message, u"");
    request.isSave = true;
    EXPECT_FALSE(ask(IDCANCEL));
    request.isFolder = true;
    EXPECT_FALSE(ask(IDCANCEL));
    EXPECT_EQ(message, u"");
}

TEST_F(Win32FileDialog, AFolderIsChosen) {
    request.isFolder = true;
    EXPECT_TRUE(ask(IDOK));
    EXPECT_TRUE(path.ends_with(u"/tarv-dialogs")) << std::filesystem::path(path).string();
}

TEST_F(Win32FileDialog, ANameOfAnyLengthIsOfferedOrCut) {
    request.isSave = true;
    request.name = std::u16string(100000, u'n');
    EXPECT_FALSE(ask(IDCANCEL));
    EXPECT_EQ(message, u"");
}

// Wine's dialogs refuse nothing that a caller can ask for.
TEST(Win32FileDialogMessage, NamesTheNumberOfAFailure) {
    EXPECT_EQ(fileDialogMessage(0), u"");
    EXPECT_EQ(fileDialogMessage(0x3002), u"The file dialog could not be shown: error 12290.");
}

/// Acts while a dialog runs the loop of its thread.
class CCloser final : public CTimerHandler {
public:
    explicit CCloser(std::function<void()> act) : act_(std::move(act)) {}
    void onTimer() override {
        const int tick = ++ticks_;
        if (tick == 20) {
            act_();
        } else if (tick == 200) {
            ADD_FAILURE() << "the dialog stays";
            EnumThreadWindows(GetCurrentThreadId(), &cancel, 0);
        }
    }

private:
    static BOOL CALLBACK cancel(HWND window, LPARAM) {
        PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        return TRUE;
    }

    std::function<void()> act_;
    int ticks_ = 0;
};

TEST_F(Win32FileDialog, ADialogClosesWithTheWindowThatOwnsIt) {
    for (const bool isParentFirst : {false, true}) {
        CHostWindow host;
        const HWND frame = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200, host.window(),
                                           nullptr, nullptr, nullptr);
        CNotes notes;
        auto child = openChild(host, notes);
        SetParent(reinterpret_cast<HWND>(child->handle()), frame);
        request.owner = child->handle();
        CCloser closer([&] {
            if (isParentFirst) {
                DestroyWindow(frame);
            } else {
                child.reset();
            }
        });
        CPlatformError error = 0;
        bool isWindow = false;
        const CTimerId timer = windowSystem()->startTimer(closer, 20, error, isWindow);
        EXPECT_FALSE(windowSystem()->askForFile(request, path, message));
        windowSystem()->stopTimer(timer);
        EXPECT_TRUE(!child || child->handle() == 0);
        EXPECT_EQ(message, u"");
        EXPECT_TRUE(IsWindowEnabled(host.window()));
    }
}

}  // namespace
}  // namespace tarv
