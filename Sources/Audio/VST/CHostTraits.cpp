// Special cases for hosts, each with its symptom.

#include "Audio/VST/CHostTraits.h"

namespace tarv {

namespace {

/// Hosts of an older interface give buffers for two channels only.
constexpr int32_t kManyChannelsVersion = 2300;
/// Gives buffers for two channels although it announces a newer interface.
constexpr const char* kTwoChannelProduct = "Sony ACID Pro";
/// Calls suspend and resume on one thread while a block runs on another: the graph would be reset under the block.
constexpr const char* kLockedProduct = "WaveLab";
/// Keeps the keyboard focus. In all others typed keys would go to the host unless a mouse press in an editor takes it.
constexpr const char* kFocusKeepingVendor = "Steinberg";
/// On Linux it calls editors on a second thread, which has no tempo map. A begin of edit on that thread reads the map
/// through a null pointer if the parameter's lane is in touch mode. After a pass of writing, every lane is.
constexpr const char* kFirstThreadProduct = "Ardour";

}  // namespace

CHostTraits traitsOfHost(int32_t masterVersion, const CString& vendor, const CString& product) {
    CHostTraits traits{vendor, product};
    traits.isManyChannels = masterVersion >= kManyChannelsVersion && product != kTwoChannelProduct;
    traits.needsProcessLock = product.toUtf8().find(kLockedProduct) != std::string::npos;
    traits.isFocusTaken = vendor != kFocusKeepingVendor;
    traits.needsEditsOnFirstThread = product == kFirstThreadProduct;
    return traits;
}

}  // namespace tarv
