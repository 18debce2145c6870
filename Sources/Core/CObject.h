#pragma once

#include <map>

#include "Core/CAttribute.h"
#include "Core/CCheckedObject.h"
#include "Core/CClassDescriptor.h"
#include "Core/CError.h"

namespace tarv {

class CNotifyServer;

/// Makes an object of one class with the default constructor; addChild gives it its descriptor and place.
template <class T>
CObject* createObject() {
    return new T;
}

/// Where an object stands in its life.
enum class CObjectState : uint32_t { Created = 0, AttributesLoaded = 1, ChildrenCreated = 2, Finished = 3, Template = 4 };

/// Node of the named object tree, base of everything that the definitions declare. Owns its children.
/// Thread: the one that builds the tree. Audio code stores pointers at set-up and never looks anything up.
class CObject : public CCheckedObject {
public:
    CObject();
    ~CObject() override;

    /// Loads the attributes. Overrides call their base's first.
    [[nodiscard]] virtual CError* init();
    /// Runs pending handlers and creates the children (of a template instance).
    [[nodiscard]] virtual CError* initChildren();
    /// Ends construction; all children are there. Overrides call their base's first.
    [[nodiscard]] virtual CError* finishInit();
    /// A child has been linked in (its attributes are not loaded yet).
    [[nodiscard]] virtual CError* childAdded(CObject* child);
    /// Unlinks a child; the caller owns it from then on.
    virtual void removeChild(CObject* child);
    virtual void reservedHook() {}
    virtual void releaseListeners();
    virtual void removeFromParent();
    [[nodiscard]] virtual CError* setAttribute(CObject* sender, const CString& name, const CAttributeValue& value);
    virtual void addEventParams(CAttributeMap& params);

    /// Sets an attribute and runs its handler at once.
    [[nodiscard]] CError* setAttribute(const CString& name, const CAttributeValue& value, bool immediate = true);
    [[nodiscard]] CError* setAttribute(const CString& name, const CString& text);
    /// The form used when text is loaded.
    [[nodiscard]] CError* addAttribute(const CString& name, const CString& text, bool immediate);
    [[nodiscard]] CError* setAttributes(const CAttributeMap& attributes, bool runHandlers);

    /// Typed reads; an absent attribute gives the empty string, false, 0.0, 0 or null.
    const CString& getAttrString(const CString& name) const;
    bool getAttrBool(const CString& name) const;
    double getAttrReal(const CString& name) const;
    int32_t getAttrInt(const CString& name) const;
    void* getAttrPointer(const CString& name) const;
    bool hasAttr(const CString& name) const;
    /// As above with a default for an attribute that is absent or empty.
    bool getAttrBoolOr(const CString& name, bool fallback) const;
    double getAttrRealOr(const CString& name, double fallback) const;
    int32_t getAttrIntOr(const CString& name, int32_t fallback) const;
    const CAttributeMap& attributes() const { return attributes_; }

    /// Adds a child of the class that `tag` (or, with `useTemplates`, a template of that name) stands for. Not initialised.
    [[nodiscard]] CError* addChild(CObject*& child, const CString& tag, const CString& name, bool useTemplates);
    /// Run-time creation from a template, initialised whole. See CObjectTemplates.cpp.
    [[nodiscard]] CError* createChild(CObject*& child, const CString& tag, const CString& name, bool requireTemplate,
                                      const CAttributeMap* instanceAttributes = nullptr,
                                      const CAttributeMap* extraAttributes = nullptr);
    CObject* findChild(const CString& name) const;
    /// Resolves a path from this object; null when nothing stands there. The forms are told in Docs/definitions.md.
    CObject* findObject(const CString& path) const;
    /// findObject with a check of the class.
    template <class T>
    T* findObjectOf(const CString& path) const {
        return dynamic_cast<T*>(findObject(path));
    }

    /// Events: registers this object's handler for a sender's event; sends one of this object's.
    void listenObject(const CString& senderName, const CString& eventName, const CString& handlerName);
    [[nodiscard]] CError* sendEvent(const CString& eventName, CAttributeMap& params, bool synchronous);

    const CString& tag() const { return tag_; }
    const CString& realTag() const { return realTag_; }
    const CString& name() const;
    const CString& fullName() const { return fullName_; }
    CObject* parent() const { return parent_; }
    CObject* root() const { return root_; }
    const CArray<CObject*, 4>& children() const { return children_; }
    CObjectState state() const { return state_; }
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool readOnly) { readOnly_ = readOnly; }
    bool isTemplate() const { return template_; }
    CNotifyServer* notifyServer() const { return notifyServer_; }
    const CClassDescriptor* descriptor() const { return descriptor_; }
    /// Whether events are passed to the parent's thread anchor (false on an anchor).
    bool isEventForward() const { return eventForward_; }

    /// Interprets one node of a compiled tree for this object, moving the cursor; see CObjectLoader.cpp.
    [[nodiscard]] CError* createFromBinary(const uint8_t*& cursor, bool runInit, bool skipHead, bool skipAttributes,
                                           bool skipChildren);
    /// Reads the named resource, a compressed block of id 'cxml', into this object.
    [[nodiscard]] CError* loadFromResource(const CString& resourceName, bool runInit);

    /// The name that location lines carry (used by TARV_TRY and TARV_FAIL inside methods).
    const CString& errorContextName() const { return fullName_; }

protected:
    bool eventForward_ = true;

private:
    friend class CApplication;
    // The members of the data model are completed in the implementation of the tree.
    const CClassDescriptor* descriptor_ = nullptr;
    CAttributeMap attributes_;
    CArray<uint8_t, 16> pendingHandlers_;
    CArray<CObject*, 4> children_;
    CString fullName_;
    CObjectState state_ = CObjectState::Created;
    bool readOnly_ = false;
    bool template_ = false;
    CNotifyServer* notifyServer_ = nullptr;
    CObject* parent_ = nullptr;
    CObject* root_ = nullptr;
    CString tag_;
    CString realTag_;
};

}  // namespace tarv
