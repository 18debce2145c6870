#pragma once

#include "Core/CCreatorRegistry.h"
#include "Core/CObject.h"
#include "Core/CResourceReader.h"

namespace tarv {

/// What the product hands in: the core knows no class and no resource by itself. All of it lives as long as the
/// library.
struct CProductTables {
    const CCreatorRow* creators;
    int32_t creatorCount;
    const CResourceRow* resources;  ///< ended by a pair of null pointers; may be null
    /// Registers the classes of the product's windows under names made from `uniqueName`; null for no windows.
    CError* (*registerWindowClasses)(const CString& uniqueName) = nullptr;
    /// Resource that the shared tree is loaded from; null for an empty shared tree.
    const char* sharedTree = "SharedData.xml";
};

/// What all instances in a process share: the creators, the resources and the shared tree. Lives from the first call
/// of an entry point to the unloading of the library.
class CApplication : public CHeapObject {
public:
    /// Starts the application at the first call, and shows what went wrong; later calls do nothing, also after a
    /// failure. Any thread: a second one waits until the first has finished.
    static void ensureStarted(const CProductTables& tables);
    /// As ensureStarted, but hands the failure to the caller and does nothing if an application exists.
    [[nodiscard]] static CError* start(const CProductTables& tables);
    /// Destroys the shared tree and forgets creators and resources; ensureStarted may begin anew. Touches plain memory
    /// only, so that it may run while the library is unloaded. No instance may be left.
    static void finish();

    static bool exists();
    /// Null when no application exists. Read-only once the application has started, and then for any thread.
    static CObject* sharedRoot();
    /// A new root that has its own notification server, for one instance or one editor. The caller owns it.
    [[nodiscard]] static CError* initRootObject(CObject*& root);

    /// Factor for all lengths of the editor, 0.5 to 4: what the user's settings held at the start, or at the last
    /// refreshUiScale or openEditor that read them. 1.0 by default and for any other text. Any thread.
    static double uiScale();
    /// Reads the factor from the user's settings, unless an editor is open. Threads of the user interface.
    static void refreshUiScale();
    /// Counts an editor as open, and before the first one reads the factor and loads the graphics if they hold another.
    /// A failure counts nothing. Threads of the user interface.
    [[nodiscard]] static CError* openEditor();
    /// Once for each openEditor that succeeded. The graphics stay loaded.
    static void closeEditor();

private:
    [[nodiscard]] CError* init(const CProductTables& tables);
    [[nodiscard]] CError* initSharedObject(const char* resourceName);
    ~CApplication();

    CObject* sharedRoot_ = nullptr;
};

}  // namespace tarv
