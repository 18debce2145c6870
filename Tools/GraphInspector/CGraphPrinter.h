#pragma once

#include <cstdio>

namespace tarv {

class CAudioParamData;
class CAudioProcessBase;

/// Prints a built graph: every process in run order with its class, rate, delay, parameter bindings, links, bypass
/// states, and the sections that its filters run for each channel. Behind a resume, so that modules exist.
class CGraphPrinter {
public:
    explicit CGraphPrinter(FILE* out) : out_(out) {}
    /// The set of instructions that waves use in this process: "instructions avx2".
    void printInstructions();
    void print(const CAudioProcessBase& process, int depth = 0);

private:
    void printSlots(const CAudioProcessBase& process, int depth);
    /// Of group 0: what the process reads of a parameter.
    void printValues(const CAudioParamData& data, const CAudioProcessBase& process);
    void printLinks(const CAudioProcessBase& process, int depth);
    void printSections(const CAudioProcessBase& process, int depth);
    void indent(int depth);

    FILE* out_;
};

}  // namespace tarv
