#pragma once

#include <cstdint>

#include "Core/CObject.h"

namespace tarv {

/// Names, code, version and counts of the plug-in, from the product's project object. Thread: any, read-only behind
/// `read`.
class CAudioProjectInfo {
public:
    /// Reads the attributes of the project. Fails with the first that is missing or out of its range.
    [[nodiscard]] CError* read(const CObject& project);

    const CString& name() const { return name_; }
    const CString& vendor() const { return vendor_; }
    /// Four characters, the first in the highest byte.
    uint32_t code() const { return code_; }
    /// Major, minor and third number.
    const int32_t (&version() const)[3] { return version_; }
    /// Channels inside the graph, 1 to 32.
    int32_t channelCount() const { return channelCount_; }
    /// Groups that they can belong to, 1 to 8.
    int32_t groupCount() const { return groupCount_; }

    /// Reads "major.minor" or "major.minor.third". On failure `version` keeps its numbers.
    [[nodiscard]] static CError* parseVersion(const CString& text, int32_t (&version)[3]);
    /// Packs a text of exactly four characters. On failure `code` keeps its value.
    [[nodiscard]] static CError* acquirePluginCode(const CString& text, uint32_t& code);

private:
    CString name_;
    CString vendor_;
    uint32_t code_ = 0;
    int32_t version_[3] = {0, 0, 0};
    int32_t channelCount_ = 0;
    int32_t groupCount_ = 0;
};

}  // namespace tarv
