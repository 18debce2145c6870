#pragma once

#include "Core/CArray.h"
#include "Core/CError.h"
#include "Core/CString.h"
#include "UI/Binding/CParamEdit.h"

namespace tarv {

class CParamBridge;
class CUIParam;

/// What a person does with a control in one go: a drag, a notch of the wheel, a copy. A control holds one as a member.
/// All that one gesture writes is one step of the history, and the host hears of its begin and its end around the
/// values, each host parameter once. Until the last value has come back from the engine the control shows what it wrote
/// (`value`), so that echoes and automation do not fight the hand. A param that goes, becomes inactive or gets another
/// group or element, a preset and a move in the history end the gesture: the owner is notified, and the new values
/// stand. Values are in the unit that a person reads. All bridges of one gesture belong to one engine; settings are
/// written at once, without history and host. The editor's thread. Each call may close the editor through the host, and
/// is the last of what its caller does with objects that it does not watch.
class CParamGesture {
public:
    /// Notified when something else ends a gesture. May destroy the gesture.
    class COwner {
    public:
        virtual void onGestureCancelled(CParamGesture& gesture) = 0;

    protected:
        ~COwner() = default;
    };

    /// Seconds within which a notch of the wheel joins the one before it.
    static constexpr double kNotchSeconds = 0.5;

    explicit CParamGesture(COwner* owner = nullptr) : owner_(owner) {}
    CParamGesture(const CParamGesture&) = delete;
    CParamGesture& operator=(const CParamGesture&) = delete;
    /// Ends it.
    ~CParamGesture();

    /// Begins a gesture; one that is under way is ended first. The host hears of it with the first touch or write.
    [[nodiscard]] CError* begin();
    /// The same for a change of several parameters, which is one step with this label.
    [[nodiscard]] CError* begin(CParamBridge& bridge, const CString& label);
    bool isActive() const { return key_ >= 0; }
    /// For changes that go straight to a bridge, such as a copy; it is one of the gesture's from then on.
    CParamEdit edit(CParamBridge& bridge);

    // While active; otherwise without effect. Elements are counted from that of the param.
    /// Notifies the host that these elements are being edited, as a press does.
    [[nodiscard]] CError* touch(CUIParam& param, int32_t offset = 0, int32_t count = 1);
    /// Sets elements, which the parameter clamps to its range.
    [[nodiscard]] CError* write(CUIParam& param, double value, int32_t offset = 0) {
        return write(param, &value, 1, offset);
    }
    [[nodiscard]] CError* write(CUIParam& param, const double* values, int32_t count, int32_t offset = 0);
    /// Ends it: a release, a capture that is lost. What was written stands.
    [[nodiscard]] CError* end();
    /// Ends it as if it had never begun: the values are to the bit what they were, and the history has no step of it.
    /// A setting keeps what was written; its control writes it back before.
    [[nodiscard]] CError* takeBack();

    /// A whole gesture of one value, such as a notch of the wheel or a step by a key. Those of one element that follow
    /// each other within kNotchSeconds are one step of the history. Without effect during another gesture.
    [[nodiscard]] CError* notch(CUIParam& param, double value, int32_t offset = 0);

    /// What the control shows of an element: what the gesture wrote last, as long as it lasts and until the engine has
    /// answered; otherwise the value of the param.
    double value(const CUIParam& param, int32_t offset = 0) const;

private:
    friend class CParamBridge;
    /// An element that was touched or written.
    struct CElement {
        CParamBridge* bridge = nullptr;
        const CUIParam* param = nullptr;
        int32_t group = 0;  ///< as it is stored
        int32_t element = 0;
        double value = 0.0;
        bool isWritten = false;
        bool isAnswered = false;  ///< the last value that was written has come back
    };

    /// Place of an element among those of the gesture, or -1.
    int32_t indexOf(const CUIParam& param, int32_t offset) const;
    CElement& add(const CUIParam& param, int32_t offset);
    void keepWritten(const CUIParam& param, const double* values, int32_t count, int32_t offset);
    [[nodiscard]] CError* send(CUIParam& param, const double* values, int32_t count, int32_t offset,
                               const CParamEdit& edit);
    void join(CParamBridge& bridge);
    template <class Test>
    void forget(Test&& test);
    [[nodiscard]] CError* end(bool isTakenBack);
    /// Ends it as something else demands.
    void cancel();
    [[nodiscard]] static CError* endAt(CParamBridge& bridge, int32_t key, bool isStep, bool isTakenBack = false);

    // Of a bridge.
    void paramMoved(const CUIParam& param);
    void valuesCame(const CParamBridge& bridge, int32_t group);
    void refused(int32_t key);
    void bridgeGone(CParamBridge& bridge);

    COwner* owner_;
    int32_t key_ = -1;
    bool isStep_ = false;  ///< a record of the history is open
    CArray<CElement, 8> elements_;
    CArray<CParamBridge*, 2> bridges_;
    int32_t notchKey_ = -1;
    double notchTime_ = 0.0;
    CElement notched_;  ///< by the last notch
};

}  // namespace tarv
