#pragma once

#include "Platform/Keyboard.h"
#include "Tests/UI/Text/TextHelp.h"
#include "Tests/UI/Windows/WindowTree.h"
#include "UI/Resources/CDataSetObject.h"
#include "UI/Resources/CFontObject.h"
#include "UI/Text/CEditBox.h"

namespace tarv {

/// A text view that takes figures alone (`is-number`), and does what the test has asked for when it is offered a text.
class CTestField : public CTextView {
public:
    static std::function<void(CTestField&)> onOffer;

    [[nodiscard]] CError* acceptText(int32_t paragraph, const CString& text, bool& isAccepted) override;
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    void editEnded() override { CFilledView::heard.push_back(name().toUtf8() + ".edit-ended"); }
    [[nodiscard]] CError* editTextChanged(const CString& text) override;
    int32_t offers = 0;
};

/// Does what a test asks for as its handler `act`.
class CTestActor : public CObject {
public:
    static std::function<void()> action;

    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    [[nodiscard]] CError* act();
};

/// An editor whose main window shows text views in a column, each of 100 x 20 pixels at 10, 10 + 30 n.
struct CEditTree : CWindowTree {
    CEditTree();
    ~CEditTree() override;

    static CTestNode field(const std::string& name, CTexts attributes = {}, std::vector<CTestNode> children = {});
    void openFields(std::vector<CTestNode> fields);
    CTestField& text(const std::string& name) const;
    /// The edit box while there is one.
    CEditBox* box() const;
    /// A new CTestActor.
    CObject& actor() const;
    std::string edited() const { return box() ? box()->edit().text().toUtf8() : "-"; }
    std::string title(const std::string& name) const { return text(name).getAttrString("title").toUtf8(); }
    bool isEditing() const { return box() && box()->isEditing(); }
    void clickOn(const std::string& name);
    bool tap(int32_t code, const char* held = "", const std::u16string& characters = {});
    /// Two fields, and a view below them that writes down its presses.
    void openTwo(const CTexts& more = {});
    void type(const std::u16string& characters) { system.input().type(characters); }
    std::string selected() const { return box()->edit().selectedText().toUtf8(); }
    void tick() { system.advance(0.03); }
};

}  // namespace tarv
