#pragma once

#include <fstream>

#include "Core/CObjectEventBridge.h"
#include "Core/CSharedAttribute.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"
#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Drawing/CColorMixes.h"
#include "UI/Views/CSectorMap.h"
#include "UI/Views/CView.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

using CTexts = std::vector<std::pair<std::string, std::string>>;

/// A view of a definition.
inline CTestNode view(const std::string& name, CTexts attributes = {}, std::vector<CTestNode> children = {}) {
    return {"ui:view", name, std::move(attributes), std::move(children)};
}

/// A window without a system's window: tiles, and a clock that the test sets.
class CFakeWindow final : public CViewWindow {
public:
    CSectorMap& sectorMap() override { return map; }
    double now() const override { return time; }
    CViewBase* keyFocusView() const override { return nullptr; }
    void setKeyFocusView(CViewBase*) override {}
    void setHint(const CString&) override {}
    void setCursor(CCursorShape) override {}
    CInputListener* input() override { return listener; }

    CInputListener* listener = nullptr;  ///< of a test with input
    CColorMixes* colorMixes() override { return mixes; }

    CColorMixes* mixes = nullptr;
    CSectorMap map;
    double time = 100.0;
};

/// Each step of a ramp differs; its brightest entry is `full`.
inline void addRamp(CPalette& palette, const std::string& name, CPixel full, double opacity = 1.0) {
    CPixel ramp[kRampLength];
    for (CPixel i = 0; i < kRampLength; ++i) {
        ramp[i] = i;
    }
    ramp[kRampLength - 1] = full;
    EXPECT_GOOD(palette.addColor(name.c_str(), opacity, ramp));
}

/// An opaque picture of one stored scale in the brightest entry of its ramp.
inline CImage* solidImage(int32_t width, int32_t height) {
    auto* version = new CImageVersion;
    version->setSize(width, height);
    const CBytes pixels(static_cast<size_t>(width * height * 2), 255);
    EXPECT_GOOD(version->encode(pixels.data(), width, height, 2, 0, 0));
    auto* layer = new CImageLayer(2);
    EXPECT_GOOD(layer->addVersion(1.0, version));
    auto* image = new CImage;
    image->addLayer(layer);
    return image;
}

/// An opaque picture in one entry of its ramp, which reaches beyond its nominal rectangle.
inline CImage* stepImage(int32_t width, int32_t height, uint8_t step, const CViewBorders& beyond = {}) {
    const auto left = static_cast<int32_t>(beyond.left);
    const auto top = static_cast<int32_t>(beyond.top);
    const int32_t storedWidth = width + left + static_cast<int32_t>(beyond.right);
    const int32_t storedHeight = height + top + static_cast<int32_t>(beyond.bottom);
    CBytes pixels;
    for (int32_t i = 0; i < storedWidth * storedHeight; ++i) {
        pixels.push_back(step);
        pixels.push_back(255);
    }
    auto* version = new CImageVersion;
    EXPECT_GOOD(version->encode(pixels.data(), storedWidth, storedHeight, 2, -left, -top));
    version->setSize(width, height);
    auto* layer = new CImageLayer(2);
    EXPECT_GOOD(layer->addVersion(1.0, version));
    auto* image = new CImage;
    image->addLayer(layer);
    return image;
}

/// Trees of views, written as texts, in a window of the test. The shared tree has the palettes `A` and `B`, the picture
/// set `is.button` and the brushes `bs.brushes`.
class CViewTest : public testing::Test {
protected:
    explicit CViewTest(const std::vector<CCreatorRow>& more = {}, const std::vector<CTestNode>& moreShared = {})
        : application_(creators(more), sharedTree(moreShared)) {
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
    }
    ~CViewTest() override {
        close();
        CApplication::closeEditor();
    }

    /// Failure of loading a root view of that size with these children; "" for success, and then its window is there.
    std::string tryOpen(CTexts attributes, std::vector<CTestNode> children, int32_t width = 300, int32_t height = 200,
                        std::vector<CTestNode> beside = {}) {
        close();
        attributes.insert(
            attributes.begin(),
            {{"is-root-view", "true"}, {"width", std::to_string(width)}, {"height", std::to_string(height)}});
        CObject* root = nullptr;
        EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
        tree_.reset(root);
        beside.push_back({"ui:view", "w", attributes, std::move(children)});
        const std::string failure = consumed(loadTree(*root, {{"ui:ui-event-bridge", "ui", {}, std::move(beside)}}));
        if (!failure.empty()) {
            tree_.reset();
            return failure;
        }
        rootView_ = tree_->findObjectOf<CView>("ui.w");
        rootView_->setWindow(&window_);
        width_ = width;
        height_ = height;
        picture_.assign(static_cast<size_t>(width * height), 0);
        EXPECT_EQ(consumed(window_.map.resize(width, height)), "");
        flush();
        return "";
    }
    CView& open(CTexts attributes, std::vector<CTestNode> children, int32_t width = 300, int32_t height = 200,
                std::vector<CTestNode> beside = {}) {
        EXPECT_EQ(tryOpen(std::move(attributes), std::move(children), width, height, std::move(beside)), "");
        return *rootView_;
    }
    void close() {
        tree_.reset();
        rootView_ = nullptr;
    }
    CView& at(const std::string& path) {
        auto* found = tree_->findObjectOf<CView>(("ui.w." + path).c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    static void set(CObject& object, const std::string& name, const std::string& text) {
        EXPECT_EQ(consumed(object.setAttribute(name.c_str(), CString(text.c_str()))), "") << name;
    }
    static std::string text(const CObject& object, const std::string& name) {
        return object.getAttrString(name.c_str()).toUtf8();
    }
    void flush() { EXPECT_EQ(consumed(rootView_->area().net().flush()), ""); }
    /// A render tick that many seconds behind the last one; gives the pixels that were drawn.
    int64_t tick(double seconds = 0.0) {
        window_.time += seconds;
        rootView_->runTimers();
        flush();
        return render();
    }
    int64_t render() {
        int64_t drawn = 0;
        window_.map.render(
            [&](int32_t column, int32_t row, const CIntRect& rect, const CSurface& surface, int32_t surfaceRow) {
                drawn += int64_t{rect.right - rect.left} * (rect.bottom - rect.top);
                copyTile(column * CSector::kSize, row * CSector::kSize, rect,
                         const_cast<CSurface&>(surface).pixels() + int64_t{surfaceRow} * CSector::kSize);
            },
            [&](CSectorView&, CError* error) { failures_.push_back(consumed(error)); });
        return drawn;
    }
    /// What was drawn so far, row by row.
    const std::vector<CPixel>& picture() const { return picture_; }
    CPixel pixel(int32_t x, int32_t y) const { return picture_[static_cast<size_t>(y * width_ + x)]; }
    /// Box of a view, in whole pixels: "x,y wxh".
    std::string box(const std::string& path) {
        const CViewRect rect = at(path).area().box();
        const auto whole = [](double value) { return std::to_string(std::lround(value)); };
        return whole(rect.x) + "," + whole(rect.y) + " " + whole(rect.width) + "x" + whole(rect.height);
    }

    /// A file of a data set for the shared tree; gives its path.
    template <class T>
    static std::string writeSet(const std::string& name, const T& set) {
        const std::string path = testing::TempDir() + "view-test-" + name;
        const CBytes bytes = written(set);
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return path;
    }

    static constexpr CPixel kPanel = 0x102030;
    static constexpr CPixel kDisabledPanel = 0x303030;
    static constexpr CPixel kKnob = 0x405060;
    static constexpr CPixel kKnobActive = 0x708090;
    static constexpr CPixel kKnobHover = 0xa0b0c0;

    CWindowSystemByHand system_;
    CTestApplication application_;
    CFakeWindow window_;
    std::unique_ptr<CObject> tree_;
    CView* rootView_ = nullptr;
    std::vector<std::string> failures_;

private:
    static std::vector<CCreatorRow> creators(const std::vector<CCreatorRow>& more) {
        std::vector<CCreatorRow> rows = {
            {"brushset", &createObject<CBrushSetObject>, nullptr},
            {"core:object", &createObject<CObject>, nullptr},
            {"core:shared-attribute", &createObject<CSharedAttribute>, &CSharedAttribute::initClass},
            {"imageset", &createObject<CImageSetObject>, nullptr},
            {"palette", &createObject<CPaletteObject>, nullptr},
            {"ui:ui-event-bridge", &createObject<CStdEventBridge>, nullptr},
            {"ui:view", &createObject<CView>, &CView::initClass},
            {"ui:view-color-slot", &createObject<CViewColorSlot>, &CViewColorSlot::initClass},
            {"ui:view-command", &createObject<CViewCommand>, nullptr},
            {"ui:view-state", &createObject<CViewState>, nullptr}};
        rows.insert(rows.end(), more.begin(), more.end());
        return rows;
    }
    static std::vector<CTestNode> sharedTree(const std::vector<CTestNode>& more) {
        std::vector<CTestNode> tree = {sharedObject("pal", "palette", {{"A", writePalette(0)}, {"B", writePalette(1)}}),
                                       sharedObject("is", "imageset", {{"button", writeImages()}}),
                                       sharedObject("bs", "brushset", {{"brushes", writeBrushes()}})};
        tree.insert(tree.end(), more.begin(), more.end());
        return tree;
    }
    static CTestNode sharedObject(const std::string& name, const std::string& tag, const CTexts& files) {
        CTestNode node{"core:object", name};
        for (const auto& [child, file] : files) {
            node.children.push_back({tag, child, {{"file", file}}});
        }
        return node;
    }
    static std::string writePalette(CPixel extra) {
        CPalette palette;
        addRamp(palette, "Panel", kPanel + extra);
        addRamp(palette, "Knob", kKnob + extra);
        addRamp(palette, "Knob_Active", kKnobActive + extra);
        addRamp(palette, "Knob_Hover", kKnobHover + extra);
        addRamp(palette, "Text", 0x010203 + extra);
        addRamp(palette, "Text_ActiveHover", 0x111213 + extra);
        addRamp(palette, "Disabled", kDisabledPanel + extra);
        addRamp(palette, "DisabledText", 0x606162 + extra);
        addRamp(palette, "HoveredParagraph", 0x203040 + extra);
        addRamp(palette, "Selection", 0x304050 + extra);
        addRamp(palette, "SelectionText", 0xf0f1f2 + extra);
        addRamp(palette, "Action", 0xd0d1d2 + extra);
        addRamp(palette, "Glass", 0x808080, 0.5);
        addRamp(palette, "Alarm", 0x200000);
        addRamp(palette, "Alarm|0", 0x210000);
        addRamp(palette, "Alarm|1", 0x220000);
        addRamp(palette, "Alarm|2", 0x230000);
        EXPECT_GOOD(palette.setFrameCount("Alarm", 3));
        return writeSet(extra ? "b.pal" : "a.pal", palette);
    }
    static std::string writeImages() {
        CImageSet images;
        images.setImage(0, solidImage(4, 2));
        images.setImage(1, solidImage(6, 6));
        images.setImage(2, solidImage(8, 8));
        // Two frames of nine pieces of 4 x 4, each in the step of its index, that reach beyond by 1, 2, 3 and 4 pixels.
        for (uint32_t i = 0; i < 18; ++i) {
            const uint32_t column = i % 3;
            const uint32_t row = i / 3 % 3;
            images.setImage(10 + i, stepImage(4, 4, static_cast<uint8_t>(10 + i),
                                              {row == 2 ? 4.0 : 0.0, column == 0 ? 1.0 : 0.0, column == 2 ? 3.0 : 0.0,
                                               row == 0 ? 2.0 : 0.0}));
        }
        // Three pictures of an animation, and one that reaches beyond.
        for (uint32_t i = 0; i < 3; ++i) {
            images.setImage(40 + i, stepImage(4, 2, static_cast<uint8_t>(40 + i)));
        }
        images.setImage(50, stepImage(4, 4, 50, {1.0, 1.0, 1.0, 1.0}));
        EXPECT_GOOD(images.addRange("Frame", 10, 18));
        EXPECT_GOOD(images.addRange("Frames", 10, 27));
        EXPECT_GOOD(images.addRange("Wheel", 40, 42));
        EXPECT_GOOD(images.addRange("Glow", 50, 50));
        EXPECT_GOOD(images.addRange("", 0, 0));
        EXPECT_GOOD(images.addRange("Box", 0, 0));
        EXPECT_GOOD(images.addRange("BoxActive", 1, 1));
        EXPECT_GOOD(images.addRange("BoxPushed", 2, 2));
        return writeSet("a.is", images);
    }
    static std::string writeBrushes() {
        CBrushSet brushes;
        brushes.addBrush(new CBrush(1.48));
        EXPECT_GOOD(const_cast<CBrush*>(brushes.getBrush(0))->addVersion(1.0, 1, 1.24, CBytes(256, 9).data()));
        return writeSet("a.bs", brushes);
    }
    void copyTile(int32_t x, int32_t y, const CIntRect& rect, const CPixel* pixels) {
        for (int32_t row = rect.top; row < rect.bottom && y + row < height_; ++row) {
            for (int32_t column = rect.left; column < rect.right && x + column < width_; ++column) {
                picture_[static_cast<size_t>((y + row) * width_ + x + column)] = pixels[row * CSector::kSize + column];
            }
        }
    }

    int32_t width_ = 0;
    int32_t height_ = 0;
    std::vector<CPixel> picture_;
};

}  // namespace tarv
