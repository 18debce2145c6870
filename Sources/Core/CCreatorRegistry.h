#pragma once

#include "Core/CClassDescriptor.h"

namespace tarv {

/// One row of the table of creators: the tag, the function that makes the object, and the one that fills its class's
/// descriptor with handlers (null for a class without handlers).
struct CCreatorRow {
    const char* tag;
    CObject* (*create)();
    CError* (*initClass)(CClassDescriptor& descriptor);
};

/// Process-wide map from tag to creator, filled at application start, read-only afterwards.
class CCreatorRegistry {
public:
    /// Enters a creator; fails if the tag stands already. Takes the descriptor over.
    [[nodiscard]] static CError* registerCreator(const CString& tag, CObject* (*create)(),
                                                 CClassDescriptor* descriptor);
    /// Registers rows in order, each with its own descriptor. Tests pass their own rows.
    [[nodiscard]] static CError* registerRows(const CCreatorRow* rows, int32_t count);
    /// A new object of the tag's class with its descriptor, or null for an unknown tag.
    static CObject* create(const CString& tag);
    /// The descriptor of objects whose tag has no class.
    static const CClassDescriptor& objectDescriptor();
    /// Forgets all creators. No object that one of them made may be left.
    static void clear();
};

}  // namespace tarv
