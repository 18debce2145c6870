#pragma once

#include "Core/CError.h"

namespace tarv {

class CAudioInterfaceClient;
class CObject;

/// Shows the name of the preset that new instances start with, by attributes of its owner: `default-preset-name`,
/// plain, and `has-default-preset`. The editor's thread.
class CPluginControlDefPresetBridge {
public:
    explicit CPluginControlDefPresetBridge(CObject& owner) : owner_(owner) {}
    /// May destroy the owner.
    [[nodiscard]] CError* show(const CAudioInterfaceClient& client);

private:
    CObject& owner_;
};

}  // namespace tarv
