#pragma once

#include <map>

#include "Core/CAttribute.h"
#include "Core/CError.h"

namespace tarv {

class CObject;

/// A handler as the descriptor stores it; `params` may be null (a call without parameters).
using CHandlerFunction = CError* (*)(CObject& object, CAttributeMap* params);

/// One for each registered class: its named handlers. An attribute of a handler's name calls it when set; an event
/// listener can name it. Filled at application start, read-only afterwards.
class CClassDescriptor : public CHeapObject {
public:
    /// Registers a method in its short form, `CError* T::method()`, or with parameters, `CError*
    /// T::method(CAttributeMap&)`.
    template <auto Method>
    void addHandler(const char* name) {
        add(name, &CThunk<Method, decltype(Method)>::call);
    }
    /// A name that stands already gets the new function and keeps its index.
    void add(const CString& name, CHandlerFunction function);

    int32_t handlerCount() const { return handlers_.count(); }
    /// Index of a handler, -1 if there is none of that name.
    int32_t handlerIndex(const CString& name) const;
    CHandlerFunction handler(int32_t index) const { return handlers_[index]; }
    const CString& handlerName(int32_t index) const { return names_[index]; }

private:
    template <auto Method, class Type>
    struct CThunk;
    template <auto Method, class T>
    struct CThunk<Method, CError* (T::*)()> {
        static CError* call(CObject& object, CAttributeMap*) { return (static_cast<T&>(object).*Method)(); }
    };
    template <auto Method, class T>
    struct CThunk<Method, CError* (T::*)(CAttributeMap&)> {
        static CError* call(CObject& object, CAttributeMap* params) {
            CAttributeMap none;
            return (static_cast<T&>(object).*Method)(params ? *params : none);
        }
    };

    CArray<CHandlerFunction, 4> handlers_;
    CArray<CString, 4> names_;
    std::map<CString, int32_t, std::less<CString>, CHeapAllocator<std::pair<const CString, int32_t>>> indexes_;
};

}  // namespace tarv
