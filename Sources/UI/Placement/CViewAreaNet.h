#pragma once

#include <cstdint>

#include "Core/CArray.h"
#include "Core/CError.h"
#include "UI/Placement/CViewFormula.h"

namespace tarv {

class CViewArea;

/// The cells of one window. A cell is a plain variable, or a formula over other cells; storing a value evaluates what
/// depends on it, level by level, and what changes by 0.0001 or less ends there. Collects the views that the next flush
/// has to serve. Thread: that of the window.
class CViewAreaNet : public CHeapObject {
public:
    CViewAreaNet() = default;
    ~CViewAreaNet();
    CViewAreaNet(const CViewAreaNet&) = delete;
    CViewAreaNet& operator=(const CViewAreaNet&) = delete;

    /// A smaller change of a cell does not count, and a constant this near to another is the same.
    static constexpr float kTolerance = 0.0001f;
    /// As often a cell is evaluated in the course of one change. More means that it reaches itself: that is logged, and
    /// the cell is evaluated again with the next change, when the circle may be gone.
    static constexpr int32_t kMaxEvaluations = 200;

    /// A cell of value 0, or kNoViewCell if all 65535 are in use. `owner`, which may be null, joins the changed list
    /// whenever the value changes.
    CViewCellId allocCell(CViewArea* owner);
    /// Formulas that name the cell are removed, and their cells keep their values.
    void freeCell(CViewCellId id);
    /// Cells in use.
    int32_t cellCount() const { return cellCount_; }

    float value(CViewCellId id) const { return at(id).value; }
    /// Stays while the cell is in use.
    const float* valuePointer(CViewCellId id) const { return &at(id).value; }
    /// Makes the cell a variable of that value.
    void setValue(CViewCellId id, float value);
    /// Makes the cell follow a formula; the same one again does nothing. An empty formula makes it a variable of
    /// value 0, and a broken one is logged and leaves the cell as it is.
    void setFormula(CViewCellId id, const CViewFormula& formula);
    /// Makes the cell a variable of the value that it has.
    void dropFormula(CViewCellId id);
    bool hasFormula(CViewCellId id) const { return !at(id).tokens.isEmpty(); }
    const CArray<uint16_t, 12>& tokens(CViewCellId id) const { return at(id).tokens; }

    /// Place of a constant, or of one that is near. It stays while a formula names it, otherwise until the next flush.
    uint16_t constantIndex(float value);
    float constant(uint16_t index) const { return constants_[index]; }
    /// Places of constants, those that wait to be used anew included.
    int32_t constantCount() const { return constants_.count(); }

    /// While one lives, formulas are written and nothing is evaluated; the end of the last one evaluates all.
    class CBatch {
    public:
        explicit CBatch(CViewAreaNet& net) : net_(net) { ++net_.batches_; }
        ~CBatch() {
            if (--net_.batches_ == 0) {
                net_.evaluateWaiting();
            }
        }
        CBatch(const CBatch&) = delete;
        CBatch& operator=(const CBatch&) = delete;

    private:
        CViewAreaNet& net_;
    };

    /// The view has to write the formulas of its children anew.
    void addRelayout(CViewArea& area);
    /// The view has to compute its rectangles anew.
    void addChanged(CViewArea& area);
    /// The view's handler gets onAreaNotify.
    void addNotify(CViewArea& area);
    /// Leaves all lists, also in the middle of a flush.
    void forget(CViewArea& area);
    bool isIdle() const { return relayouts_.isEmpty() && changes_.isEmpty() && notifications_.isEmpty(); }

    /// Serves the lists until all are empty: formulas first, then rectangles (a parent's before its children's), and
    /// when both are done the notifications. A failure of a handler ends it; what is left waits for the next flush. A
    /// flush within a flush does nothing.
    [[nodiscard]] CError* flush();

private:
    static constexpr int32_t kLeastConstants = 64;
    static constexpr int32_t kBlockBits = 9;
    static constexpr int32_t kBlockCells = 1 << kBlockBits;

    struct CCell {
        CArray<uint16_t, 12> tokens;
        CViewArea* owner = nullptr;
        CViewCellId nextFree = kNoViewCell;
        float value = 0.0f;
        CArray<CViewCellId, 4> dependents;
        uint32_t evaluationRound = 0;
        int16_t evaluations = 0;
        bool isUsed = false;
        bool isWaiting = false;
    };
    /// Views in the order of their joining; null for one that has left.
    using CAreaList = CArray<CViewArea*, 16>;

    CCell& at(CViewCellId id) { return blocks_[id >> kBlockBits][id & (kBlockCells - 1)]; }
    const CCell& at(CViewCellId id) const { return blocks_[id >> kBlockBits][id & (kBlockCells - 1)]; }
    bool makeBlock();
    void link(CViewCellId id);
    void unlink(CViewCellId id);
    void enqueue(CViewCellId id);
    void evaluateWaiting();
    void store(CViewCellId id, float value);
    bool isSound(const CViewFormula& formula) const;
    void freeConstants();
    void serve(CAreaList& list);
    void relayoutAll();
    [[nodiscard]] CError* updateAll();
    [[nodiscard]] CError* notifyAll();

    CArray<float, 8> constants_;
    CArray<uint16_t, 8> freeConstants_;
    CArray<uint8_t, 8> isConstantNamed_;
    int32_t constantLimit_ = kLeastConstants;  ///< so many places are filled before the unused ones are looked for
    CArray<CCell*, 4> blocks_;
    CViewCellId firstFree_ = kNoViewCell;
    int32_t cellCount_ = 0;

    CArray<CViewCellId, 64> waiting_;
    CArray<CViewCellId, 4> cut_;  ///< cells of a circle, whose evaluation was cut short
    uint32_t round_ = 0;
    int32_t batches_ = 0;
    bool isEvaluating_ = false;

    CAreaList relayouts_;
    CAreaList changes_;
    CAreaList notifications_;
    // The list that the flush serves.
    CAreaList served_;
    bool isFlushing_ = false;
};

}  // namespace tarv
