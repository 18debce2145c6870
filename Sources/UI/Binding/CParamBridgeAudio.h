#pragma once

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Audio/Client/CInterfaceUndo.h"
#include "UI/Binding/CParamBridge.h"

namespace tarv {

/// The bridge to a parameter of the engine: `interface-client` is the path of the client object, `param` the full name
/// of the parameter. Active when its values have come and as long as the engine lives. What is set comes back from the
/// engine and is what counts. A gesture that sets what it found restores it to the bit, and so does a default. Of
/// elements of several numbers it sees and sets the first one.
class CParamBridgeAudio : public CParamBridge, public CAudioInterfaceParamListener {
public:
    ~CParamBridgeAudio() override;
    /// Subscribes the parameter. Fails without the client, and as the engine does.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    bool isActive() const override { return info_ && !isGone_ && client(); }
    int32_t groupCount() const override { return groupCount_; }
    int32_t elementCount(int32_t group) const override;
    int32_t storedGroup(int32_t group) const override;
    double defaultValue(int32_t element) const override;
    double value(int32_t group, int32_t element) const override;
    CString valueText(int32_t group, int32_t element, CAudioTextMode mode) const override;
    CString unit() const override;
    const CAudioParamConverter* converter() const override;
    double minimum() const override;
    double maximum() const override;
    [[nodiscard]] CError* setValues(int32_t group, int32_t first, const double* values, int32_t count,
                                    bool isReplacing = false, const CParamEdit& edit = {}) override;
    [[nodiscard]] CError* setText(int32_t group, int32_t element, const CString& text, bool& isTaken,
                                  const CParamEdit& edit = {}) override;
    [[nodiscard]] CError* copyGroup(int32_t group, int32_t target, const CParamEdit& edit = {}) override;
    [[nodiscard]] CError* resetGroup(int32_t group, const CParamEdit& edit = {}) override;

    /// Null until the values have come.
    const CAudioParamInfo* info() const { return info_; }

    void onParamChanged(const CAudioParamData& data, int32_t group, int32_t first, int32_t count,
                        bool isReplacing) override;
    void onParamGone() override;

private:
    [[nodiscard]] CError* beginEdit(int32_t key, int32_t group, int32_t first, int32_t count) override;
    [[nodiscard]] CError* endEdit(int32_t key, bool isTakenBack) override;
    [[nodiscard]] CError* beginStep(const CString& label, int32_t key) override;
    [[nodiscard]] CError* endStep() override;
    [[nodiscard]] CError* countsChanged();
    [[nodiscard]] CError* editRefused(CAttributeMap& params);
    /// The name, that of the group if it is one of several, and what was done.
    CString undoLabel(int32_t group, const char* action) const;
    CInterfaceUndo undoOf(int32_t group, const char* action, const CParamEdit& edit) const;
    /// Sets elements to real values, which `realAt(i)` gives.
    template <class RealAt>
    [[nodiscard]] CError* sendNumbers(int32_t group, int32_t first, int32_t count, bool isReplacing,
                                      const CParamEdit& edit, RealAt&& realAt);
    [[nodiscard]] CError* sendGroup(int32_t group, int32_t target, int32_t count, const CInterfaceUndo& undo);
    const CAudioParamData& data() const;

    /// The real value of an element that is set, in the unit that a person reads.
    double realOf(int32_t group, int32_t element, double shown, const CParamEdit& edit) const;

    /// What an element held when a gesture touched it.
    struct CTouched {
        int32_t group;
        int32_t element;
        double shown;
        double real;
    };

    CString param_;
    const CAudioParamInfo* info_ = nullptr;
    bool isGone_ = false;
    int32_t groupCount_ = 0;
    int32_t touchKey_ = -1;
    CArray<CTouched, 8> touched_;  ///< by the gesture of that key
};

}  // namespace tarv
