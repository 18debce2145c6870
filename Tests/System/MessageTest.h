#pragma once

#include <gtest/gtest.h>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Tests/Audio/Messages/MessageClient.h"
#include "Tests/System/EngineRun.h"

namespace tarv {

inline constexpr const char* kRegistry = "plugin.param-registry";
inline constexpr const char* kRoutingRegistry = "plugin.param-registry-io";
inline constexpr const char* kGroupNamesParam = "plugin.modMain.io-params.group-names";
inline constexpr const char* kInNamesParam = "plugin.modMain.io-params.in-channel-names";

/// A whole instance and what an editor has of it.
class CMessageTest : public testing::Test {
protected:
    CMessageTest() {
        CError* error = nullptr;
        instance_.reset(CPlainInstance::create(error));
        EXPECT_FALSE(error);
        connector_ = dynamic_cast<CAudioInterfaceBaseConnectorVST*>(base().connector());
    }

    CAudioInterfaceBase& base() { return *instance_->interfaceBase(); }
    CAudioParam& param(const char* name) { return *instance_->paramCollector()->findParam(name); }
    CAudioParamRegistry& registry() { return *instance_->paramRegistry(); }
    CAudioExtParamList& hostParams() { return *instance_->extParamList(); }
    std::vector<std::string> labels(int32_t* position = nullptr) {
        std::vector<std::string> all;
        for (const CString& label : base().getStepLabels(position)) {
            all.push_back(label.toUtf8());
        }
        return all;
    }

    std::unique_ptr<CPlainInstance> instance_;
    CAudioInterfaceBaseConnectorVST* connector_ = nullptr;
};

}  // namespace tarv
