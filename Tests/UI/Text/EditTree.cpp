#include "Tests/UI/Text/EditTree.h"

#include <fstream>

#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

std::function<void(CTestField&)> CTestField::onOffer;
std::function<void()> CTestActor::action;

namespace {

/// A file of a data set for the shared tree; gives its path.
template <class T>
std::string writeFile(const std::string& name, const T& set) {
    const std::string path = testing::TempDir() + "edit-test-" + name;
    const CBytes bytes = written(set);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
}

CTestNode fontNode() {
    static std::string file;
    if (file.empty()) {
        CFont font;
        CTestFace().fill(font);
        file = writeFile("a.fnt", font);
    }
    return {"core:object",
            "font",
            {},
            {{"font", "base", {}, {{"core:object", "regular", {{"is-font-style", "true"}, {"file", file}}}}}}};
}

CTestNode paletteNode() {
    static std::string file;
    if (file.empty()) {
        CPalette palette;
        CPixel full = 0x102030;
        for (const char* name : {"Panel", "Selection", "SelectionText", "Text"}) {
            CPixel ramp[kRampLength] = {};
            ramp[kRampLength - 1] = full;
            full += 0x101010;
            EXPECT_GOOD(palette.addColor(name, 1.0, ramp));
        }
        file = writeFile("a.pal", palette);
    }
    return {"core:object", "pal", {}, {{"palette", "A", {{"file", file}}}}};
}

}  // namespace

CError* CTestField::acceptText(int32_t paragraph, const CString& text, bool& isAccepted) {
    ++offers;
    CFilledView::heard.push_back(name().toUtf8() + ".accept-" + text.toUtf8());
    if (onOffer) {
        const CObjectWatch watch(*this);
        const auto run = onOffer;
        run(*this);
        if (!watch.isAlive()) {
            return nullptr;
        }
    }
    bool isNumber = true;
    (void)CString::toDouble(text, &isNumber);
    if (getAttrBool("is-number") && !isNumber) {
        isAccepted = false;
        return nullptr;
    }
    return CTextView::acceptText(paragraph, text, isAccepted);
}

CError* CTestField::mousePress(CAttributeMap& params) {
    CFilledView::heard.push_back(name().toUtf8() + ".press");
    return CTextView::mousePress(params);
}

CError* CTestField::editTextChanged(const CString& text) {
    CFilledView::heard.push_back(name().toUtf8() + ".change-" + text.toUtf8());
    return CTextView::editTextChanged(text);
}

CError* CTestActor::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CTestActor::act>("act");
    return nullptr;
}

CError* CTestActor::act() {
    const auto run = action;
    run();
    return nullptr;
}

CEditTree::CEditTree() {
    CTestField::onOffer = {};
    CTestActor::action = [] {};
    hasGraphics = true;
    classes = {{"font", &createObject<CFontObject>, nullptr},
               {"palette", &createObject<CPaletteObject>, nullptr},
               {"test:actor", &createObject<CTestActor>, &CTestActor::initClass},
               {"test:field", &createObject<CTestField>, &CTestField::initClass},
               {"ui:editbox", &createObject<CEditBox>, &CEditBox::initClass},
               {"ui:textview", &createObject<CTextView>, &CTextView::initClass}};
    templates = {fontNode(), paletteNode(),
                 testTemplate("ui:editbox-popup", "ui:editbox",
                              {{"z-index", "150000000"}, {"inner-border", "*LR2"}, {"color", "Panel"}})};
}

CEditTree::~CEditTree() {
    CTestField::onOffer = {};
    CTestActor::action = [] {};
    close();
}

CTestNode CEditTree::field(const std::string& name, CTexts attributes, std::vector<CTestNode> children) {
    attributes.insert(attributes.begin(), {{"is-read-only", "false"},
                                           {"placement", "top"},
                                           {"alignment-h", "left"},
                                           {"width", "100"},
                                           {"height", "20"},
                                           {"outer-border", "*LT10"}});
    return {"test:field", name, std::move(attributes), std::move(children)};
}

void CEditTree::openFields(std::vector<CTestNode> fields) {
    open(std::move(fields), {{"font-name", "shared::font.base"}, {"palette", "A"}, {"fill", "7"}});
    heard();
}

void CEditTree::openTwo(const CTexts& more) {
    CTexts first = {{"title", "one"}};
    first.insert(first.end(), more.begin(), more.end());
    openFields({field("a", first), field("b", {{"title", "two"}}),
                view("other", {{"placement", "bottom"}, {"width", "100%"}, {"height", "50"}})});
}

CTestField& CEditTree::text(const std::string& name) const {
    auto* found = tree->findObjectOf<CTestField>(("ui.main-window." + name).c_str());
    EXPECT_TRUE(found) << name;
    return *found;
}

CEditBox* CEditTree::box() const {
    return tree->findObjectOf<CEditBox>("ui.main-window.temp-editbox");
}

CObject& CEditTree::actor() const {
    CObject* made = nullptr;
    EXPECT_EQ(consumed(tree->findObject("ui")->createChild(made, "test:actor", "actor", false)), "");
    return *made;
}

void CEditTree::clickOn(const std::string& name) {
    const CViewRect rect = text(name).wholeRect();
    click(static_cast<int32_t>(rect.x + rect.width / 2), static_cast<int32_t>(rect.y + rect.height / 2));
}

bool CEditTree::tap(int32_t code, const char* held, const std::u16string& characters) {
    const std::string keys = held;
    system.input().holdKeys(keys.find('s') != keys.npos, keys.find('c') != keys.npos, keys.find('a') != keys.npos);
    const bool isTaken = system.input().tap(code, characters);
    system.input().holdKeys(false, false, false);
    return isTaken;
}

}  // namespace tarv
