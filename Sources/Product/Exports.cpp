// The functions that the library exports.

#include "Audio/VST/CAudioWrapperVST.h"
#include "Product/Product.h"

/// What a host calls for each instance. Its second name, "main", is given when the library is linked.
extern "C" __attribute__((visibility("default"))) tarv::vst::AEffect* VSTPluginMain(tarv::vst::HostCallback host) {
    // Nothing may be thrown into a host: memory that ends gives no effect.
    try {
        tarv::ensureProductStarted();
        return tarv::CAudioWrapperVST::create(host);
    } catch (...) {
        return nullptr;
    }
}
