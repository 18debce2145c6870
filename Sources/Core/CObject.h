#pragma once

#include <map>

#include "Core/CAttribute.h"
#include "Core/CCheckedObject.h"
#include "Core/CClassDescriptor.h"
#include "Core/CError.h"
#include "Core/CTreeCursor.h"

namespace tarv {

class CNotifyServer;
class CObjectEventBridge;
class CObjectWatch;

/// Makes an object of one class with the default constructor; addChild gives it its descriptor and place.
template <class T>
CObject* createObject() {
    return new T;
}

/// Where an object stands in its life.
enum class CObjectState : uint32_t {
    Created = 0,
    AttributesLoaded = 1,
    ChildrenCreated = 2,
    Finished = 3,
    Template = 4
};

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

    /// Sets an attribute, runs its handler at once and notifies the observers, which get the last value also where the
    /// handler or an observer sets the attribute again. Each of them may destroy this object once it is finished: the
    /// rest is then left out, with success.
    [[nodiscard]] CError* setAttribute(const CString& name, const CAttributeValue& value, bool immediate = true);
    [[nodiscard]] CError* setAttribute(const CString& name, const CString& text);
    /// The same with text that holds no expressions: braces stay as they are, here, at observers and where an
    /// expression reads the attribute. For what a user has typed.
    [[nodiscard]] CError* setAttributePlain(const CString& name, const CString& text);
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
    /// The same with a default for an attribute that is absent or empty.
    bool getAttrBoolOr(const CString& name, bool fallback) const;
    double getAttrRealOr(const CString& name, double fallback) const;
    int32_t getAttrIntOr(const CString& name, int32_t fallback) const;
    const CAttributeMap& attributes() const { return attributes_; }

    /// Adds a child of the class that `tag` (or, with `useTemplates`, a template of that name) stands for. Not
    /// initialised. One that this object refuses is destroyed, and `child` is null.
    [[nodiscard]] CError* addChild(CObject*& child, const CString& tag, const CString& name, bool useTemplates);
    /// Run-time creation from a template, initialised whole. A child whose start fails is destroyed, and `child` is
    /// null.
    [[nodiscard]] CError* createChild(CObject*& child, const CString& tag, const CString& name, bool requireTemplate,
                                      const CAttributeMap* instanceAttributes = nullptr,
                                      const CAttributeMap* extraAttributes = nullptr);
    /// The same with a check of the class: an object of another class is destroyed, and `child` is null.
    template <class T>
    [[nodiscard]] CError* createChildOf(T*& child, const CString& tag, const CString& name, bool requireTemplate,
                                        const CAttributeMap* instanceAttributes = nullptr,
                                        const CAttributeMap* extraAttributes = nullptr) {
        child = nullptr;
        CObject* made = nullptr;
        CError* error = startChild(made, tag, name, requireTemplate);
        if (error) {
            return error;
        }
        child = dynamic_cast<T*>(made);
        error = child ? finishChild(*made, instanceAttributes, extraAttributes) : failInvalidClass(made);
        if (error) {
            child = nullptr;
        }
        return error;
    }
    CObject* findChild(const CString& name) const;
    /// Resolves a path from this object; null when nothing stands there. Docs/definitions.md documents the forms.
    CObject* findObject(const CString& path) const;
    /// findObject with a check of the class.
    template <class T>
    T* findObjectOf(const CString& path) const {
        return dynamic_cast<T*>(findObject(path));
    }

    /// Definition of the template that `name` stands for: nearest first, from this object up to the root, then the
    /// shared tree's; null if there is none.
    CObject* findTemplate(const CString& name) const;
    /// Child of lowest index with this base name, or null.
    CObject* firstChildNamed(const CString& baseName) const;

    /// Notifies `observer` of each later setting of `sourceAttr` under the name `targetAttr`, until either dies.
    void linkObserver(CObject& observer, const CString& sourceAttr, const CString& targetAttr);
    /// Notifies `observer` of each later setting of any attribute, under the attribute's own name.
    void addObserver(CObject& observer);

    /// Events: registers this object's handler for a sender's event. An unknown handler is logged and ignored.
    void listenObject(const CString& senderName, const CString& eventName, const CString& handlerName);
    /// Sends one of this object's events; `params` gets the sender and the event's name. See CNotifyServer::send.
    [[nodiscard]] CError* sendEvent(const CString& eventName, CAttributeMap& params, bool synchronous);
    /// The same in memory of the caller, which outlives this object: `sender` takes this object's name. A caller that
    /// sends often keeps it together with the parameters, and nothing is allocated.
    [[nodiscard]] CError* sendEvent(const CString& eventName, CAttributeMap& params, bool synchronous, CString& sender);
    /// Asks the thread anchor above to destroy this object once the calls that run now have returned. Without an
    /// anchor, or on one, nothing happens.
    [[nodiscard]] CError* releaseBridged();
    /// Handlers that every class has: `release-child-bridged`.
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

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
    bool isTemplate() const { return isTemplate_; }
    CNotifyServer* notifyServer() const { return notifyServer_; }
    const CClassDescriptor* descriptor() const { return descriptor_; }
    /// Whether events are passed to the parent's thread anchor (false on an anchor).
    bool isEventForward() const { return eventForward_; }
    /// The nearest thread anchor from this object up, or null. Any thread, while the tree stands.
    CObjectEventBridge* eventAnchor() const;

    /// Interprets one node of a compiled tree for this object, moving the cursor; see CObjectLoader.cpp.
    [[nodiscard]] CError* createFromBinary(CTreeCursor& cursor, bool runInit, bool skipHead, bool skipAttributes,
                                           bool skipChildren);
    /// Reads the named resource, a compressed block of id 'cxml', into this object.
    [[nodiscard]] CError* loadFromResource(const CString& resourceName, bool runInit);
    /// Calls the handlers of the attributes that were set without, in the order of the class's handlers.
    [[nodiscard]] CError* runPendingHandlers();

    /// The name that location lines carry (used by TARV_TRY and TARV_FAIL inside methods).
    const CString& errorContextName() const { return fullName_; }

protected:
    /// Makes of a value what is stored under that name: here, its expressions are replaced. Called for each setting,
    /// before the handler.
    virtual void prepareAttribute(const CString& name, CAttributeValue& value);
    /// Destroys the children from last to first. For destructors whose class the children still need whole.
    void destroyChildren();
    /// Makes this object a thread anchor.
    void setEventBridge(CObjectEventBridge* bridge);

private:
    friend class CApplication;
    friend class CCreatorRegistry;
    friend class CObjectWatch;

    template <class K, class V>
    using CMap = std::map<K, V, std::less<K>, CHeapAllocator<std::pair<const K, V>>>;
    /// Source attribute to target attribute; empty for an observer of everything.
    struct CObserver : CHeapObject {
        explicit CObserver(CObject& object) : observer(&object) {}
        CObject* observer;
        CMap<CString, CString> links;
    };

    [[nodiscard]] CError* startChild(CObject*& child, const CString& tag, const CString& name, bool requireTemplate);
    [[nodiscard]] CError* finishChild(CObject& child, const CAttributeMap* instanceAttributes,
                                      const CAttributeMap* extraAttributes);
    [[nodiscard]] CError* runStart(CObject& child, const CObjectWatch& watch);
    [[nodiscard]] CError* failInvalidClass(CObject* child);
    void setDescriptor(const CClassDescriptor* descriptor);
    void place(CObject& child, const CString& tag, const CString& requestedName, CObject* definition);
    int32_t uniqueIndex(const CString& baseName, int32_t wanted);
    CObserver* findObserver(const CObject* observer) const;
    void dropObserver(const CObject* observer);
    // These three may end with this object destroyed, and add no place of theirs to a failure.
    [[nodiscard]] CError* notifyObservers(const CString& name);
    [[nodiscard]] CError* notifyObserver(CObject* observer, const CString& name, const CAttributeValue& value);
    [[nodiscard]] CError* callHandler(const CString& name, bool immediate);
    void leaveObservation();
    CObject* findObjectFrom(const CString& path, int32_t variables) const;
    CObject* followVariable(const CString& path, int32_t nameStart, int32_t variables) const;
    [[nodiscard]] CError* readDefinition(CTreeCursor& cursor);
    [[nodiscard]] CError* readAttributes(CTreeCursor& cursor, bool skip);
    [[nodiscard]] CError* readChildren(CTreeCursor& cursor);
    [[nodiscard]] CError* readTemplateBody(bool skipAttributes, bool skipChildren);
    [[nodiscard]] CError* releaseChildBridged(CAttributeMap& params);
    /// Makes every representation of every attribute below and here, and refuses changes from then on, so that any
    /// thread may read.
    void freeze();

    const CClassDescriptor* descriptor_ = nullptr;
    CAttributeMap attributes_;
    CArray<uint8_t, 16> pendingHandlers_;
    CArray<CObject*, 4> children_;
    CString fullName_;
    CObjectState state_ = CObjectState::Created;
    bool readOnly_ = false;
    bool isTemplate_ = false;
    bool eventForward_ = true;
    CObject* definition_ = nullptr;
    const CAttributeMap* instanceAttributes_ = nullptr;
    CString baseName_;
    int32_t nameIndex_ = 0;
    CMap<CString, int32_t> nextIndexes_;
    CMap<CString, CMap<int32_t, CObject*>> childMap_;
    CMap<CString, CMap<CString, bool>> listeners_;
    CNotifyServer* notifyServer_ = nullptr;
    CObjectEventBridge* eventBridge_ = nullptr;
    CObject* parent_ = nullptr;
    CObject* root_ = this;
    CString tag_;
    CString realTag_;
    CArray<uint8_t, 1> templateBody_;
    CMap<CString, CObject*> templates_;
    COwnedArray<CObserver, 1> observers_;
    CArray<CObject*, 1> observed_;
    CArray<CString, 1> notifying_;
    CObjectWatch* watch_ = nullptr;
};

}  // namespace tarv
