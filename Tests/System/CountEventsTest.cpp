// The events of counts and rates by their names: in the engine's tree, and in that of an editor, where lists and
// bridges hang on them.

#include "Core/CCreatorRegistry.h"
#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

/// Notes the names of what it receives (`test:event-names`).
class CEventNames : public CObject {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CEventNames::receive>("receive");
        return nullptr;
    }
    /// Since the last time.
    std::string take() { return std::exchange(names_, {}); }

private:
    [[nodiscard]] CError* receive(CAttributeMap& params) {
        names_ += (names_.empty() ? "" : ", ") + params["event-name"].asString().toUtf8();
        return nullptr;
    }
    std::string names_;
};

constexpr const char* kEvents[] = {"update-sample-rate", "update-io-channel-counts", "update-group-count",
                                   "update-internal-channel-count"};

class CountEvents : public CEditorTest {
protected:
    CountEvents() {
        static const CCreatorRow kRow{"test:event-names", &createObject<CEventNames>, &CEventNames::initClass};
        static CError* const kFailure = CCreatorRegistry::registerRows(&kRow, 1);
        EXPECT_EQ(kFailure, nullptr);
    }
    /// A listener beside the object, which is to send the events. What is to be called has an anchor above it.
    static CEventNames& listenTo(CObject& sender) {
        EXPECT_EQ(firstLine(loadTree(*sender.parent(),
                                     {{"ui:ui-event-bridge", "anchor", {}, {{"test:event-names", "names"}}}})),
                  "");
        auto* listener = dynamic_cast<CEventNames*>(sender.parent()->findChild("anchor")->findChild("names"));
        for (const char* event : kEvents) {
            listener->listenObject(sender.fullName(), event, "receive");
        }
        return *listener;
    }
};

TEST_F(CountEvents, EachChangeIsOneEventInTheEnginesTreeAndOneInTheEditors) {
    pumpEvents();
    CEventNames& ofEngine = listenTo(base());
    CEventNames& ofEditor = listenTo(*client_);
    const std::function<void()> kChanges[] = {
        [this] { instance_->setSampleRate(88200.0); }, [this] { base().setIoCounts(3, 4, 1); },
        [this] { base().setGroupCount(5); }, [this] { base().setInternalChannelCount(6); }};
    for (size_t i = 0; i < std::size(kEvents); ++i) {
        kChanges[i]();
        EXPECT_EQ(ofEngine.take(), kEvents[i]);
        EXPECT_EQ(ofEditor.take(), "") << "it comes by a post";
        pumpEvents();
        EXPECT_EQ(ofEditor.take(), kEvents[i]);
        kChanges[i]();
        pumpEvents();
        EXPECT_EQ(ofEngine.take() + ofEditor.take(), "") << "nothing has changed";
    }
    EXPECT_EQ(client_->engineState().sampleRate, 88200.0);
    EXPECT_EQ(client_->engineState().counts, (CInterfaceCounts{3, 4, 1, 5, 6}));
}

}  // namespace
}  // namespace tarv
