#include "Benchmarks/Peers/CLv2World.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>

namespace tarv::bench {

CLv2World::CLv2World(double rate, int32_t frames)
    : world_(lilv_world_new()), rate_(rate), rateValue_(static_cast<float>(rate)), frames_(frames) {
    lilv_world_load_all(world_);
    map_ = {this, [](LV2_URID_Map_Handle world, const char* uri) -> LV2_URID {
                return static_cast<CLv2World*>(world)->numberOf(uri);
            }};
    unmap_ = {this, [](LV2_URID_Unmap_Handle world, LV2_URID number) {
                  return static_cast<CLv2World*>(world)->nameOf(number);
              }};
    // Nothing is worked on in the background here.
    schedule_ = {this, [](LV2_Worker_Schedule_Handle, uint32_t, const void*) { return LV2_WORKER_ERR_NO_SPACE; }};
    for (const char* key :
         {LV2_BUF_SIZE__minBlockLength, LV2_BUF_SIZE__maxBlockLength, LV2_BUF_SIZE__nominalBlockLength}) {
        addOption(key, LV2_ATOM__Int, sizeof frames_, &frames_);
    }
    addOption(LV2_PARAMETERS__sampleRate, LV2_ATOM__Float, sizeof rateValue_, &rateValue_);
    options_.push_back({});
    offered_ = {{LV2_URID__map, &map_},
                {LV2_URID__unmap, &unmap_},
                {LV2_WORKER__schedule, &schedule_},
                {LV2_OPTIONS__options, options_.data()},
                {LV2_BUF_SIZE__boundedBlockLength, nullptr},
                {LV2_BUF_SIZE__fixedBlockLength, nullptr}};
    for (const LV2_Feature& feature : offered_) {
        features_.push_back(&feature);
    }
    features_.push_back(nullptr);
}

CLv2World::~CLv2World() {
    lilv_world_free(world_);
}

const LilvPlugin* CLv2World::find(const std::string& uri) {
    LilvNode* const node = lilv_new_uri(world_, uri.c_str());
    const LilvPlugin* const plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_), node);
    lilv_node_free(node);
    return plugin;
}

uint32_t CLv2World::numberOf(const char* uri) {
    for (size_t i = 0; i < names_.size(); ++i) {
        if (names_[i] == uri) {
            return static_cast<uint32_t>(i + 1);
        }
    }
    names_.emplace_back(uri);
    return static_cast<uint32_t>(names_.size());
}

const char* CLv2World::nameOf(uint32_t number) const {
    return number >= 1 && number <= names_.size() ? names_[number - 1].c_str() : nullptr;
}

void CLv2World::addOption(const char* key, const char* type, uint32_t size, const void* value) {
    options_.push_back({LV2_OPTIONS_INSTANCE, 0, numberOf(key), size, numberOf(type), value});
}

}  // namespace tarv::bench
