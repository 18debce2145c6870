#include "Audio/Processes/FilterKernels.h"

#include "Audio/Processes/AllpassKernel.h"
#include "Audio/Processes/BiquadKernels.h"
#include "Audio/Processes/CQPLEXContext.h"
#include "Audio/Processes/HalfBandKernels.h"
#include "Audio/Processes/HeqKernel.h"
#include "Audio/Processes/OnePoleKernels.h"

namespace tarv {

void registerFilterKernels(CQPLEXContext& context) {
    CSectionKernels table[kSectionTypeCount];
    CSectionKernels* rows = table;
    rows = registerBiquadKernels(context, rows);
    rows = registerOnePoleKernels(context, rows);
    rows = registerHalfBandKernels(context, rows);
    // A FIR section is run by convolution, not by a kernel over a state block.
    *rows++ = {-1, -1, -1, -1, 0, 0};
    rows = registerHeqKernel(context, rows);
    registerAllpassKernel(context, rows);
    for (int32_t type = 0; type < kSectionTypeCount; ++type) {
        context.setSectionKernels(type, table[type]);
    }
}

}  // namespace tarv
