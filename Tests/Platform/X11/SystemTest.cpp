#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Platform/EventPost.h"
#include "Platform/Posix/ClockByHand.h"
#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv {
namespace {

TEST(X11System, WithoutADisplayThereAreNoWindowsAndTheLogSaysWhy) {
    const CScopedVariable none("DISPLAY", nullptr);
    // A thread that has no session yet: this one may keep that of an earlier test, which has asked for one last time.
    const auto ask = [](const char16_t* reason) {
        std::thread([reason] {
            EXPECT_EQ(systemWindows(), nullptr);
            EXPECT_EQ(noWindowsReason(), reason);
        }).join();
    };
    ask(u"There is no display: the variable DISPLAY is not set.");
    const CScopedVariable dead("DISPLAY", ":54321");
    ask(u"The display can't be opened (error 1).");
    CX11System system;
    CXRecorder recorder;
    CPlatformError error = 0;
    CSurfaceStep step = CSurfaceStep::None;
    EXPECT_EQ(system.createWindow({}, recorder, error), nullptr);
    EXPECT_NE(error, 0u);
    EXPECT_EQ(system.createSurface(1, 1, step, error), nullptr);
    EXPECT_EQ(step, CSurfaceStep::Context);
    EXPECT_EQ(system.windowAt(0, 0), 0u);
    EXPECT_EQ(system.monitorArea(0, 0), CIntRect{});
    system.stopTimer(1);
    system.serve();
}

TEST(X11System, WithoutALibraryThereAreNoWindowsAndTheLogSaysWhich) {
    const CScopedVariable name("DISPLAY", CXServer::common().display().c_str());
    for (const size_t i : {0u, 3u, 4u, 5u}) {
        CX11Library::CFiles files = CX11Library::kFiles;
        files[i] = "libnone.so.1";
        CX11System system(files);
        EXPECT_FALSE(system.isAvailable());
        EXPECT_EQ(noWindowsReason(), u"The library of the window system can't be loaded: libnone.so.1 is missing.");
    }
    CX11Library::CFiles files = CX11Library::kFiles;
    files[1] = files[2] = "libnone.so.1";
    CX11System plain(files);
    EXPECT_TRUE(plain.isAvailable());
    EXPECT_EQ(noWindowsReason(), u"");
    EXPECT_EQ(plain.monitorArea(5, 5), (CIntRect{0, 0, 800, 600})) << "the whole screen";
}

class X11Services : public CXDesktop {};

TEST_F(X11Services, TheWorkAreaIsWhatPanelsLeaveOfTheMonitor) {
    EXPECT_EQ(system.monitorArea(5, 5), (CIntRect{0, 0, 800, 600}));
    EXPECT_EQ(system.monitorArea(-500, 5000), (CIntRect{0, 0, 800, 600}));
    const uint32_t areas[] = {0, 0, 800, 600, 0, 30, 790, 550};
    const uint32_t current = 1;
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, client.root(), client.atom("_NET_WORKAREA"),
                        XCB_ATOM_CARDINAL, 32, 8, areas);
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, client.root(), client.atom("_NET_CURRENT_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &current);
    client.sync();
    EXPECT_EQ(system.monitorArea(5, 5), (CIntRect{0, 30, 790, 580}));
    xcb_delete_property(client.connection(), client.root(), client.atom("_NET_WORKAREA"));
    xcb_delete_property(client.connection(), client.root(), client.atom("_NET_CURRENT_DESKTOP"));
    client.sync();
}

/// A timer that notes its calls, and may do more.
class CTicks : public CTimerHandler {
public:
    void onTimer() override {
        ++count;
        if (const auto call = act)
            call();
    }
    int count = 0;
    std::function<void()> act;
};

/// The clock of the process by hand for a scope.
struct CHandClock {
    CHandClock() { setClockByHand(100.0); }
    ~CHandClock() { releaseClock(); }
};

TEST_F(X11Services, TimersFollowTheClockAndDropWhatTheyMissed) {
    const CHandClock clock;
    CTicks ticks;
    CPlatformError error = 1;
    bool isWindow = true;
    const CTimerId id = system.startTimer(ticks, 25, error, isWindow);
    EXPECT_NE(id, 0u);
    EXPECT_EQ(error, 0u);
    EXPECT_FALSE(isWindow);
    system.serve();
    EXPECT_EQ(ticks.count, 0);
    // Served every 20 ms for a little more than a second: 40 calls of 25 ms.
    for (int i = 1; i <= 51; ++i) {
        setClockByHand(100.0 + i * 0.02);
        system.serve();
    }
    EXPECT_EQ(ticks.count, 40);
    setClockByHand(200.0);
    system.serve();
    system.serve();
    EXPECT_EQ(ticks.count, 41);
    system.stopTimer(id);
    system.stopTimer(id);
    setClockByHand(300.0);
    system.serve();
    EXPECT_EQ(ticks.count, 41);
}

TEST_F(X11Services, AnIntervalOf0IsTenMilliseconds) {
    const CHandClock clock;
    CTicks ticks;
    CPlatformError error = 0;
    bool isWindow = false;
    const CTimerId id = system.startTimer(ticks, 0, error, isWindow);
    setClockByHand(100.009);
    system.serve();
    EXPECT_EQ(ticks.count, 0);
    setClockByHand(100.0101);
    system.serve();
    EXPECT_EQ(ticks.count, 1);
    system.stopTimer(id);
}

TEST_F(X11Services, ATimerMayStopItselfAndOthersAndStartNewOnes) {
    const CHandClock clock;
    CTicks first, second, third;
    CPlatformError error = 0;
    bool isWindow = false;
    const CTimerId a = system.startTimer(first, 10, error, isWindow);
    const CTimerId b = system.startTimer(second, 10, error, isWindow);
    CTimerId c = 0;
    first.act = [&] {
        system.stopTimer(a);
        system.stopTimer(b);
        c = system.startTimer(third, 10, error, isWindow);
        system.serve();
    };
    setClockByHand(100.5);
    system.serve();
    EXPECT_EQ(first.count, 1);
    EXPECT_EQ(second.count, 0);
    EXPECT_EQ(third.count, 0);
    setClockByHand(101.0);
    system.serve();
    EXPECT_EQ(third.count, 1);
    system.stopTimer(c);
}

TEST_F(X11Services, PostsOfOtherThreadsArriveWhenServed) {
    CXRecorder recorder;
    const auto window = child(recorder);
    std::vector<uintptr_t> cookies;
    CEventWindow events = 0;
    ASSERT_EQ(openEventWindow(
                  [](void* user, uintptr_t cookie) { static_cast<std::vector<uintptr_t>*>(user)->push_back(cookie); },
                  &cookies, events),
              0u);
    ASSERT_EQ(postEvent(events, 5), 0u);
    system.serve();
    EXPECT_EQ(cookies, std::vector<uintptr_t>{5});
    closeEventWindow(events);
}

TEST_F(X11Services, ALoopOfTheHostServesWithoutItsIdleCalls) {
    void* library = dlopen("libglib-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    const auto context = reinterpret_cast<void* (*)()>(dlsym(library, "g_main_context_default"));
    const auto acquire = reinterpret_cast<int (*)(void*)>(dlsym(library, "g_main_context_acquire"));
    const auto release = reinterpret_cast<void (*)(void*)>(dlsym(library, "g_main_context_release"));
    const auto iterate = reinterpret_cast<int (*)(void*, int)>(dlsym(library, "g_main_context_iteration"));
    ASSERT_TRUE(acquire(context()));
    CTicks ticks;
    CPlatformError error = 0;
    bool isWindow = false;
    {
        CX11System own;
        const CTimerId id = own.startTimer(ticks, 10, error, isWindow);
        for (int i = 0; i < 500 && ticks.count < 3; ++i)
            iterate(context(), 1);
        EXPECT_GE(ticks.count, 3);
        // The last timer takes the source along from inside its own call.
        ticks.act = [&] { own.stopTimer(id); };
        const int before = ticks.count;
        for (int i = 0; i < 100 && ticks.count == before; ++i)
            iterate(context(), 1);
        EXPECT_EQ(ticks.count, before + 1);
    }
    EXPECT_FALSE(iterate(context(), 0)) << "no source is left";
    release(context());
    dlclose(library);
}

/// A program named `zenity` in a separate folder, the only one in PATH.
class X11FileDialog : public CXDesktop {
protected:
    X11FileDialog() { std::filesystem::create_directories(folder); }
    ~X11FileDialog() override { std::filesystem::remove_all(folder); }
    void makeProgram(const std::string& script) {
        const std::string file = folder / "zenity";
        std::ofstream(file) << "#!/bin/sh\n" << script;
        chmod(file.c_str(), 0755);
    }
    std::string content(const char* name) const {
        std::ifstream in(folder / name);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "tarv-zenity";
    const CScopedVariable search{"PATH", (std::filesystem::temp_directory_path() / "tarv-zenity").c_str()};
    CFileDialogRequest request;
    std::u16string path, message;
};

TEST_F(X11FileDialog, WithoutTheProgramTheMessageNamesIt) {
    EXPECT_FALSE(system.askForFile(request, path, message));
    EXPECT_EQ(message, u"There is no file dialog: please install the program \"zenity\".");
}

TEST_F(X11FileDialog, PassesWhatIsAskedForWithoutAShellAndReturnsThePath) {
    makeProgram("printf '%s\\n' \"$@\" \"$WINDOWID\" \"$LD_LIBRARY_PATH\" > " + (folder / "arguments").string() +
                "\necho '/tmp/\xc3\xa4 $x'\n");
    // What a host brings along for itself is not for other programs.
    const CScopedVariable libraries("LD_LIBRARY_PATH", "/nowhere");
    CXRecorder recorder;
    const auto window = child(recorder);
    request.isSave = true;
    request.owner = window->handle();
    request.title = u"Save \"$HOME\"; `x`";
    request.folder = u"/tmp";
    request.name = u"a b.aprs";
    request.filterName = u"Preset";
    request.extension = u"aprs";
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_EQ(path, u"/tmp/\u00e4 $x.aprs");
    EXPECT_EQ(message, u"");
    EXPECT_EQ(content("arguments"),
              "--file-selection\n--title=Save \"$HOME\"; `x`\n--save\n--confirm-overwrite\n"
              "--filename=/tmp/a b.aprs\n--file-filter=Preset | *.aprs\n" +
                  std::to_string(window->handle()) + "\n\n");
}

TEST_F(X11FileDialog, AllFilesCanBeOfferedAndAFileToBeReadKeepsItsName) {
    makeProgram("printf '%s\\n' \"$@\" > " + (folder / "arguments").string() + "\necho /tmp/x\n");
    request.filterName = u"Preset";
    request.extension = u"cpf";
    request.isAllOffered = true;
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_EQ(path, u"/tmp/x");
    EXPECT_EQ(content("arguments"),
              "--file-selection\n--title=\n--file-filter=Preset | *.cpf\n--file-filter=All files | *\n");
}

TEST_F(X11FileDialog, AnEndingThatLeadsToAnotherFileIsAskedAboutAgain) {
    // The program has asked about "there", and "there.cpf" is what would be overwritten.
    std::ofstream(folder / "there.cpf") << "x";
    makeProgram("printf '%s ' \"$@\" >> " + (folder / "arguments").string() + "\nif [ -f " +
                (folder / "second").string() + " ]; then echo " + (folder / "other").string() + "; else : > " +
                (folder / "second").string() + "; echo " + (folder / "there").string() + "; fi\n");
    request.isSave = true;
    request.extension = u"cpf";
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_EQ(path, (folder / "other.cpf").u16string());
    EXPECT_NE(content("arguments").find("--filename=" + (folder / "there.cpf").string()), std::string::npos);
    // The user agrees to that file.
    makeProgram("echo " + (folder / "there.cpf").string() + "\n");
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_EQ(path, (folder / "there.cpf").u16string());
}

TEST_F(X11FileDialog, AFolderIsAskedForAsSuch) {
    makeProgram("printf '%s ' \"$@\" > " + (folder / "arguments").string() + "\necho /tmp/x\n");
    request.isFolder = true;
    request.extension = u"aprs";
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_EQ(path, u"/tmp/x");
    EXPECT_EQ(content("arguments"), "--file-selection --title= --directory ");
}

TEST_F(X11FileDialog, GivingUpIsNoErrorAndABrokenProgramIs) {
    makeProgram("exit 1\n");
    EXPECT_FALSE(system.askForFile(request, path, message));
    EXPECT_EQ(message, u"");
    makeProgram("exit 5\n");
    EXPECT_FALSE(system.askForFile(request, path, message));
    EXPECT_EQ(message, u"The file dialog has ended with an error.");
}

TEST_F(X11FileDialog, WarningsOfTheProgramStayOutOfTheHostsMessages) {
    makeProgram("echo a warning >&2\necho /tmp/preset\n");
    testing::internal::CaptureStderr();
    const bool isChosen = system.askForFile(request, path, message);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(isChosen);
    EXPECT_EQ(path, u"/tmp/preset");
}

TEST_F(X11FileDialog, WindowsAndTimersGoOnWhileItIsOpen) {
    // It waits for a sign that only a timer of this program gives.
    const std::string sign = folder / "sign";
    makeProgram("while [ ! -f " + sign + " ]; do /bin/sleep 0.01; done\necho /tmp/x\n");
    CXRecorder recorder;
    const auto window = child(recorder);
    recorder.paints.clear();
    CTicks ticks;
    ticks.act = [&] {
        window->invalidate({0, 0, 1, 1});
        if (ticks.count == 5)
            std::ofstream(sign) << "x";
    };
    CPlatformError error = 0;
    bool isWindow = false;
    const CTimerId id = system.startTimer(ticks, 10, error, isWindow);
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_GE(ticks.count, 5);
    EXPECT_GE(recorder.paints.size(), 4u);
    system.stopTimer(id);
}

TEST_F(X11FileDialog, EndsWithTheWindowThatItWasOpenedFrom) {
    makeProgram("exec /bin/sleep 60\n");
    CXRecorder recorder;
    auto window = child(recorder);
    request.owner = window->handle();
    CTicks ticks;
    ticks.act = [&] { window.reset(); };
    CPlatformError error = 0;
    bool isWindow = false;
    const CTimerId id = system.startTimer(ticks, 20, error, isWindow);
    EXPECT_FALSE(system.askForFile(request, path, message));
    EXPECT_EQ(message, u"");
    system.stopTimer(id);
}

}  // namespace
}  // namespace tarv
