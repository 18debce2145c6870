#include <gtest/gtest.h>

#include <cstring>

#include "Product/ProductNames.h"
#include "ProductTree.h"

namespace tarv {

namespace {

// In table order; a kind of data set, or the id of a compressed block.
struct CResourceKind {
    const char* name;
    const char* kind;
};

constexpr CResourceKind kResources[] = {
    {"../../../Gfx/Brushes/brushes.bs", "graphics"},
    {"../../../Gfx/Fonts/base.fnt", "graphics"},
    {"../../../Gfx/Fonts/base_b.fnt", "graphics"},
    {"../../../Gfx/Fonts/micro.fnt", "graphics"},
    {"../../../Gfx/Fonts/micro_b.fnt", "graphics"},
    {"../../../Gfx/Fonts/micro-sm.fnt", "graphics"},
    {"../../../Gfx/Fonts/micro-sm_b.fnt", "graphics"},
    {"../../../Gfx/Fonts/small.fnt", "graphics"},
    {"../../../Gfx/Fonts/small_b.fnt", "graphics"},
    {"../../../Gfx/Fonts/title.fnt", "graphics"},
    {"../../../Gfx/Fonts/title_b.fnt", "graphics"},
    {"../../../Gfx/Imagesets/autoscroll.is", "graphics"},
    {"../../../Gfx/Imagesets/button.is", "graphics"},
    {"../../../Gfx/Imagesets/buttonab.is", "graphics"},
    {"../../../Gfx/Imagesets/close.is", "graphics"},
    {"../../../Gfx/Imagesets/csurface.is", "graphics"},
    {"../../../Gfx/Imagesets/editbox.is", "graphics"},
    {"../../../Gfx/Imagesets/frame.is", "graphics"},
    {"../../../Gfx/Imagesets/groupcaption.is", "graphics"},
    {"../../../Gfx/Imagesets/history.is", "graphics"},
    {"../../../Gfx/Imagesets/instancename.is", "graphics"},
    {"../../../Gfx/Imagesets/listoutline.is", "graphics"},
    {"../../../Gfx/Imagesets/palicon.is", "graphics"},
    {"../../../Gfx/Imagesets/popup.is", "graphics"},
    {"../../../Gfx/Imagesets/popup2.is", "graphics"},
    {"../../../Gfx/Imagesets/ruler.is", "graphics"},
    {"../../../Gfx/Imagesets/scroller.is", "graphics"},
    {"../../../Gfx/Imagesets/statusbar.is", "graphics"},
    {"../../../Gfx/Imagesets/texture.is", "graphics"},
    {"../../../Gfx/Imagesets/tarvelo.is", "graphics"},
    {"../../../Gfx/Palettes/Blue.pal", "graphics"},
    {"../../../Gfx/Palettes/Default.pal", "graphics"},
    {"../../../Gfx/Palettes/Green.pal", "graphics"},
    {"../../../Gfx/Palettes/Military.pal", "graphics"},
    {"../../../Gfx/Palettes/Red.pal", "graphics"},
    {"FactoryROM.cbf", "abnk"},
    {"SharedData.xml", "cxml"},
    {"UserInterface.xml", "cxml"},
    {"AppDataGlobal_routing-presets", "alst"},
};
static_assert(std::size(kResources) == 39);

uint32_t wordAt(const unsigned char* bytes) {
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

class ProductResources : public CProductTree {};
class EditorResource : public CEditorProductTree {};

TEST_F(ProductResources, AreTheThirtyNineOfTheTableInItsOrder) {
    for (size_t i = 0; i < std::size(kResources); ++i) {
        EXPECT_STREQ(kResourceRows[i].name, kResources[i].name);
    }
    EXPECT_EQ(kResourceRows[39].data, nullptr);
    EXPECT_EQ(kResourceRows[39].name, nullptr);
}

TEST_F(ProductResources, CarryTheirLengthInFrontAndAreOfTheirKind) {
    for (size_t i = 0; i < std::size(kResources); ++i) {
        const unsigned char* data = kResourceRows[i].data;
        const uint32_t size = wordAt(data);
        ASSERT_GE(size, 12u) << kResources[i].name;
        if (std::strcmp(kResources[i].kind, "graphics") == 0) {
            EXPECT_EQ(wordAt(data + 4), size - 4) << kResources[i].name;
            EXPECT_EQ(wordAt(data + 8), 1u) << kResources[i].name;
        } else {
            EXPECT_EQ(std::memcmp(data + 4, kResources[i].kind, 4), 0) << kResources[i].name;
        }
    }
}

TEST_F(ProductResources, HoldAllGraphicsInLessThanFourMebibytes) {
    int64_t bytes = 0;
    for (size_t i = 0; i < std::size(kResources); ++i) {
        if (std::strcmp(kResources[i].kind, "graphics") == 0) {
            // A data set with nothing in it takes at most 32 bytes.
            EXPECT_GT(wordAt(kResourceRows[i].data), 100u) << kResources[i].name;
            bytes += wordAt(kResourceRows[i].data);
        }
    }
    EXPECT_LT(bytes, 4 << 20);
}

TEST_F(ProductResources, HoldWhatTheGraphicsObjectsName) {
    int count = 0;
    for (const char* folder : {"bs", "pal", "is"}) {
        for (const CObject* object : shared(folder)->children()) {
            CResourceMap::CRange range;
            EXPECT_TRUE(CResourceMap::find(object->getAttrString("file"), range)) << object->fullName().toUtf8();
            ++count;
        }
    }
    for (const CObject* font : shared("font")->children()) {
        EXPECT_EQ(font->tag().toUtf8(), "font");
        for (const CObject* style : font->children()) {
            CResourceMap::CRange range;
            EXPECT_TRUE(style->getAttrBool("is-font-style")) << style->fullName().toUtf8();
            EXPECT_TRUE(CResourceMap::find(style->getAttrString("file"), range)) << style->fullName().toUtf8();
            ++count;
        }
    }
    EXPECT_EQ(count, 40);
}

TEST_F(EditorResource, LetsAnEditorsRootLoad) {
    const auto root = makeEditor();
    ASSERT_TRUE(root->findChild("ui"));
    EXPECT_EQ(root->findChild("ui")->tag().toUtf8(), "ui:ui-event-bridge");
}

TEST_F(ProductResources, AndVersionResourceNameOneProduct) {
    const CObject* project = shared("project");
    EXPECT_EQ(project->getAttrString("app-vendor").toUtf8(), TARV_PRODUCT_VENDOR);
    EXPECT_EQ(project->getAttrString("app-name").toUtf8(), TARV_PRODUCT_NAME);
    EXPECT_EQ(project->getAttrString("app-name-concat").toUtf8() + ".dll", TARV_PRODUCT_FILE);
    EXPECT_EQ(project->getAttrString("app-desc").toUtf8(), TARV_PRODUCT_DESCRIPTION);
    EXPECT_EQ(project->getAttrString("app-copyright").toUtf8(), TARV_PRODUCT_COPYRIGHT);
    EXPECT_EQ(project->getAttrString("app-version").toUtf8(), TARV_PRODUCT_VERSION_TEXT);
    EXPECT_EQ(std::to_string(TARV_PRODUCT_VERSION_MAJOR) + "." + std::to_string(TARV_PRODUCT_VERSION_MINOR),
              TARV_PRODUCT_VERSION_TEXT);
}

}  // namespace

}  // namespace tarv
