#pragma once

#include "Audio/Parameters/CAudioParam.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioExtParam;
class CAudioExtParamGathering;
class CAudioExtParamList;
class CAudioParamCollector;

/// The host's end of an external parameter: notified of changes that the host did not make.
class CAudioExtParamHostBridge {
public:
    /// Called on the thread that posted the change, outside all locks. `param` gives the new value.
    virtual void onExtParamChanged(const CAudioExtParam& param) = 0;
    /// A person begins or ends to edit the parameter. Called on the editor's thread, outside all locks but the one that
    /// serialises editors' messages.
    virtual void onExtParamEdited(const CAudioExtParam&, bool /*isBegin*/) {}

protected:
    ~CAudioExtParamHostBridge() = default;
};

/// One parameter of the host's flat list: one element of one group of a named parameter (`audio:ext-param`).
/// Any thread; each call takes the parameter's lock.
class CAudioExtParam : public CObject, private CAudioParamListener {
public:
    /// Longest name that the oldest hosts have room for, in characters.
    static constexpr int32_t kNameLimit = 7;

    ~CAudioExtParam() override;
    [[nodiscard]] CError* init() override;

    /// Sets the normalised value, clamped to 0..1; ignores what is not a number.
    void setValue(double normalised);
    /// The normalised value, 0..1; 0.0 while no definition is bound.
    double getValue() const;
    /// Sets the value that a text gives, as a person types it; false, and nothing changes, if it cannot be read.
    bool setText(const CString& text);
    /// The unit, empty if there is none.
    void getLabel(CString& text) const;
    /// The current value's text without unit.
    void getDisplay(CString& text) const;
    /// The text that a normalised value would have.
    void getDisplayFor(CString& text, double normalised) const;

    const CString& extName() const { return extName_; }
    CAudioParam* param() const { return param_; }
    int32_t group() const { return group_; }
    int32_t elementIndex() const { return element_; }
    /// Connects the host, which must outlive the connection; null disconnects it.
    void setHostBridge(CAudioExtParamHostBridge* bridge) { hostBridge_.store(bridge, std::memory_order_release); }
    // Of what gathers changes and knows of edits: notifies the host, if one is connected.
    void notifyHost() const;
    void notifyHostOfEdit(bool isBegin) const;
    /// Whether the value is among these elements of a parameter's group (CAudioParamData::kAllGroups: of all).
    bool isAmong(const CAudioParam& param, int32_t group, int32_t first, int32_t count) const;

private:
    void showValue(CString& text, double value) const;
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;

    CString extName_;
    CAudioExtParamList* list_ = nullptr;
    CAudioParam* param_ = nullptr;
    int32_t group_ = 0;
    int32_t element_ = 0;
    std::atomic<CAudioExtParamHostBridge*> hostBridge_{nullptr};
};

/// The host's flat list (`audio:ext-param-list`): its children in order.
class CAudioExtParamList : public CObject {
public:
    [[nodiscard]] CError* childAdded(CObject* child) override;
    void removeChild(CObject* child) override;

    int32_t count() const { return params_.count(); }
    /// The parameter of a host index, null for an index outside the list.
    CAudioExtParam* param(int32_t index) const;
    /// As the host calls them: an index outside the list changes nothing and returns 0.0.
    void setParameter(int32_t index, double normalised);
    double getParameter(int32_t index) const;

    /// Keeps a change of this thread for the gathering that runs on it; false if there is none. Any thread.
    bool keepChange(const CAudioExtParam& param);

private:
    friend class CAudioExtParamGathering;
    /// Gives the one that gathered on this thread before.
    CAudioExtParamGathering* beginGathering(CAudioExtParamGathering& gathering);
    void endGathering(CAudioExtParamGathering* outer);

    CArray<CAudioExtParam*, 4> params_;
    std::atomic<uint64_t> gatheringThread_{0};      ///< 0: none
    CAudioExtParamGathering* gathering_ = nullptr;  ///< of that thread alone
};

}  // namespace tarv
