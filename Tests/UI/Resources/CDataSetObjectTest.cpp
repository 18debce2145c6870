#include "UI/Resources/CDataSetObject.h"

#include <gtest/gtest.h>

#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"
#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Resources/CFontObject.h"

namespace tarv {
namespace {

const std::vector<CCreatorRow> kCreators = {{"brushset", &createObject<CBrushSetObject>, nullptr},
                                            {"font", &createObject<CFontObject>, nullptr},
                                            {"imageset", &createObject<CImageSetObject>, nullptr},
                                            {"palette", &createObject<CPaletteObject>, nullptr}};

class DataSetObject : public testing::Test {
protected:
    DataSetObject() {
        CImageSet images;
        images.setImage(4, makeImage(2, 1));
        CFont font;
        font.setMetrics(14, 3, 3);
        font.setImage(65, makeImage(1, 2, 7.0));
        CFont bold;
        bold.setMetrics(15, 3, 3);
        CBrushSet brushes;
        brushes.addBrush(new CBrush(1.48));
        EXPECT_GOOD(const_cast<CBrush*>(brushes.getBrush(0))->addVersion(1.0, 1, 1.24, CBytes(256, 9).data()));
        CPalette palette;
        EXPECT_GOOD(palette.addColor("Text", 1.0, CColor().ramp));
        CBytes longer = written(palette);
        longer.push_back(0);
        CBytes cut = written(images);
        cut.pop_back();
        for (const CBytes& file :
             {written(images), written(font), written(bold), written(brushes), written(palette), longer, cut}) {
            resources_.push_back(resourceOf(file));
        }
        const char* const names[] = {"../a.is",  "../a.fnt",   "../a_b.fnt", "../a.bs",
                                     "../a.pal", "longer.pal", "cut.is"};
        for (size_t i = 0; i < std::size(names); ++i) {
            rows_[i] = {resources_[i].data(), names[i]};
        }
        CResourceMap::addRows(rows_);
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
    }

    /// The failure of making an object; whole, with its places.
    static std::string failure(const CTestApplication& application, const CTestNode& node) {
        CObject* root = nullptr;
        EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
        std::string text = consumed(loadTree(*root, {node}));
        delete root;
        (void)application;
        return text;
    }

    CTestApplication application_{kCreators};
    std::vector<CBytes> resources_;
    CResourceRow rows_[8] = {};
};

TEST_F(DataSetObject, LoadsTheResourceThatItsFileNamesAndOwnsIt) {
    const auto root = application_.makeRoot({{"imageset", "button", {{"file", "../a.is"}}},
                                             {"brushset", "brushes", {{"file", "../a.bs"}}},
                                             {"palette", "Default", {{"file", "../a.pal"}}}});
    const auto* images = root->findObjectOf<CImageSetObject>("button");
    const auto* brushes = root->findObjectOf<CBrushSetObject>("brushes");
    const auto* palette = root->findObjectOf<CPaletteObject>("Default");
    ASSERT_TRUE(images && brushes && palette);
    EXPECT_NE(images->dataSet().getImage(4), nullptr);
    EXPECT_EQ(brushes->dataSet().getBrush(0)->width(), 1.48);
    EXPECT_NE(palette->dataSet().findColor("Text"), nullptr);
}

TEST_F(DataSetObject, FailsInTheReadersWordsWithoutItsResource) {
    for (const char* tag : {"imageset", "brushset", "palette"}) {
        const std::string text = failure(application_, {tag, "x", {{"file", "nowhere/a.is"}}});
        EXPECT_NE(text.find("Unable to open file 'nowhere/a.is' for reading"), std::string::npos) << text;
        EXPECT_NE(text.find("UI/Resources/CDataSet"), std::string::npos) << text;
        EXPECT_NE(failure(application_, {tag, "x"}).find("Unable to open file ''"), std::string::npos);
    }
}

TEST_F(DataSetObject, FailsOnWhatIsShortOrLongOrOfAnotherKind) {
    EXPECT_NE(failure(application_, {"imageset", "x", {{"file", "cut.is"}}}).find("Premature end of memory resource"),
              std::string::npos);
    EXPECT_NE(
        failure(application_, {"palette", "x", {{"file", "longer.pal"}}}).find("Data set of 'longer.pal' ends at byte"),
        std::string::npos);
    EXPECT_NE(failure(application_, {"imageset", "x", {{"file", "../a.pal"}}}), "");
    EXPECT_NE(failure(application_, {"palette", "x", {{"file", "../a.bs"}}}), "");
}

TEST_F(DataSetObject, FontHasTheStylesOfItsChildren) {
    const auto root =
        application_.makeRoot({{"font",
                                "base",
                                {},
                                {{"core:object", "regular", {{"is-font-style", "true"}, {"file", "../a.fnt"}}},
                                 {"core:object", "bold", {{"is-font-style", "true"}, {"file", "../a_b.fnt"}}},
                                 {"core:object", "remark", {{"file", "nowhere"}}},
                                 {"core:object", "italic", {{"is-font-style", "false"}, {"file", "nowhere"}}}}}});
    const auto* font = root->findObjectOf<CFontObject>("base");
    ASSERT_TRUE(font);
    ASSERT_NE(font->findStyle("regular"), nullptr);
    EXPECT_EQ(font->findStyle("regular")->nominalHeight(), 14);
    EXPECT_EQ(font->findStyle("regular")->getGlyph(65)->getAdvance(), 7.0);
    EXPECT_EQ(font->findStyle("bold")->nominalHeight(), 15);
    EXPECT_EQ(font->findStyle("italic"), nullptr);
    EXPECT_EQ(font->findStyle("remark"), nullptr);
}

TEST_F(DataSetObject, FontKnowsFiveStylesAndNoOther) {
    for (const char* name : {"regular", "bold", "italic", "bold-italic", "superscript"}) {
        const auto root = application_.makeRoot(
            {{"font", "f", {}, {{"core:object", name, {{"is-font-style", "true"}, {"file", "../a.fnt"}}}}}});
        EXPECT_NE(root->findObjectOf<CFontObject>("f")->findStyle(name), nullptr) << name;
    }
    for (const char* name : {"Bold", "oblique", "regular#1"}) {
        const std::string text =
            failure(application_,
                    {"font", "f", {}, {{"core:object", name, {{"is-font-style", "true"}, {"file", "../a.fnt"}}}}});
        EXPECT_NE(text.find(std::string("Unknown font style '") + name + "'."), std::string::npos) << text;
    }
}

TEST_F(DataSetObject, FontFailsWithItsStyle) {
    EXPECT_NE(
        failure(application_,
                {"font", "f", {}, {{"core:object", "bold", {{"is-font-style", "true"}, {"file", "nowhere.fnt"}}}}})
            .find("Unable to open file 'nowhere.fnt'"),
        std::string::npos);
}

}  // namespace
}  // namespace tarv
