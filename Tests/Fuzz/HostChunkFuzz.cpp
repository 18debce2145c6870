// A host's chunk through the whole effect. The first byte says how: bit 0 a program (otherwise a bank), bit 1 a stream
// that is packed here, so that what lies behind the compression is reached. What is refused changes nothing; what is
// taken can be saved, and comes back as it was saved.

#include <string>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Core/CApplicationData.h"
#include "Core/CompressedBlock.h"
#include "Product/Product.h"
#include "Tests/Fuzz/FuzzTools.h"

using namespace tarv;

namespace {

intptr_t answerHost(vst::AEffect*, int32_t opcode, int32_t, intptr_t, void*, float) {
    return opcode == vst::kHostVersion ? vst::kInterfaceVersion : 0;
}

vst::AEffect* makeEffect() {
    ensureProductStarted();
    CApplicationData& global = CGlobalData::instance();
    CApplicationData& local = CLocalData::instance();
    global.setFileAccess(false);
    local.setFileAccess(false);
    vst::AEffect* effect = CAudioWrapperVST::create(&answerHost);
    must(effect);
    return effect;
}

std::string chunkOf(vst::AEffect* effect, bool isProgram) {
    void* data = nullptr;
    const intptr_t size = effect->dispatcher(effect, vst::kEffectGetChunk, isProgram, 0, &data, 0.0f);
    must(size > 0);
    return {static_cast<const char*>(data), static_cast<size_t>(size)};
}

bool setChunk(vst::AEffect* effect, const std::string& bytes, bool isProgram) {
    std::string copy(bytes);
    return effect->dispatcher(effect, vst::kEffectSetChunk, isProgram, static_cast<intptr_t>(copy.size()), copy.data(),
                              0.0f) != 0;
}

std::string packed(const uint8_t* data, size_t size, uint32_t id) {
    CByteBuffer stream;
    CByteBuffer block;
    CBufferWriter streamWriter(stream);
    CBufferWriter blockWriter(block);
    mustSucceed(streamWriter.write(data, static_cast<int64_t>(size)));
    mustSucceed(blockWriter.writeCompressedData(stream, id));
    return {reinterpret_cast<const char*>(block.data()), static_cast<size_t>(block.count())};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static vst::AEffect* const effect = makeEffect();
    static const std::string fresh = chunkOf(effect, false);
    static const std::string freshProgram = chunkOf(effect, true);
    static uint32_t inputCount = 0;
    // To pack a bank costs more than all else: what leaks into its other slots stays there until the next look.
    const bool isWholeLook = ++inputCount % 16 == 0;
    if (size == 0)
        return 0;
    const bool isProgram = (data[0] & 1) != 0;
    const std::string chunk = (data[0] & 2) != 0 ? packed(data + 1, size - 1, isProgram ? kPresetBlockId : kBankBlockId)
                                                 : std::string(reinterpret_cast<const char*>(data + 1), size - 1);
    if (!setChunk(effect, chunk, isProgram)) {
        must(chunkOf(effect, !isWholeLook) == (isWholeLook ? fresh : freshProgram));
        return 0;
    }
    const std::string saved = chunkOf(effect, isProgram);
    must(setChunk(effect, saved, isProgram));
    must(chunkOf(effect, isProgram) == saved);
    must(setChunk(effect, fresh, false));
    must(chunkOf(effect, !isWholeLook) == (isWholeLook ? fresh : freshProgram));
    return 0;
}
