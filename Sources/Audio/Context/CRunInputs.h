#pragma once

namespace tarv {

/// Fills what the operations of a recorded run read from outside before they run for the first time. Audio thread.
class CRunInputs {
public:
    virtual void fill() = 0;

protected:
    ~CRunInputs() = default;
};

}  // namespace tarv
