#pragma once

#include "Core/CObject.h"
#include "Core/CStreams.h"

namespace tarv {

class CAudioInterfaceClient;

/// Keeps attributes of the editor with the engine while the instance lives, in no preset and no chunk
/// (`ui:editor-memory`): selected groups, an open tab. Its children are CEditorMemoryItem. When the engine's answer has
/// come at the opening of an editor, the targets get what the editor before had; from then on each change is kept.
/// `interface-client` is the path of the client; without it, `ui.interface-client`. The editor's thread.
class CEditorMemory : public CObject {
public:
    /// Fails without the client.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    friend class CEditorMemoryItem;
    [[nodiscard]] CError* restore();
    /// Sends everything to the engine, if it is something else than before.
    [[nodiscard]] CError* keep();
    CAudioInterfaceClient* client() const;
    CObject* targetOf(const CString& path, const CString& attribute) const;

    CByteBuffer bytes_;  ///< that were sent last
    bool isRestored_ = false;
    bool isRestoring_ = false;
};

/// One attribute that is kept: `attr` of the object at `target` (`ui:editor-memory-item`).
class CEditorMemoryItem : public CObject {
public:
    /// Fails where no object stands.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    [[nodiscard]] CError* valueChanged();
};

}  // namespace tarv
