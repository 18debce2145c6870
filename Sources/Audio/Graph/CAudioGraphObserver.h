#pragma once

namespace tarv {

class CAudioProcessBase;

/// Watches a graph from outside: called behind each process that ran, on the thread that runs the graph. Used by tools
/// and tests.
class CAudioGraphObserver {
public:
    virtual ~CAudioGraphObserver() = default;
    /// The outputs of `process` are complete and may be read through the context after a flush.
    virtual void processed(CAudioProcessBase& process) = 0;
};

}  // namespace tarv
