#include "UI/Text/CTextWrapper.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

// A pen that passes the width by less than this comes from the rounding of advances.
constexpr double kTolerance = 1.0 / 128.0;

constexpr uint16_t kHyphen = 0x2010;
constexpr uint16_t kMinus = 0x2212;

bool isBlank(uint16_t item) {
    return item == ' ' || item == '\t';
}

bool isHyphen(uint16_t item) {
    return item == '-' || item == kHyphen;
}

bool isDigit(uint16_t item) {
    return item >= '0' && item <= '9';
}

bool isPoint(uint16_t item) {
    return item == '.' || item == ',';
}

bool isBreak(uint16_t item) {
    return item == CTextSource::kParagraphEnd || item == CTextSource::kLineBreak;
}

}  // namespace

/// One run over a text.
class CTextWrapper::CRun {
public:
    CRun(const CTextSource& source, const CTextFonts& fonts, const CTextSettings& settings, CTextLayout& layout)
        : source_(source), fonts_(fonts), settings_(settings), layout_(layout) {}

    void run() {
        layout_.places_.resize(source_.count());
        y_ = settings_.isList ? settings_.paragraphSpacing / 2 : 0;
        int32_t first = 0;
        while (true) {
            addParagraph(first);
            first += layout_.paragraphs_.last().count + 1;
            if (first > source_.count()) {
                break;
            }
            y_ += settings_.paragraphSpacing;
        }
        const int32_t half = settings_.paragraphSpacing / 2;
        layout_.height_ = y_ + (settings_.isList ? settings_.paragraphSpacing - half : 0);
    }

private:
    void addParagraph(int32_t first) {
        CTextParagraph paragraph;
        paragraph.first = first;
        paragraph.firstLine = layout_.lines_.count();
        paragraph.y = y_;
        bool isOpen = true;
        while (isOpen) {
            isOpen = addLine(first);
            first = layout_.lines_.last().behind();
        }
        const CTextLine& last = layout_.lines_.last();
        const bool hasEnd = last.count > 0 && source_.at(last.behind() - 1) == CTextSource::kParagraphEnd;
        paragraph.count = last.behind() - (hasEnd ? 1 : 0) - paragraph.first;
        paragraph.lineCount = layout_.lines_.count() - paragraph.firstLine;
        paragraph.height = y_ - paragraph.y;
        layout_.paragraphs_.append(paragraph);
    }

    /// Gives whether the paragraph goes on behind it.
    bool addLine(int32_t first) {
        CTextLine line;
        line.first = first;
        line.y = y_;
        line.paragraph = layout_.paragraphs_.count();
        line.height = fonts_.lineHeight();
        const bool isOpen = fillLine(line);
        measure(line);
        y_ += line.height;
        layout_.width_ = std::max(layout_.width_, line.width);
        layout_.lines_.append(line);
        return isOpen;
    }

    /// Sets the places of the items from the line's first one up to its end, and counts them.
    bool fillLine(CTextLine& line) {
        double pen = 0.0;
        int32_t chance = line.first;  // where the line can end behind a blank or a hyphen
        for (int32_t i = line.first; i < source_.count(); ++i) {
            const uint16_t item = source_.at(i);
            placeItem(i, pen);
            if (isBreak(item)) {
                line.count = i + 1 - line.first;
                line.end = pixelAt(pen);
                return item == CTextSource::kLineBreak;
            }
            const double next = pen + advanceOf(i);
            const bool isOver = settings_.isWrapped && next > std::max(settings_.width, 1) + kTolerance;
            if (isOver && !isBlank(item) && i > line.first) {
                const int32_t behind = chance > line.first ? chance : i;
                line.count = behind - line.first;
                line.end = behind == i ? pixelAt(pen) : layout_.places_[behind].x;
                line.isWrapped = true;
                return true;
            }
            pen = next;
            if (isChance(i, line.first)) {
                chance = i + 1;
            }
        }
        line.count = source_.count() - line.first;
        line.end = pixelAt(pen);
        return false;
    }

    bool isChance(int32_t i, int32_t first) const {
        const uint16_t item = source_.at(i);
        return isBlank(item) ||
               (isHyphen(item) && i > first && !isBlank(source_.at(i - 1)) && !isBreak(source_.at(i - 1)));
    }

    void placeItem(int32_t i, double pen) {
        while (span_ < source_.spans().count() - 1 && source_.spans()[span_ + 1].first <= i) {
            ++span_;
        }
        while (source_.spans()[span_].first > i) {
            --span_;
        }
        const CTextSpan& span = source_.spans()[span_];
        CTextPlace& place = layout_.places_[i];
        place.x = pixelAt(pen);
        place.color = span.color;
        if (span.image >= 0) {
            place.picture = source_.images()[span.image].picture;
        } else {
            place.picture = isBreak(source_.at(i)) ? nullptr : glyphAt(i, span.style);
            place.top = fonts_.topOf(span.style);
        }
    }

    /// The sign of a number is typed as a hyphen and drawn as a minus, which is as wide as a plus.
    const CImage* glyphAt(int32_t i, CTextStyle style) const {
        const uint16_t item = source_.at(i);
        const CImage* minus = item == '-' && isSignAt(i) ? fonts_.glyph(kMinus, style) : nullptr;
        return minus ? minus : fonts_.glyph(item, style);
    }

    /// Whether a number begins behind a character that joins no number or word to it.
    bool isSignAt(int32_t i) const {
        const auto itemAt = [&](int32_t at) -> uint16_t { return at < source_.count() ? source_.at(at) : 0; };
        const uint16_t before = i > 0 ? source_.at(i - 1) : ' ';
        const bool isFree = isBlank(before) || isBreak(before) || before == '(' || before == '[' || before == '/';
        return isFree && (isDigit(itemAt(i + 1)) || (isPoint(itemAt(i + 1)) && isDigit(itemAt(i + 2))));
    }

    double advanceOf(int32_t i) const {
        const CImage* picture = layout_.places_[i].picture;
        const bool isImage = source_.spans()[span_].image >= 0;
        return !picture ? 0.0 : isImage ? picture->getWidth() : picture->getAdvance();
    }

    /// Height of the line, the tops of its items, and its width without blanks at the end.
    void measure(CTextLine& line) {
        bool hasImages = false;
        for (int32_t i = line.first; i < line.behind(); ++i) {
            const CImage* picture = layout_.places_[i].picture;
            if (picture && isImage(i)) {
                line.height = std::max(line.height, picture->getHeight());
                hasImages = true;
            }
        }
        const int32_t textTop = (line.height - fonts_.lineHeight()) / 2;
        for (int32_t i = line.first; hasImages && i < line.behind(); ++i) {
            CTextPlace& place = layout_.places_[i];
            if (!isImage(i)) {
                place.top += textTop;
            } else if (place.picture) {
                place.top = (line.height - place.picture->getHeight()) / 2;
            }
        }
        int32_t behind = line.behind();
        while (behind > line.first && (isBlank(source_.at(behind - 1)) || isBreak(source_.at(behind - 1)))) {
            --behind;
        }
        line.width = behind < line.behind() ? layout_.places_[behind].x : line.end;
    }

    bool isImage(int32_t i) const {
        return source_.at(i) == CTextSource::kImage && source_.spans()[source_.spanOf(i)].image >= 0;
    }

    static int32_t pixelAt(double pen) { return static_cast<int32_t>(std::lround(pen)); }

    const CTextSource& source_;
    const CTextFonts& fonts_;
    const CTextSettings& settings_;
    CTextLayout& layout_;
    int32_t y_ = 0;
    int32_t span_ = 0;
};

void CTextWrapper::layOut(const CTextSource& source, const CTextFonts& fonts, const CTextSettings& settings,
                          CTextLayout& layout) {
    layout.clear();
    layout.spacing_ = settings.paragraphSpacing;
    if (!fonts.isValid() || (settings.isList && source.isEmpty())) {
        return;
    }
    CRun(source, fonts, settings, layout).run();
    align(layout, settings.alignment, settings.width);
}

void CTextWrapper::align(CTextLayout& layout, int32_t alignment, int32_t width) {
    for (CTextLine& line : layout.lines_) {
        const int32_t room = std::max(width - line.width, 0);
        line.x = alignment < 0 ? 0 : alignment > 0 ? room : room / 2;
    }
}

}  // namespace tarv
