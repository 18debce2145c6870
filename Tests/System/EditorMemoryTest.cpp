// What the engine keeps for editors, and what it tells them of the host's outputs.

#include "Tests/Core/LogCapture.h"
#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

CByteBuffer bytesOf(const std::string& text) {
    CByteBuffer bytes;
    bytes.append(reinterpret_cast<const uint8_t*>(text.data()), static_cast<int32_t>(text.size()));
    return bytes;
}

class EditorMemory : public CEditorTest {
protected:
    std::string kept(const char* key) {
        const CByteBuffer& bytes = client_->keptBytes(key);
        return {reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(bytes.count())};
    }
    std::string keep(const char* key, const std::string& text) {
        return firstLine(client_->keepBytes(key, bytesOf(text)));
    }
    void reopen() {
        editor_.reset();
        open();
        pumpEvents();
    }
    std::string bank() {
        CByteBuffer bytes;
        CBufferWriter writer(bytes);
        EXPECT_EQ(firstLine(registry().acquireBank(false, writer, false)), "");
        return {reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(bytes.count())};
    }
};

TEST_F(EditorMemory, WhatAnEditorKeepsIsThereWhenTheNextOneOpens) {
    pumpEvents();
    EXPECT_EQ(kept("editor"), "");
    const std::string before = bank();
    EXPECT_EQ(keep("editor", "groups 1 2"), "");
    EXPECT_EQ(kept("editor"), "groups 1 2") << "at once in the editor itself";
    EXPECT_EQ(keep("other", "x"), "");
    EXPECT_EQ(keep("editor", "groups 3 4"), "");
    reopen();
    EXPECT_EQ(kept("editor"), "groups 3 4");
    EXPECT_EQ(kept("other"), "x");
    EXPECT_EQ(bank(), before) << "in no chunk";
    EXPECT_EQ(labels().size(), 1u) << "no step";
    EXPECT_EQ(keep("other", ""), "");
    reopen();
    EXPECT_EQ(kept("other"), "");
    EXPECT_EQ(kept("editor"), "groups 3 4");
}

TEST_F(EditorMemory, AnotherInstanceHasItsOwn) {
    EXPECT_EQ(keep("editor", "mine"), "");
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> other(CPlainInstance::create(error));
    ASSERT_EQ(firstLine(error), "");
    CMessageClient client(*dynamic_cast<CAudioInterfaceBaseConnectorVST*>(other->interfaceBase()->connector()));
    EXPECT_EQ(client.send(kRequestState, client.id(1)), "");
    for (const CReceivedMessage& message : client.take(kData)) {
        EXPECT_NE(message.kind, static_cast<uint32_t>(CDataKind::Kept));
    }
}

TEST_F(EditorMemory, HasLimits) {
    const char* const kTooMuch = "An editor keeps no more than 65536 bytes under 16 keys.";
    EXPECT_EQ(keep("big", std::string(65536, 'a')), "");
    EXPECT_EQ(keep("big", std::string(65537, 'b')), kTooMuch);
    for (int i = 1; i < 16; ++i) {
        EXPECT_EQ(keep(std::to_string(i).c_str(), "x"), "");
    }
    EXPECT_EQ(keep("one more", "x"), kTooMuch);
    EXPECT_EQ(keep("3", "y"), "");
    reopen();
    EXPECT_EQ(kept("big"), std::string(65536, 'a'));
    EXPECT_EQ(kept("3"), "y");
    EXPECT_EQ(kept("one more"), "");
}

TEST_F(EditorMemory, TheLabelsOfTheHostsOutputsComeWithTheStateAndWhenTheyChange) {
    CTextList labels;
    labels.append("Left");
    labels.append("Right");
    base().setOutputLabels(labels);
    pumpEvents();
    EXPECT_EQ(client_->outputLabel(0), CString("Left"));
    EXPECT_EQ(client_->outputLabel(2), CString());
    EXPECT_EQ(client_->outputLabel(-1), CString());
    CMessageClient witness(*connector_);
    base().setOutputLabels(labels);
    EXPECT_EQ(witness.waiting(), 0u) << "the same";
    labels.removeLast();
    base().setOutputLabels(labels);
    EXPECT_EQ(witness.take(kData).size(), 1u);
    reopen();
    EXPECT_EQ(client_->outputLabel(0), CString("Left"));
    EXPECT_EQ(client_->outputLabel(1), CString());
}

TEST_F(EditorMemory, SoDoThoseOfItsInputs) {
    CTextList labels;
    labels.append("Left");
    base().setChannelLabels(labels);
    pumpEvents();
    EXPECT_EQ(client_->inputLabel(0), CString("Left"));
    EXPECT_EQ(client_->inputLabel(1), CString());
    EXPECT_EQ(client_->inputLabel(-1), CString());
    CMessageClient witness(*connector_);
    base().setChannelLabels(labels);
    EXPECT_EQ(witness.waiting(), 0u) << "the same";
    labels.append("Right");
    base().setChannelLabels(labels);
    const CReceivedMessage last = witness.takeLast(kData);
    EXPECT_EQ(last.kind, static_cast<uint32_t>(CDataKind::InputLabels));
    EXPECT_EQ(last.texts, (std::vector<std::string>{"Left", "Right"}));
    reopen();
    EXPECT_EQ(client_->inputLabel(1), CString("Right"));
}

}  // namespace
}  // namespace tarv
