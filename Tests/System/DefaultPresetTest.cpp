// The default preset: stored by an editor, taken by new instances, replaced by a host's chunk.

#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Core/CApplicationData.h"
#include "Core/CompressedBlock.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/System/EditorTest.h"
#include "Tests/System/StoredFile.h"

namespace tarv {
namespace {

using engine::kOutGain;

class DefaultPreset : public CEditorTest {
protected:
    ~DefaultPreset() override { EXPECT_EQ(firstLine(CAudioDefaultPreset::clear()), ""); }

    /// The present state under a name, as a compressed block.
    CByteBuffer present(const char* name) {
        registry().renameProgram(0, name);
        CByteBuffer packed;
        CBufferWriter writer(packed);
        EXPECT_EQ(firstLine(registry().acquirePreset(false, -1, -1, writer, true)), "");
        return packed;
    }
    static std::unique_ptr<CPlainInstance> another() {
        CError* error = nullptr;
        std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
        EXPECT_EQ(firstLine(error), "");
        return instance;
    }
    static double gainOf(CPlainInstance& instance) {
        return instance.paramCollector()->findParam(kOutGain)->value(0, 0);
    }
};

TEST_F(DefaultPreset, ANewInstanceStartsWithItInItsCurrentProgram) {
    const CString factoryName = registry().programName(0);
    param(kOutGain).setValue(0, 0, 0.5);
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Mine: really"))), "");
    auto fresh = another();
    EXPECT_EQ(gainOf(*fresh), 0.5);
    EXPECT_EQ(fresh->paramRegistry()->currentProgram(), 0);
    EXPECT_EQ(fresh->paramRegistry()->programName(0), CString("Mine: really"));
    EXPECT_EQ(fresh->interfaceBase()->getStepLabels(nullptr).count(), 1);
    EXPECT_EQ(fresh->paramChanges, 0) << "the host has not got the instance yet";
    EXPECT_EQ(firstLine(client_->clearDefaultPreset()), "");
    fresh = another();
    EXPECT_EQ(gainOf(*fresh), 1.0);
    EXPECT_EQ(fresh->paramRegistry()->programName(0), factoryName);
}

TEST_F(DefaultPreset, EveryEditorGetsItsName) {
    pumpEvents();
    EXPECT_FALSE(client_->hasDefaultPreset());
    auto second = another();
    CMessageClient other(*dynamic_cast<CAudioInterfaceBaseConnectorVST*>(second->interfaceBase()->connector()));
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Mine"))), "");
    pumpEvents();
    EXPECT_TRUE(client_->hasDefaultPreset());
    EXPECT_EQ(client_->defaultPresetName(), CString("Mine"));
    const CReceivedMessage received = other.takeLast(kDefaultPreset);
    EXPECT_EQ(received.id, kNoRequest);
    EXPECT_EQ(received.texts, std::vector<std::string>{"Mine"});
    EXPECT_EQ(other.send(kAskDefaultPreset, other.id(5)), "");
    EXPECT_EQ(other.takeLast(kDefaultPreset).id, other.id(5));
    EXPECT_EQ(other.send(kClearDefaultPreset), "");
    pumpEvents();
    EXPECT_FALSE(client_->hasDefaultPreset());
    EXPECT_EQ(client_->defaultPresetName(), CString());
}

TEST_F(DefaultPreset, AnEditorThatOpensLaterAsksForIt) {
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Mine"))), "");
    editor_.reset();
    open();
    pumpEvents();
    EXPECT_EQ(client_->defaultPresetName(), CString("Mine"));
}

TEST_F(DefaultPreset, AHostsChunkComesBehindItAndWins) {
    param(kOutGain).setValue(0, 0, 0.75);
    CByteBuffer chunk;
    EXPECT_EQ(firstLine(instance_->getState(chunk, false)), "");
    param(kOutGain).setValue(0, 0, 0.5);
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Mine"))), "");
    auto fresh = another();
    EXPECT_EQ(firstLine(fresh->setState(chunk.data(), chunk.count(), false, true)), "");
    EXPECT_EQ(gainOf(*fresh), 0.75);
    EXPECT_NE(fresh->paramRegistry()->programName(0), CString("Mine"));
}

TEST_F(DefaultPreset, ADamagedOneIsLoggedAndTheFactorysStartStands) {
    param(kOutGain).setValue(0, 0, 0.5);
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Mine"))), "");
    CByteBuffer stream;
    CAudioDefaultPreset::read(stream);
    ASSERT_GT(stream.count(), 100);
    stream.resize(stream.count() - 1);
    EXPECT_EQ(firstLine(CAudioDefaultPreset::write(stream)), "");
    CLogCapture log;
    auto fresh = another();
    EXPECT_FALSE(log.lines.empty());
    EXPECT_EQ(gainOf(*fresh), 1.0);
    EXPECT_EQ(fresh->paramRegistry()->programName(0), fresh->paramRegistry()->romName(0));
}

TEST_F(DefaultPreset, ADamagedOneIsKeptAsideWhenAnotherTakesItsPlace) {
    const CStoredFile file(CAudioDefaultPreset::kDataName);
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Mine"))), "");
    const std::string damagedBlock = file.damage();
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, present("Other"))), "");
    EXPECT_EQ(file.kept(1), damagedBlock);
    CByteBuffer stream;
    CAudioDefaultPreset::read(stream);
    stream.resize(stream.count() - 1);
    CLocalData::instance().write(CAudioDefaultPreset::kDataName, stream, kPresetBlockId);
    const std::string damagedStream = file.content();
    EXPECT_EQ(firstLine(client_->clearDefaultPreset()), "");
    EXPECT_EQ(file.kept(2), damagedStream);
    EXPECT_EQ(file.kept(3), "");
    CAudioDefaultPreset::read(stream);
    EXPECT_TRUE(stream.isEmpty());
}

TEST_F(DefaultPreset, OnlyAPresetOfTheMasterIsTaken) {
    CByteBuffer packed = present("Mine");
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRoutingRegistry, packed)), "Incompatible preset.");
    CByteBuffer routing;
    CBufferWriter writer(routing);
    auto* other = instance_->instanceRoot()->findObjectOf<CAudioParamRegistry>(kRoutingRegistry);
    EXPECT_EQ(firstLine(other->acquirePreset(false, -1, -1, writer, true)), "");
    EXPECT_EQ(firstLine(client_->setDefaultPreset(kRegistry, routing)), "Incompatible preset.");
    packed.resize(packed.count() - 1);
    EXPECT_NE(firstLine(client_->setDefaultPreset(kRegistry, packed)), "");
    CByteBuffer stream;
    CAudioDefaultPreset::read(stream);
    EXPECT_TRUE(stream.isEmpty());
}

}  // namespace
}  // namespace tarv
