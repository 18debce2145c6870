#pragma once

#include <lilv/lilv.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <deque>
#include <string>
#include <vector>

namespace tarv::bench {

/// The LV2 plug-ins of this system, and what a host offers to them: numbers for names, the longest block and the rate.
class CLv2World {
public:
    CLv2World(double rate, int32_t frames);
    ~CLv2World();
    CLv2World(const CLv2World&) = delete;
    CLv2World& operator=(const CLv2World&) = delete;

    LilvWorld* world() { return world_; }
    /// Null if it is not installed.
    const LilvPlugin* find(const std::string& uri);
    /// Ends with null.
    const LV2_Feature* const* features() const { return features_.data(); }
    double rate() const { return rate_; }
    uint32_t numberOf(const char* uri);
    const char* nameOf(uint32_t number) const;

private:
    void addOption(const char* key, const char* type, uint32_t size, const void* value);

    LilvWorld* world_;
    double rate_;
    float rateValue_;
    int32_t frames_;
    std::deque<std::string> names_;
    LV2_URID_Map map_;
    LV2_URID_Unmap unmap_;
    LV2_Worker_Schedule schedule_;
    std::vector<LV2_Options_Option> options_;
    std::deque<LV2_Feature> offered_;
    std::vector<const LV2_Feature*> features_;
};

}  // namespace tarv::bench
