// The scale that the user's settings hold, as it reaches the graphics of the shared tree when editors open and close.

#include <gtest/gtest.h>

#include "Core/CApplicationData.h"
#include "Tests/Core/CUserFolder.h"
#include "Tests/Core/TestApplication.h"
#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Resources/CDataSetObject.h"
#include "UI/Resources/CFontObject.h"

namespace tarv {
namespace {

/// An application whose shared tree has an image set and a font, with settings in a folder of the test.
class StoredScale : public testing::Test {
protected:
    StoredScale() {
        CImageSet images;
        images.setImage(0, makeImage(2, 1));
        images_ = resourceOf(written(images));
        CFont font;
        font.setMetrics(20, 3, 3);
        font.setImage(65, makeImage(1, 2, 7.0));
        font_ = resourceOf(written(font));
    }
    ~StoredScale() override {
        CApplication::finish();
        CLocalData::instance().reset();
        CGlobalData::instance().reset();
    }
    /// Starts the application anew, in which the settings hold that scale.
    void start(const char* stored) {
        CApplication::finish();
        CLocalData().writeText("ui-scale", stored);
        CLocalData::instance().reset();
        tree_ = treeResource(
            {{"imageset", "images", {{"file", "a.is"}}},
             {"font", "font", {}, {{"core:object", "regular", {{"is-font-style", "true"}, {"file", "a.fnt"}}}}}});
        rows_[0] = {reinterpret_cast<const unsigned char*>(tree_.data()), "SharedData.xml"};
        rows_[1] = {images_.data(), "a.is"};
        rows_[2] = {font_.data(), "a.fnt"};
        ASSERT_EQ(consumed(CApplication::start({kCreators, std::size(kCreators), rows_})), "");
    }
    /// What a user chooses in the window of the settings.
    static void choose(const char* scale) { CLocalData::instance().writeText("ui-scale", scale); }
    static void open() { EXPECT_EQ(consumed(CApplication::openEditor()), ""); }
    /// Width of the one image, 20 at scale 1; 0 if nothing is loaded.
    static int32_t width() {
        const CImage* image =
            CApplication::sharedRoot()->findObjectOf<CImageSetObject>("images")->dataSet().getImage(0);
        return image ? image->getWidth() : 0;
    }
    /// Width of the letter, 20 at scale 1; 0 if nothing is loaded.
    static int32_t letterWidth() {
        const CFont* font = CApplication::sharedRoot()->findObjectOf<CFontObject>("font")->findStyle("regular");
        const CImage* letter = font->getGlyph(65);
        return letter ? letter->getWidth() : 0;
    }

    static constexpr CCreatorRow kCreators[] = {{"font", &createObject<CFontObject>, nullptr},
                                                {"imageset", &createObject<CImageSetObject>, nullptr}};
    CUserFolder folder_;
    std::string tree_;
    CBytes images_;
    CBytes font_;
    CResourceRow rows_[4] = {};
};

TEST_F(StoredScale, ChoosesTheVersionsWhenAnEditorOpens) {
    for (const auto& [stored, expected] : std::vector<std::pair<const char*, int32_t>>{{"0.8", 16},
                                                                                       {"1.0", 20},
                                                                                       {"1.25", 25},
                                                                                       {"1,25", 25},
                                                                                       {"0.9", 16},
                                                                                       {"0.5", 16},
                                                                                       {"4", 25},
                                                                                       {"0.49", 20},
                                                                                       {"4.01", 20},
                                                                                       {"large", 20},
                                                                                       {"-7", 20},
                                                                                       {"999", 20}}) {
        start(stored);
        open();
        EXPECT_EQ(width(), expected) << stored;
        EXPECT_EQ(letterWidth(), expected) << stored;
    }
}

TEST_F(StoredScale, GraphicsAreNotLoadedBeforeAnEditorOpens) {
    start("1.0");
    EXPECT_EQ(width(), 0);
    EXPECT_EQ(letterWidth(), 0);
    open();
    EXPECT_EQ(width(), 20);
    EXPECT_EQ(letterWidth(), 20);
    CApplication::closeEditor();
    EXPECT_EQ(width(), 20) << "another editor opens without loading";
}

TEST_F(StoredScale, ANewScaleActsWhenAnEditorOpensWhileNoOtherIsOpen) {
    start("1.0");
    open();
    choose("1.25");
    EXPECT_EQ(CApplication::uiScale(), 1.0);
    CApplication::refreshUiScale();
    EXPECT_EQ(CApplication::uiScale(), 1.0) << "an editor is open";
    open();
    EXPECT_EQ(CApplication::uiScale(), 1.0) << "another editor is open";
    EXPECT_EQ(width(), 20);
    CApplication::closeEditor();
    CApplication::closeEditor();
    open();
    EXPECT_EQ(CApplication::uiScale(), 1.25);
    EXPECT_EQ(width(), 25);
    EXPECT_EQ(letterWidth(), 25);
    CApplication::closeEditor();
    choose("0.8");
    open();
    EXPECT_EQ(width(), 16);
    EXPECT_EQ(letterWidth(), 16);
}

TEST_F(StoredScale, ChosenBetweenTwoEditorsIsKnownBeforeTheNextOpens) {
    start("1.0");
    choose("0.8");
    EXPECT_EQ(CApplication::uiScale(), 1.0);
    CApplication::refreshUiScale();
    EXPECT_EQ(CApplication::uiScale(), 0.8);
    EXPECT_EQ(width(), 0) << "nothing is loaded for it";
}

TEST_F(StoredScale, AnObjectThatIsMadeLaterHasTheGraphicsOfTheOthers) {
    start("1.25");
    open();
    CObject* root = nullptr;
    ASSERT_EQ(consumed(CApplication::initRootObject(root)), "");
    const std::unique_ptr<CObject> owner(root);
    ASSERT_EQ(consumed(loadTree(*root, {{"imageset", "more", {{"file", "a.is"}}}})), "");
    EXPECT_EQ(root->findObjectOf<CImageSetObject>("more")->dataSet().getImage(0)->getWidth(), 25);
}

TEST_F(StoredScale, ADamagedResourceKeepsAnEditorClosedAndNamesItsObject) {
    font_.back() ^= 0x80;
    font_.resize(font_.size() - 1);
    font_[0] = static_cast<uint8_t>(font_[0] - 1);
    start("1.0");
    for (int32_t attempt = 0; attempt < 2; ++attempt) {
        const std::string text = consumed(CApplication::openEditor());
        EXPECT_NE(text.find("Premature end of memory resource"), std::string::npos) << text;
        EXPECT_NE(text.find("font"), std::string::npos) << text;
    }
    choose("1.25");
    CApplication::refreshUiScale();
    EXPECT_EQ(CApplication::uiScale(), 1.25) << "no editor is open";
}

}  // namespace
}  // namespace tarv
