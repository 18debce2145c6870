#include "Benchmarks/Peers/CLv2Peer.h"

#include <lv2/atom/atom.h>

#include <cmath>

namespace tarv::bench {

std::unique_ptr<CPeer> CLv2Peer::create(CLv2World& world, const std::string& uri,
                                        const std::vector<CPeerSetting>& settings) {
    const LilvPlugin* const plugin = world.find(uri);
    if (plugin == nullptr) {
        return nullptr;
    }
    std::unique_ptr<CLv2Peer> peer(new CLv2Peer);
    peer->instance_ = lilv_plugin_instantiate(plugin, world.rate(), world.features());
    if (peer->instance_ == nullptr) {
        return nullptr;
    }
    peer->connect(world, plugin, settings);
    if (peer->in_.size() != 2 || peer->out_.size() != 2) {
        return nullptr;
    }
    lilv_instance_activate(peer->instance_);
    return peer;
}

CLv2Peer::~CLv2Peer() {
    if (instance_ != nullptr) {
        lilv_instance_free(instance_);
    }
}

void CLv2Peer::connect(CLv2World& world, const LilvPlugin* plugin, const std::vector<CPeerSetting>& settings) {
    const uint32_t count = lilv_plugin_get_num_ports(plugin);
    std::vector<float> defaults(count);
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, defaults.data());
    controls_.resize(count);
    sequence_ = world.numberOf(LV2_ATOM__Sequence);
    chunk_ = world.numberOf(LV2_ATOM__Chunk);
    LilvNode* const audio = lilv_new_uri(world.world(), LILV_URI_AUDIO_PORT);
    LilvNode* const control = lilv_new_uri(world.world(), LILV_URI_CONTROL_PORT);
    LilvNode* const atom = lilv_new_uri(world.world(), LILV_URI_ATOM_PORT);
    LilvNode* const input = lilv_new_uri(world.world(), LILV_URI_INPUT_PORT);
    CPeerSettings values(settings);
    for (uint32_t i = 0; i < count; ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, i);
        const bool isInput = lilv_port_is_a(plugin, port, input);
        if (lilv_port_is_a(plugin, port, audio)) {
            (isInput ? in_ : out_).push_back(i);
        } else if (lilv_port_is_a(plugin, port, control)) {
            const char* const symbol = lilv_node_as_string(lilv_port_get_symbol(plugin, port));
            controls_[i] = values.valueOf(symbol, std::isnan(defaults[i]) ? 0.0f : defaults[i]);
            lilv_instance_connect_port(instance_, i, &controls_[i]);
        } else if (lilv_port_is_a(plugin, port, atom)) {
            events_.emplace_back(kEventBytes / sizeof(uint64_t));
            areEventsIn_.push_back(isInput);
            lilv_instance_connect_port(instance_, i, events_.back().data());
        } else {
            lilv_instance_connect_port(instance_, i, nullptr);
        }
    }
    for (LilvNode* const node : {audio, control, atom, input}) {
        lilv_node_free(node);
    }
}

/// No events come in; outputs say how much room they have.
void CLv2Peer::clearEvents() {
    for (size_t i = 0; i < events_.size(); ++i) {
        auto* const events = reinterpret_cast<LV2_Atom_Sequence*>(events_[i].data());
        events->atom.type = areEventsIn_[i] ? sequence_ : chunk_;
        events->atom.size = areEventsIn_[i] ? sizeof(LV2_Atom_Sequence_Body) : kEventBytes - sizeof(LV2_Atom);
        events->body = {};
    }
}

void CLv2Peer::process(float* const* in, float* const* out, int32_t frames) {
    clearEvents();
    for (size_t c = 0; c < in_.size(); ++c) {
        lilv_instance_connect_port(instance_, in_[c], in[c]);
        lilv_instance_connect_port(instance_, out_[c], out[c]);
    }
    lilv_instance_run(instance_, static_cast<uint32_t>(frames));
}

}  // namespace tarv::bench
