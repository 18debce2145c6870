// Joins the recordings of all hosts.

#include "CHostTrace.h"

#include <span>

#include "ArdourTraces.h"
#include "AudacityTraces.h"
#include "MuseTraces.h"
#include "QtractorTraces.h"

namespace tarv::host {

std::vector<CHostTrace> hostTraces() {
    std::vector<CHostTrace> all;
    for (const std::span<const CHostTrace> traces :
         {std::span<const CHostTrace>(kArdourTraces), std::span<const CHostTrace>(kMuseTraces),
          std::span<const CHostTrace>(kAudacityTraces), std::span<const CHostTrace>(kQtractorTraces)}) {
        all.insert(all.end(), traces.begin(), traces.end());
    }
    return all;
}

}  // namespace tarv::host
