// Random sequences of edits against a plain form: strings that are copied whole, and a copy for each step.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "UI/Text/CTextEdit.h"

namespace tarv {
namespace {

/// The rules of an edit as they are documented, without a thought for speed.
struct CPlainEdit {
    struct CState {
        std::u16string text;
        int32_t cursor;
        int32_t anchor;
        int32_t after;  ///< cursor behind the step
    };
    std::u16string text;
    int32_t cursor = 0;
    int32_t anchor = 0;
    int32_t maxLength = 0;
    std::vector<CState> past;
    std::vector<CState> future;
    char run = 0;  ///< what goes on: t typing, b erasing back

    int32_t first() const { return std::min(cursor, anchor); }
    int32_t last() const { return std::max(cursor, anchor); }
    void move(int32_t to, bool isSelecting) {
        cursor = std::clamp<int32_t>(to, 0, static_cast<int32_t>(text.size()));
        anchor = isSelecting ? anchor : cursor;
        run = 0;
    }
    static int kind(char16_t unit) {
        return unit == u'\n' ? 3 : unit == u' ' ? 0 : unit == u'.' || unit == u',' ? 2 : 1;
    }
    int32_t behind(int32_t at) const {
        const int32_t size = static_cast<int32_t>(text.size());
        if (at >= size || text[at] == u'\n') {
            return std::min(at + 1, size);
        }
        const int of = kind(text[at]);
        while (at < size && kind(text[at]) == of) {
            ++at;
        }
        while (at < size && text[at] == u' ') {
            ++at;
        }
        return at;
    }
    int32_t before(int32_t at) const {
        const int32_t from = at;
        while (at > 0 && text[at - 1] == u' ') {
            --at;
        }
        if (at == 0 || text[at - 1] == u'\n') {
            return at == from ? std::max(at - 1, 0) : at;
        }
        const int of = kind(text[at - 1]);
        while (at > 0 && kind(text[at - 1]) == of) {
            --at;
        }
        return at;
    }
    /// A paragraph of which one is too long.
    bool isTooLong(const std::u16string& whole) const {
        if (maxLength == 0) {
            return false;
        }
        size_t start = 0;
        while (true) {
            const size_t end = whole.find(u'\n', start);
            const size_t size = (end == std::u16string::npos ? whole.size() : end) - start;
            if (size > static_cast<size_t>(maxLength)) {
                return true;
            }
            if (end == std::u16string::npos) {
                return false;
            }
            start = end + 1;
        }
    }
    void step(char of) {
        if (of == 0 || run != of) {
            past.push_back({text, cursor, anchor, 0});
        }
        if (past.size() > CTextEdit::kMaxSteps) {
            past.erase(past.begin());
        }
        future.clear();
        run = of;
    }
    /// Character by character: each enters if the whole still fits.
    void enter(const std::u16string& wanted, bool isTyped) {
        const std::u16string head = text.substr(0, first());
        const std::u16string tail = text.substr(last());
        std::u16string in;
        const size_t lastEnd = wanted.rfind(u'\n');
        for (size_t i = 0; i < wanted.size(); ++i) {
            const bool isLast = lastEnd == std::u16string::npos || i > lastEnd;
            const std::u16string with = head + in + wanted[i] + (isLast ? tail : u"");
            const std::u16string checked =
                isLast ? with.substr(0, with.find(u'\n', head.size() + in.size() + 1)) : with;
            const size_t from = head.rfind(u'\n');
            if (wanted[i] == u'\n' || !isTooLong(checked.substr(from == std::u16string::npos ? 0 : from + 1))) {
                in += wanted[i];
            }
        }
        if (in.empty()) {
            return;
        }
        step(isTyped && first() == last() ? 't' : 0);
        const int32_t at = first() + static_cast<int32_t>(in.size());
        text = head + in + tail;
        cursor = anchor = past.back().after = at;
        run = isTyped ? 't' : 0;
    }
    void erase(int32_t from, int32_t to, char of) {
        if (from == to) {
            return;
        }
        step(of);
        text.erase(from, to - from);
        cursor = anchor = past.back().after = from;
    }
    void back(bool isWord) {
        const bool isSelected = cursor != anchor;
        erase(isSelected ? first()
              : isWord   ? before(cursor)
                         : std::max(cursor - 1, 0),
              last(), isSelected || isWord ? 0 : 'b');
    }
    void forward(bool isWord) {
        const int32_t end = static_cast<int32_t>(text.size());
        erase(first(), cursor != anchor ? last() : isWord ? behind(cursor) : std::min(cursor + 1, end), 0);
    }
    void undo() {
        if (!past.empty()) {
            std::swap(text, past.back().text);
            cursor = past.back().cursor;
            anchor = past.back().anchor;
            future.push_back(past.back());
            past.pop_back();
            run = 0;
        }
    }
    void redo() {
        if (!future.empty()) {
            std::swap(text, future.back().text);
            cursor = anchor = future.back().after;
            past.push_back(future.back());
            future.pop_back();
            run = 0;
        }
    }
};

class CRun {
public:
    CRun(uint32_t seed, int32_t maxLength) : random_(seed) {
        plain_.maxLength = maxLength;
        CTextEditRules rules;
        rules.maxLength = maxLength;
        rules.isAcceptEnter = true;
        edit_.setRules(rules);
        edit_.setText("ab. cd");
        plain_.text = u"ab. cd";
        plain_.cursor = 6;
    }
    bool isSame() const {
        bool isEqual = edit_.length() == static_cast<int32_t>(plain_.text.size());
        for (int32_t i = 0; isEqual && i < edit_.length(); ++i) {
            isEqual = edit_.text().at(i) == plain_.text[i];
        }
        return isEqual && edit_.cursor() == plain_.cursor && edit_.anchor() == plain_.anchor;
    }
    int32_t next(int32_t count) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(count)); }
    std::u16string someText(int32_t most) {
        std::u16string text;
        for (int32_t i = next(most) + 1; i > 0; --i) {
            text += u"ab ., \ncd1"[next(10)];
        }
        return text;
    }
    void step() {
        const int32_t what = next(14);
        const bool isWord = next(2) == 0;
        const bool isSelecting = next(3) == 0;
        switch (what) {
            case 0:
            case 1:
            case 2:
            case 3: {
                const std::u16string text = someText(1);
                edit_.type(text.c_str());
                plain_.enter(text, true);
                break;
            }
            case 4: {
                const std::u16string text = someText(8);
                edit_.paste(text.c_str());
                plain_.enter(text, false);
                break;
            }
            case 5:
            case 6:
                edit_.eraseBack(isWord);
                plain_.back(isWord);
                break;
            case 7:
                edit_.eraseForward(isWord);
                plain_.forward(isWord);
                break;
            default:
                move(what, isWord, isSelecting);
        }
    }

private:
    void move(int32_t what, bool isWord, bool isSelecting) {
        const bool isEnd = plain_.cursor != plain_.anchor && !isSelecting && !isWord;
        if (what == 8) {
            edit_.moveBack(isWord, isSelecting);
            plain_.move(isEnd    ? plain_.first()
                        : isWord ? plain_.before(plain_.cursor)
                                 : plain_.cursor - 1,
                        isSelecting);
        } else if (what == 9) {
            edit_.moveForward(isWord, isSelecting);
            plain_.move(isEnd ? plain_.last() : isWord ? plain_.behind(plain_.cursor) : plain_.cursor + 1, isSelecting);
        } else if (what == 10) {
            const int32_t to = next(30) - 2;
            edit_.moveTo(to, isSelecting);
            plain_.move(to, isSelecting);
        } else if (what == 11) {
            edit_.selectAll();
            plain_.move(0, false);
            plain_.move(static_cast<int32_t>(plain_.text.size()), true);
        } else if (what == 12) {
            edit_.undo();
            plain_.undo();
        } else {
            edit_.redo();
            plain_.redo();
        }
    }

    std::mt19937 random_;
    CTextEdit edit_;
    CPlainEdit plain_;
};

TEST(RandomTextEdit, SequencesEqualAPlainForm) {
    const uint32_t runs = std::getenv("TARV_LONG") ? 2000 : 100;
    for (uint32_t seed = 0; seed < runs; ++seed) {
        CRun run(seed, seed % 3 == 0 ? 12 : 0);
        for (int32_t i = 0; i < 300; ++i) {
            run.step();
            ASSERT_TRUE(run.isSame()) << "seed " << seed << ", step " << i;
        }
    }
}

}  // namespace
}  // namespace tarv
