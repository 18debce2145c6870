#pragma once

#include "Tests/UI/Text/TextHelp.h"
#include "Tests/UI/Views/ViewTree.h"
#include "UI/Resources/CFontObject.h"
#include "UI/Text/CTextView.h"

namespace tarv {

/// Writes down the events of rows, as "event index text".
class CRowLog : public CObject {
public:
    static std::vector<std::string> heard;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CRowLog::receive>("receive");
        return nullptr;
    }

private:
    [[nodiscard]] CError* receive(CAttributeMap& params) {
        heard.push_back(params["event-name"].asString().toUtf8() + " " + params["index"].asString().toUtf8() + " " +
                        params["text"].asString().toUtf8());
        return nullptr;
    }
};

/// Destroys a view when it reports a row.
class CRowDestroyer : public CObject {
public:
    static CObject* victim;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CRowDestroyer::receive>("receive");
        return nullptr;
    }
    static void arm(const CObject& tree, const char* sender) {
        tree.findObject("ui.destroyer")->listenObject(sender, "selected-paragraph-changed", "receive");
    }

private:
    [[nodiscard]] CError* receive() {
        delete victim;
        victim = nullptr;
        return nullptr;
    }
};

/// Trees of text views. The shared tree has the font `font.base` of three styles and `font.lone` without bold and
/// superscript; the root view has the first and the palette `A`.
class CTextViewTest : public CViewTest {
protected:
    explicit CTextViewTest(const std::vector<CCreatorRow>& more = {}) : CViewTest(creators(more), {fontNode()}) {
        CRowLog::heard.clear();
    }

    static CTestNode label(const std::string& name, CTexts attributes, std::vector<CTestNode> children = {}) {
        return {"ui:textview", name, std::move(attributes), std::move(children)};
    }
    /// A root view of kPanel with these children.
    void openTexts(std::vector<CTestNode> children, int32_t width = 300, int32_t height = 200) {
        open({{"palette", "A"}, {"color", "Panel"}, {"font-name", "shared::font.base"}}, std::move(children), width,
             height, {{"test:destroyer", "destroyer"}, {"test:log", "log"}});
    }
    using CViewTest::text;
    CTextView& text(const std::string& path) { return dynamic_cast<CTextView&>(at(path)); }
    void listen(const std::string& path) {
        auto* log = tree_->findObject("ui.log");
        for (const char* event : {"selected-paragraph-changed", "paragraph-dbl-clicked", "paragraph-chosen"}) {
            log->listenObject(("ui.w." + path).c_str(), event, "receive");
        }
    }
    static std::string heard() {
        std::string all;
        for (const std::string& line : CRowLog::heard) {
            all += (all.empty() ? "" : ", ") + line;
        }
        CRowLog::heard.clear();
        return all;
    }

    /// The picture as it should be: the panel, and what is put on it.
    void expectBackground(int32_t width = 300, int32_t height = 200) {
        expectedWidth_ = width;
        expected_.assign(static_cast<size_t>(width * height), kPanel);
    }
    void expectRect(int32_t x, int32_t y, int32_t width, int32_t height, CPixel color) {
        for (int32_t row = y; row < y + height; ++row) {
            for (int32_t column = x; column < x + width; ++column) {
                expected_[static_cast<size_t>(row * expectedWidth_ + column)] = color;
            }
        }
    }
    /// Glyphs of a face from x on, their line's top at y, in the stored scale, within a clip.
    void expectText(const CTestFace& face, const std::string& text, int32_t x, int32_t y, CPixel color,
                    const CIntRect& clip = {0, 0, 10000, 10000}) {
        CFont font;
        face.fill(font);
        for (const char c : text) {
            const CImage* glyph = font.getGlyph(static_cast<unsigned char>(c));
            expectGlyph(glyph->layer(0).versionNear(CApplication::uiScale()), x, y, color, clip);
            x += glyph->layer(0).versionNear(CApplication::uiScale()).width();
        }
    }
    /// How many pixels differ from what is expected.
    int32_t wrongPixels() const {
        int32_t wrong = 0;
        for (size_t i = 0; i < expected_.size(); ++i) {
            wrong += (picture()[i] & 0xffffff) != expected_[i] ? 1 : 0;
        }
        return wrong;
    }
    /// The same for a part.
    int32_t wrongPixelsIn(const CIntRect& part) const {
        int32_t wrong = 0;
        for (int32_t y = part.top; y < part.bottom; ++y) {
            for (int32_t x = part.left; x < part.right; ++x) {
                const auto i = static_cast<size_t>(y * expectedWidth_ + x);
                wrong += (picture()[i] & 0xffffff) != expected_[i] ? 1 : 0;
            }
        }
        return wrong;
    }

    static constexpr CPixel kText = 0x010203;
    static constexpr CPixel kAction = 0xd0d1d2;

    CTestFace face;
    CTestFace boldFace{14, 3, 3, 1, 2};
    CTestFace smallFace{9, 1, 2, -1, 3};

private:
    static std::vector<CCreatorRow> creators(const std::vector<CCreatorRow>& more) {
        std::vector<CCreatorRow> rows = {{"font", &createObject<CFontObject>, nullptr},
                                         {"test:destroyer", &createObject<CRowDestroyer>, &CRowDestroyer::initClass},
                                         {"test:log", &createObject<CRowLog>, &CRowLog::initClass},
                                         {"ui:textview", &createObject<CTextView>, &CTextView::initClass}};
        rows.insert(rows.end(), more.begin(), more.end());
        return rows;
    }
    static CTestNode style(const std::string& name, const CTestFace& face) {
        CFont font;
        face.fill(font);
        return {"core:object", name, {{"is-font-style", "true"}, {"file", writeSet(name + ".fnt", font)}}};
    }
    /// Written once: the files hold the same for all tests of the program.
    static const CTestNode& fontNode() {
        static const CTestNode node = makeFontNode();
        return node;
    }
    static CTestNode makeFontNode() {
        const CTestNode regular = style("regular", {});
        const CTestNode bold = style("bold", {14, 3, 3, 1, 2});
        const CTestNode italic = style("italic", {14, 3, 3, 2, 4});
        const CTestNode small = style("superscript", {9, 1, 2, -1, 3});
        return {"core:object",
                "font",
                {},
                {{"font", "base", {}, {regular, bold, italic, small}}, {"font", "lone", {}, {regular}}}};
    }
    void expectGlyph(const CImageVersion& version, int32_t x, int32_t y, CPixel color, const CIntRect& clip) {
        const CBytes alpha = decoded(version, 1);
        for (int32_t row = 0; row < version.storedHeight(); ++row) {
            for (int32_t column = 0; column < version.storedWidth(); ++column) {
                const int32_t px = x + version.x() + column;
                const int32_t py = y + version.y() + row;
                const size_t at = static_cast<size_t>(py * expectedWidth_ + px);
                if (px < clip.left || py < clip.top || px >= clip.right || py >= clip.bottom || px < 0 || py < 0 ||
                    px >= expectedWidth_ || at >= expected_.size()) {
                    continue;
                }
                const auto a = static_cast<int32_t>(alpha[static_cast<size_t>(row * version.storedWidth() + column)]);
                expected_[at] = a == 255 ? color : blended(expected_[at], color, a);
            }
        }
    }
    static CPixel blended(CPixel target, CPixel source, int32_t alpha) {
        CPixel result = 0;
        for (const int32_t shift : {0, 8, 16}) {
            const auto d = static_cast<int32_t>(target >> shift & 255);
            const auto s = static_cast<int32_t>(source >> shift & 255);
            result |= static_cast<CPixel>((d * 256 + (s - d) * alpha) >> 8) << shift;
        }
        return result;
    }

    int32_t expectedWidth_ = 0;
    std::vector<CPixel> expected_;
};

}  // namespace tarv
