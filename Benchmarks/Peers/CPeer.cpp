#include "Benchmarks/Peers/CPeer.h"

#include <fnmatch.h>

namespace tarv::bench {

float CPeerSettings::valueOf(const char* name, float otherwise) {
    for (size_t i = 0; i < settings_.size(); ++i) {
        if (fnmatch(settings_[i].pattern.c_str(), name, 0) == 0) {
            return counts_[i]++ % 2 == 0 ? settings_[i].first : settings_[i].second;
        }
    }
    return otherwise;
}

}  // namespace tarv::bench
