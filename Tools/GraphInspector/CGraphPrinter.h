#pragma once

#include <cstdio>

namespace tarv {

class CAudioProcessBase;

/// Prints a built graph: every process in run order with its class, rate, channels, parameter bindings, links, bypass
/// states, and the sections that its filters run. Behind a resume, so that modules exist.
class CGraphPrinter {
public:
    explicit CGraphPrinter(FILE* out) : out_(out) {}
    void print(const CAudioProcessBase& process, int depth = 0);

private:
    void printSlots(const CAudioProcessBase& process, int depth);
    void printLinks(const CAudioProcessBase& process, int depth);
    void printSections(const CAudioProcessBase& process, int depth);
    void indent(int depth);

    FILE* out_;
};

}  // namespace tarv
