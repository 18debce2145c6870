#include "Audio/Processes/StandardKernels.h"

#include "Audio/Processes/CommonKernels.h"
#include "Audio/Processes/ConvolutionKernels.h"
#include "Audio/Processes/FilterKernels.h"
#include "Audio/Processes/FourierKernels.h"

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
