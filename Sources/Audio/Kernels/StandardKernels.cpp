#include "Audio/Kernels/StandardKernels.h"

#include "Audio/Kernels/CommonKernels.h"
#include "Audio/Kernels/ConvolutionKernels.h"
#include "Audio/Kernels/FilterKernels.h"
#include "Audio/Kernels/FourierKernels.h"

namespace tarv {

std::unique_ptr<CQPLEXContext> makeStandardContext() {
    auto context = std::make_unique<CQPLEXContext>();
    registerCommonKernels(*context);
    registerFilterKernels(*context);
    registerFourierKernels(*context);
    registerConvolutionKernels(*context);
    return context;
}

}  // namespace tarv
