#pragma once

#include <string>
#include <vector>

namespace tarv {

/// Sets a variable of the environment for a scope.
class CScopedVariable {
public:
    /// Null unsets it.
    CScopedVariable(const char* name, const char* value);
    ~CScopedVariable();
    CScopedVariable(const CScopedVariable&) = delete;
    CScopedVariable& operator=(const CScopedVariable&) = delete;

private:
    const std::string name_;
    std::string before_;
    bool hadValue_ = false;
};

/// An X server without a screen, on a display that is free; ends with its object, or with the process.
class CXServer {
public:
    explicit CXServer(const std::vector<std::string>& options = {});
    ~CXServer();
    CXServer(const CXServer&) = delete;
    CXServer& operator=(const CXServer&) = delete;

    /// One for all tests of the program, started by the first call.
    static CXServer& common();

    /// For DISPLAY; empty if the server did not start.
    const std::string& display() const { return display_; }
    void end();

private:
    int process_ = 0;
    std::string display_;
};

/// Runs a program of the system to its end and gives its exit code.
int runProgram(const std::vector<std::string>& arguments);

}  // namespace tarv
