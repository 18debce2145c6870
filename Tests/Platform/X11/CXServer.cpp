#include "Tests/Platform/X11/CXServer.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace tarv {

namespace {

/// Starts a program that ends with this process.
int startProgram(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    const pid_t process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int nothing = open("/dev/null", O_RDWR);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    return process;
}

}  // namespace

CScopedVariable::CScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) {
        hadValue_ = true;
        before_ = before;
    }
    value ? setenv(name, value, 1) : unsetenv(name);
}

CScopedVariable::~CScopedVariable() {
    hadValue_ ? setenv(name_.c_str(), before_.c_str(), 1) : unsetenv(name_.c_str());
}

CXServer::CXServer(const std::vector<std::string>& options) {
    int pipes[2];
    if (pipe(pipes) != 0)
        return;
    std::vector<std::string> arguments = {
        "Xvfb", "-displayfd", std::to_string(pipes[1]), "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    process_ = startProgram(arguments);
    close(pipes[1]);
    std::string number;
    for (char byte = 0; read(pipes[0], &byte, 1) == 1 && byte != '\n';)
        number += byte;
    close(pipes[0]);
    if (!number.empty())
        display_ = ":" + number;
}

CXServer::~CXServer() {
    end();
}

void CXServer::end() {
    if (process_ > 0) {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    process_ = 0;
}

CXServer& CXServer::common() {
    static CXServer server;
    return server;
}

int runProgram(const std::vector<std::string>& arguments) {
    int status = -1;
    waitpid(startProgram(arguments), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace tarv
