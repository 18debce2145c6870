#include "UI/Placement/CViewAreaNet.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Core/Log.h"
#include "UI/Placement/CViewArea.h"
#include "UI/Placement/CViewFormulaRun.h"

namespace tarv {

CViewAreaNet::~CViewAreaNet() {
    for (CCell* block : blocks_) {
        delete[] block;
    }
}

bool CViewAreaNet::makeBlock() {
    const int32_t first = blocks_.count() << kBlockBits;
    if (first > kNoViewCell) {
        return false;
    }
    blocks_.append(new CCell[kBlockCells]);
    for (int32_t i = kBlockCells - 1; i >= 0; --i) {
        const int32_t id = first + i;
        if (id != kNoViewCell) {
            at(static_cast<CViewCellId>(id)).nextFree = firstFree_;
            firstFree_ = static_cast<CViewCellId>(id);
        }
    }
    return true;
}

CViewCellId CViewAreaNet::allocCell(CViewArea* owner) {
    if (firstFree_ == kNoViewCell && !makeBlock()) {
        return kNoViewCell;
    }
    const CViewCellId id = firstFree_;
    CCell& cell = at(id);
    firstFree_ = cell.nextFree;
    cell.isUsed = true;
    cell.owner = owner;
    cell.value = 0.0f;
    ++cellCount_;
    return id;
}

void CViewAreaNet::freeCell(CViewCellId id) {
    CCell& cell = at(id);
    unlink(id);
    cell.tokens.clear();
    while (!cell.dependents.isEmpty()) {
        dropFormula(cell.dependents.last());
    }
    cell.isUsed = false;
    cell.owner = nullptr;
    cell.nextFree = firstFree_;
    firstFree_ = id;
    --cellCount_;
}

void CViewAreaNet::setValue(CViewCellId id, float value) {
    dropFormula(id);
    store(id, value);
    evaluateWaiting();
}

void CViewAreaNet::setFormula(CViewCellId id, const CViewFormula& formula) {
    CCell& cell = at(id);
    const int32_t count = formula.count();
    if (count == 0) {
        setValue(id, 0.0f);
        return;
    }
    if (cell.tokens.count() == count && std::equal(formula.tokens(), formula.tokens() + count, cell.tokens.data())) {
        return;
    }
    if (!isSound(formula)) {
        logLine("Broken placement formula");
        return;
    }
    unlink(id);
    cell.tokens.clear();
    cell.tokens.append(formula.tokens(), count);
    link(id);
    enqueue(id);
    evaluateWaiting();
}

void CViewAreaNet::dropFormula(CViewCellId id) {
    unlink(id);
    at(id).tokens.clear();
}

/// Whether a formula was written whole and names only cells that are in use.
bool CViewAreaNet::isSound(const CViewFormula& formula) const {
    const uint16_t* tokens = formula.tokens();
    for (int32_t i = 0; i < formula.count(); ++i) {
        const auto token = static_cast<CViewToken>(tokens[i]);
        if (token == CViewToken::Cell) {
            ++i;
            if (i == formula.count() || tokens[i] >> kBlockBits >= blocks_.count() || !at(tokens[i]).isUsed) {
                return false;
            }
        } else if (token == CViewToken::Constant) {
            ++i;
        }
    }
    return !formula.isBroken();
}

/// Calls `visit(id)` for each cell, or each constant, that a formula names.
template <class Visit>
static void forEachNamed(const CArray<uint16_t, 12>& tokens, CViewToken kind, Visit&& visit) {
    for (int32_t i = 0; i < tokens.count(); ++i) {
        const auto token = static_cast<CViewToken>(tokens[i]);
        if (token == CViewToken::Cell || token == CViewToken::Constant) {
            ++i;
            if (token == kind) {
                visit(tokens[i]);
            }
        }
    }
}

void CViewAreaNet::link(CViewCellId id) {
    forEachNamed(at(id).tokens, CViewToken::Cell, [&](CViewCellId named) {
        if (at(named).dependents.indexOf(id) < 0) {
            at(named).dependents.append(id);
        }
    });
}

void CViewAreaNet::unlink(CViewCellId id) {
    forEachNamed(at(id).tokens, CViewToken::Cell, [&](CViewCellId named) {
        const int32_t index = at(named).dependents.indexOf(id);
        if (index >= 0) {
            at(named).dependents.removeAt(index);
        }
    });
}

uint16_t CViewAreaNet::constantIndex(float value) {
    for (int32_t i = 0; i < constants_.count(); ++i) {
        if (std::abs(constants_[i] - value) <= kTolerance) {
            return static_cast<uint16_t>(i);
        }
    }
    if (!freeConstants_.isEmpty()) {
        const uint16_t index = freeConstants_.last();
        freeConstants_.removeLast();
        constants_[index] = value;
        return index;
    }
    constants_.append(value);
    return static_cast<uint16_t>(constants_.count() - 1);
}

/// A size that morphs leaves a constant at each tick: those that no formula names are used anew.
void CViewAreaNet::freeConstants() {
    if (!freeConstants_.isEmpty() || constants_.count() < constantLimit_) {
        return;
    }
    isConstantNamed_.clear();
    isConstantNamed_.resize(constants_.count());
    for (const CCell* block : blocks_) {
        for (int32_t i = 0; i < kBlockCells; ++i) {
            forEachNamed(block[i].tokens, CViewToken::Constant, [&](uint16_t index) { isConstantNamed_[index] = 1; });
        }
    }
    for (int32_t i = 0; i < constants_.count(); ++i) {
        if (!isConstantNamed_[i]) {
            // Near to nothing, so that nobody finds it.
            constants_[i] = std::numeric_limits<float>::quiet_NaN();
            freeConstants_.append(static_cast<uint16_t>(i));
        }
    }
    constantLimit_ = std::max(kLeastConstants, (constants_.count() - freeConstants_.count()) * 2);
}

void CViewAreaNet::enqueue(CViewCellId id) {
    if (!at(id).isWaiting) {
        at(id).isWaiting = true;
        waiting_.append(id);
    }
}

void CViewAreaNet::evaluateWaiting() {
    if (isEvaluating_ || batches_ > 0 || waiting_.isEmpty()) {
        return;
    }
    isEvaluating_ = true;
    ++round_;
    const bool wasCut = !cut_.isEmpty();
    for (const CViewCellId id : cut_) {
        enqueue(id);
    }
    cut_.clear();
    for (int32_t i = 0; i < waiting_.count(); ++i) {
        const CViewCellId id = waiting_[i];
        CCell& cell = at(id);
        cell.isWaiting = false;
        if (cell.tokens.isEmpty()) {
            continue;
        }
        if (cell.evaluationRound != round_) {
            cell.evaluationRound = round_;
            cell.evaluations = 0;
        }
        if (cell.evaluations == kMaxEvaluations) {
            // It lacks the last values of what it depends on: the next change begins with it.
            if (cut_.indexOf(id) < 0) {
                cut_.append(id);
            }
            continue;
        }
        ++cell.evaluations;
        float result = 0.0f;
        if (runViewFormula(*this, cell.tokens.data(), cell.tokens.count(), result)) {
            store(id, result);
        }
    }
    if (!cut_.isEmpty() && !wasCut) {
        logLine("Too many recursions");
    }
    waiting_.clear();
    isEvaluating_ = false;
}

void CViewAreaNet::store(CViewCellId id, float value) {
    CCell& cell = at(id);
    // What is not a number is no change either.
    if (!(std::abs(cell.value - value) > kTolerance)) {
        return;
    }
    cell.value = value;
    for (const CViewCellId dependent : cell.dependents) {
        enqueue(dependent);
    }
    if (cell.owner) {
        addChanged(*cell.owner);
    }
}

void CViewAreaNet::addRelayout(CViewArea& area) {
    if (!area.marks.isRelayoutListed) {
        area.marks.isRelayoutListed = true;
        relayouts_.append(&area);
    }
}

void CViewAreaNet::addChanged(CViewArea& area) {
    if (!area.marks.isChangeListed) {
        area.marks.isChangeListed = true;
        changes_.append(&area);
    }
}

void CViewAreaNet::addNotify(CViewArea& area) {
    if (!area.marks.isNotifyListed) {
        area.marks.isNotifyListed = true;
        notifications_.append(&area);
    }
}

void CViewAreaNet::forget(CViewArea& area) {
    for (CAreaList* list : {&relayouts_, &changes_, &notifications_, &served_}) {
        std::replace(list->begin(), list->end(), &area, static_cast<CViewArea*>(nullptr));
    }
}

CError* CViewAreaNet::flush() {
    if (isFlushing_) {
        return nullptr;
    }
    isFlushing_ = true;
    // Here nobody is in the middle of writing a formula.
    freeConstants();
    CError* error = nullptr;
    while (!error && !isIdle()) {
        relayoutAll();
        error = updateAll();
        if (!error && relayouts_.isEmpty() && changes_.isEmpty()) {
            error = notifyAll();
        }
    }
    isFlushing_ = false;
    TARV_TRY(error);
    return nullptr;
}

void CViewAreaNet::serve(CAreaList& list) {
    served_.clear();
    std::swap(served_, list);
}

void CViewAreaNet::relayoutAll() {
    serve(relayouts_);
    const CBatch batch(*this);
    for (CViewArea* area : served_) {
        if (area) {
            area->marks.isRelayoutListed = false;
            area->relayout();
        }
    }
    served_.clear();
}

CError* CViewAreaNet::updateAll() {
    serve(changes_);
    for (CViewArea* area : served_) {
        if (area) {
            area->marks.isChangeListed = false;
            area->marks.isPending = true;
        }
    }
    CError* error = nullptr;
    for (int32_t i = 0; i < served_.count(); ++i) {
        CViewArea* area = served_[i];
        if (!area || !area->marks.isPending) {
            continue;
        }
        if (error) {
            area->marks.isPending = false;
            addChanged(*area);
        } else {
            error = area->updateRectangles();
        }
    }
    served_.clear();
    return error;
}

CError* CViewAreaNet::notifyAll() {
    serve(notifications_);
    CError* error = nullptr;
    for (int32_t i = 0; i < served_.count(); ++i) {
        CViewArea* area = served_[i];
        if (!area) {
            continue;
        }
        area->marks.isNotifyListed = false;
        if (error) {
            addNotify(*area);
        } else {
            error = area->notify();
        }
    }
    served_.clear();
    return error;
}

}  // namespace tarv
