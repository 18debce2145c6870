#pragma once

#include <map>
#include <string>
#include <vector>

#include "CXmlSource.h"

namespace tarv {

/// The value of one parameter in a preset: numbers in real units for each group, or the texts of group 0.
struct CFactoryRecord {
    std::string definition;  ///< path of the parameter's definition
    bool isString = false;
    std::vector<std::vector<double>> groups;
    std::vector<std::string> texts;
};

using CFactoryRecordMap = std::map<std::string, CFactoryRecord>;  ///< by key

struct CFactoryPreset {
    std::string name;
    CFactoryRecordMap records;
};

struct CFactorySource {
    bool isBank = false;
    std::string name;  ///< of the bank
    std::vector<CFactoryPreset> presets;
};

/// Reads a factory source; the form is documented in FactoryCompiler.h.
[[nodiscard]] CDefinitionFailure readFactorySource(const CXmlSource& source, CFactorySource& result);

}  // namespace tarv
