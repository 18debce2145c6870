// Messages of a client, as many as the input holds, each behind its length in two bytes, to a whole instance. Whatever
// they say, every value stays in its range, the answers can be read, and the next editor finds an engine that works.

#include <cmath>
#include <memory>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "CPlainInstance.h"
#include "Core/CApplicationData.h"
#include "Tests/Audio/Messages/MessageClient.h"
#include "Tests/Fuzz/FuzzTools.h"

using namespace tarv;

namespace {

class CEngine {
public:
    CEngine() {
        CGlobalData::instance().setFileAccess(false);
        CLocalData::instance().setFileAccess(false);
        CError* error = nullptr;
        instance_.reset(CPlainInstance::create(error));
        mustSucceed(error);
        connector_ = dynamic_cast<CAudioInterfaceBaseConnectorVST*>(instance_->interfaceBase()->connector());
        CBufferWriter writer(bank_);
        mustSucceed(instance_->paramRegistry()->acquireBank(false, writer, false));
    }

    void take(const uint8_t* data, size_t size) {
        begin();
        CMessageClient client(*connector_);
        CMessageClient witness(*connector_);
        while (size >= 2) {
            const size_t wanted = static_cast<size_t>(data[0]) | static_cast<size_t>(data[1]) << 8;
            const size_t count = wanted < size - 2 ? wanted : size - 2;
            client.sendBytes(data + 2, count);
            data += 2 + count;
            size -= 2 + count;
        }
        for (CMessageClient* each : {&client, &witness}) {
            each->take();
        }
        checkValues();
    }

private:
    /// Every input begins with the same values, programs and names.
    void begin() {
        CMemoryReader reader(bank_.data(), static_cast<uint32_t>(bank_.count()));
        instance_->interfaceBase()->selectStep(0);
        mustSucceed(instance_->paramRegistry()->activateBank(reader, {-1, true, false}));
    }
    void checkValues() {
        instance_->paramCollector()->forEachParam([](CAudioParam& param) {
            if (!param.isDefined() || param.info().isString())
                return;
            CLockScope scope(param.lock());
            const CAudioParamData& data = param.userData();
            const int32_t size = data.elementSize();
            for (int32_t group = 0; group < data.groupCount(); ++group)
                for (int32_t i = 0; i < data.elementCount(group) * size; ++i) {
                    const double value = data.storedNumber(group, i / size, i % size);
                    must(value == param.info().clamp(i % size, value));
                }
        });
        must(instance_->interfaceBase()->getStepLabels().count() <= 33);
    }

    std::unique_ptr<CPlainInstance> instance_;
    CAudioInterfaceBaseConnectorVST* connector_ = nullptr;
    CByteBuffer bank_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static CEngine engine;
    engine.take(data, size);
    return 0;
}
