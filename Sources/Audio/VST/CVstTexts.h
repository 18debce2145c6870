#pragma once

#include <cstdint>

namespace tarv {

class CAudioWrapper;

/// The texts that an effect gives its host, cut to the lengths of the interface: names, values and units of parameters,
/// names of programs and of the effect. Buffers have the sizes of Vst2.h. Any thread, behind the core's init.
class CVstTexts {
public:
    explicit CVstTexts(const CAudioWrapper& core) : core_(core) {}

    void effectName(char* text) const;
    void vendor(char* text) const;
    void product(char* text) const;
    /// False for an index out of range, which writes nothing.
    bool programName(int32_t index, char* text) const;
    void currentProgramName(char* text) const;
    /// A parameter's name, its value and its unit. An index out of range writes nothing.
    void parameterName(int32_t index, char* text) const;
    void parameterDisplay(int32_t index, char* text) const;
    void parameterLabel(int32_t index, char* text) const;
    /// The text with unit that a parameter would have at a position from 0 to 1. An index out of range writes nothing.
    void parameterDisplayFor(intptr_t index, double position, char* text) const;

private:
    const CAudioWrapper& core_;
};

}  // namespace tarv
