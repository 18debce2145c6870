#pragma once

namespace tarv {

/// Follows the ticks of editors, under the connector's call lock: called before values and frames are sent.
class CEngineTickListener {
public:
    virtual void onTick() = 0;

protected:
    ~CEngineTickListener() = default;
};

}  // namespace tarv
