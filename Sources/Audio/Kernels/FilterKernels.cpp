#include "Audio/Kernels/FilterKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/AllpassKernel.h"
#include "Audio/Kernels/BiquadKernels.h"
#include "Audio/Kernels/HalfBandKernels.h"
#include "Audio/Kernels/HeqKernel.h"
#include "Audio/Kernels/OnePoleKernels.h"

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
