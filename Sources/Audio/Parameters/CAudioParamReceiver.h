#pragma once

namespace tarv {

class CAudioParam;
class CString;

/// Takes the parameters of a collector when the collection is closed (see CAudioParamCollector::addRegistry).
/// Called on the thread that closes the collection or makes a parameter later, under the collector's lock.
class CAudioParamReceiver {
public:
    /// The text that a definition's `param-registry` names.
    virtual const CString& id() const = 0;
    /// Whether parameters are offered to this receiver first; what it takes is not offered to others.
    virtual bool isEnumerated() const = 0;
    /// Takes the parameter if it belongs here; returns whether it did.
    virtual bool offerParam(const CString& name, CAudioParam& param) = 0;
    /// Takes the parameter: its definition names this receiver.
    virtual void takeParam(const CString& name, CAudioParam& param) = 0;

protected:
    ~CAudioParamReceiver() = default;
};

}  // namespace tarv
