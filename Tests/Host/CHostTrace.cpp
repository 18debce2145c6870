// Joins the recordings of all hosts.

#include "CHostTrace.h"

#include <iterator>
#include <span>

#include "ArdourTraces.h"
#include "AudacityTraces.h"
#include "EditorTraces.h"
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

std::vector<CHostTrace> editorTraces() {
    return {std::begin(kEditorTraces), std::end(kEditorTraces)};
}

}  // namespace tarv::host
