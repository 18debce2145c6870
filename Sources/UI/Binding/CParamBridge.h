#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"
#include "Core/CObject.h"
#include "UI/Binding/CParamEdit.h"

namespace tarv {

class CParamGesture;
class CUIParam;

/// One parameter as an editor sees it (`ui:param-bridge`): the values of all groups, and the params that follow it.
/// Numbers are in the unit that a person reads. Belongs to no group. Events: `param-change` (`group`,
/// `element-offset`, `element-count`, `is-replacing`), behind the calls of the params; `group-change` when there are
/// more or fewer groups; `copy-group` (`group`, `index`: the target) and `reset-group` (`group`) before the new values
/// come. The editor's thread.
class CParamBridge : public CObject {
public:
    ~CParamBridge() override;

    /// Whether there are values that can be read and set.
    virtual bool isActive() const = 0;
    virtual int32_t groupCount() const = 0;
    /// Elements that a group stores; beyond them the values are defaults.
    virtual int32_t elementCount(int32_t group) const = 0;
    /// The group that holds the values for `group`: itself, or 0 if all groups share them.
    virtual int32_t storedGroup(int32_t group) const = 0;
    /// What an element is before anything is set; 0.0 while inactive, and for a text.
    virtual double defaultValue(int32_t element) const = 0;
    /// While inactive, 0.0 and empty text.
    virtual double value(int32_t group, int32_t element) const = 0;
    virtual CString valueText(int32_t group, int32_t element, CAudioTextMode mode) const = 0;
    /// The unit of the values, may be empty.
    virtual CString unit() const { return {}; }
    /// Null until the values have come, and without an engine.
    virtual const CAudioParamConverter* converter() const { return nullptr; }
    /// Limits, the smaller one first; 0.0 while inactive.
    virtual double minimum() const = 0;
    virtual double maximum() const = 0;

    // The following have no effect while inactive and may destroy this object with its editor. Controls that write more
    // than once use a CParamGesture.
    /// Sets `count` elements from `first` on as one change. With `isReplacing` the group ends behind them.
    [[nodiscard]] virtual CError* setValues(int32_t group, int32_t first, const double* values, int32_t count,
                                            bool isReplacing = false, const CParamEdit& edit = {}) = 0;
    /// Sets an element to what a person typed, or to a text. `isTaken` becomes false, and nothing changes, if it cannot
    /// be read or while inactive.
    [[nodiscard]] virtual CError* setText(int32_t group, int32_t element, const CString& text, bool& isTaken,
                                          const CParamEdit& edit = {}) = 0;
    /// The group `target` gets what `group` stores.
    [[nodiscard]] virtual CError* copyGroup(int32_t group, int32_t target, const CParamEdit& edit = {}) = 0;
    /// The group gets the defaults.
    [[nodiscard]] virtual CError* resetGroup(int32_t group, const CParamEdit& edit = {}) = 0;

protected:
    /// Ends a gesture whose values the engine takes no more.
    void cancelGesture(int32_t key);
    /// The gestures end; the params become inactive and leave. A class whose values they may still read calls it in its
    /// destructor.
    void releaseParams();
    // Calls of the params, then an event. Each may end with this object destroyed.
    void activityChanged();
    void rangeChanged();
    void valuesChanged(int32_t group, int32_t first, int32_t count, bool isReplacing);
    void groupCountChanged();
    /// Sends an event, if anything listens, and logs its failure; false: this object is destroyed.
    bool send(const CString& eventName, CAttributeMap& params);

private:
    friend class CParamGesture;
    friend class CUIParam;
    void addParam(CUIParam& param) { params_.append(&param); }
    void removeParam(const CUIParam& param);
    /// The param shows another group or element from now on, or none.
    void paramMoved(const CUIParam& param);
    void addGesture(CParamGesture& gesture);
    void removeGesture(const CParamGesture& gesture);

    // Of a gesture of that key. Without effect where there is neither host nor history.
    [[nodiscard]] virtual CError* beginEdit(int32_t key, int32_t group, int32_t first, int32_t count);
    /// A gesture that is taken back leaves the values as they were before it, and no step.
    [[nodiscard]] virtual CError* endEdit(int32_t key, bool isTakenBack);
    [[nodiscard]] virtual CError* beginStep(const CString& label, int32_t key);
    [[nodiscard]] virtual CError* endStep();
    // False: this object is destroyed.
    template <class Call>
    bool callEach(Call&& call);
    template <class Call>
    bool callGestures(Call&& call);

    CArray<CUIParam*, 8> params_;  ///< null for one that has left during the calls
    CArray<CParamGesture*, 2> gestures_;
    int32_t calls_ = 0;
    CAttributeMap change_;  ///< of param-change
};

}  // namespace tarv
