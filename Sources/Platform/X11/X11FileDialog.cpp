// The desktop's file dialog, in a child process that no shell starts.

#include "Platform/X11/X11FileDialog.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Platform/Posix/PathText.h"

extern char** environ;

namespace tarv {

namespace {

constexpr const char* kProgram = "zenity";
constexpr int kServeMilliseconds = 10;
/// How the program ends when the user gives up.
constexpr int kCancelled = 1;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> argumentsOf(const CFileDialogRequest& request) {
    std::vector<std::string> arguments = {kProgram, "--file-selection"};
    arguments.push_back("--title=" + utf16ToUtf8(request.title.c_str()));
    if (request.isFolder) {
        arguments.push_back("--directory");
    }
    if (request.isSave && !request.isFolder) {
        arguments.push_back("--save");
        arguments.push_back("--confirm-overwrite");
    }
    std::string start = pathToUtf8(request.folder.c_str());
    if (!start.empty() && start.back() != '/') {
        start += '/';
    }
    start += pathToUtf8(request.name.c_str());
    if (!start.empty()) {
        arguments.push_back("--filename=" + start);
    }
    const std::string extension = utf16ToUtf8(request.extension.c_str());
    if (!extension.empty() && !request.isFolder) {
        arguments.push_back("--file-filter=" + utf16ToUtf8(request.filterName.c_str()) + " | *." + extension);
        if (request.isAllOffered) {
            arguments.push_back("--file-filter=All files | *");
        }
    }
    return arguments;
}

/// The environment of the host, without the libraries that it may bring along for itself, and with the window that the
/// dialog stands in front of.
std::vector<std::string> variablesFor(CWindowHandle owner) {
    std::vector<std::string> variables;
    for (char** it = environ; it && *it; ++it) {
        const std::string text = *it;
        if (!text.starts_with("LD_LIBRARY_PATH=") && !text.starts_with("LD_PRELOAD=") &&
            !text.starts_with("WINDOWID=")) {
            variables.push_back(text);
        }
    }
    if (owner) {
        variables.push_back("WINDOWID=" + std::to_string(owner));
    }
    return variables;
}

/// Starts the program with its output in `pipe` and without its warnings. Returns the system's number of a failure,
/// otherwise 0.
int start(const CFileDialogRequest& request, int pipe, pid_t& process) {
    std::vector<std::string> arguments = argumentsOf(request);
    std::vector<std::string> variables = variablesFor(request.owner);
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipe, STDOUT_FILENO);
    // Its warnings would appear among the messages of the host.
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // Signals as a program expects them, whatever the host has blocked or ignores.
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    sigdelset(&all, SIGKILL);
    sigdelset(&all, SIGSTOP);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    const int error = posix_spawnp(&process, kProgram, &actions, &attributes, pointersTo(arguments).data(),
                                   pointersTo(variables).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

/// Reads what the program writes until it ends it; false if `serve` asks for the end.
bool readWhileServing(int pipe, const std::function<bool()>& serve, std::string& output) {
    for (;;) {
        pollfd file{pipe, POLLIN, 0};
        if (poll(&file, 1, kServeMilliseconds) > 0) {
            char bytes[4096];
            const ssize_t count = read(pipe, bytes, sizeof bytes);
            if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN)) {
                return true;
            }
            output.append(bytes, static_cast<size_t>(std::max<ssize_t>(count, 0)));
        }
        if (!serve()) {
            return false;
        }
    }
}

/// How the program has ended, -1 if it was by a signal; `kCancelled` if the host has taken that report.
int endOf(pid_t process) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(process, &status, 0);
    } while (ended < 0 && errno == EINTR);
    return ended < 0 ? kCancelled : WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::u16string withExtension(std::u16string path, const CFileDialogRequest& request) {
    const std::u16string ending = u"." + request.extension;
    if (request.isSave && !request.isFolder && !request.extension.empty() && !path.ends_with(ending)) {
        path += ending;
    }
    return path;
}

/// One dialog; `path` is what was chosen in it.
bool askOnce(const CFileDialogRequest& request, const std::function<bool()>& serve, std::u16string& path,
             std::u16string& message) {
    path.clear();
    message.clear();
    int pipes[2];
    if (pipe2(pipes, O_CLOEXEC) != 0) {
        message = u"Unable to open a file dialog.";
        return false;
    }
    pid_t process = 0;
    const int error = start(request, pipes[1], process);
    close(pipes[1]);
    std::string output;
    bool isDone = false;
    int end = -1;
    if (!error) {
        isDone = readWhileServing(pipes[0], serve, output);
        if (!isDone) {
            kill(process, SIGTERM);
        }
        end = endOf(process);
    }
    close(pipes[0]);
    if (error) {
        message = error == ENOENT ? u"There is no file dialog: please install the program \"zenity\"."
                                  : u"Unable to open a file dialog.";
        return false;
    }
    while (!output.empty() && output.back() == '\n') {
        output.pop_back();
    }
    if (isDone && end != 0 && end != kCancelled) {
        message = u"The file dialog has ended with an error.";
    }
    // A report that the host has taken leaves the path as the only sign.
    if (!isDone || !message.empty() || output.empty()) {
        return false;
    }
    path = pathToUtf16(output.c_str());
    return true;
}

}  // namespace

bool askByDesktop(const CFileDialogRequest& request, const std::function<bool()>& serve, std::u16string& path,
                  std::u16string& message) {
    CFileDialogRequest asked = request;
    while (askOnce(asked, serve, path, message)) {
        const std::u16string whole = withExtension(path, request);
        // The dialog has asked about the name without its ending, and a file of the whole name is there, too.
        if (whole == path || access(pathToUtf8(whole.c_str()).c_str(), F_OK) != 0) {
            path = whole;
            return true;
        }
        asked.folder.clear();
        asked.name = whole;
    }
    return false;
}

}  // namespace tarv
