#pragma once

#include "Core/CString.h"

namespace tarv {

/// The full parameter name that `name` stands for at the process with the full path `ownerPath`. A leading "/" makes
/// the rest absolute; each leading "^" takes one component off the owner's path (its first stays); a "." behind the
/// carets is skipped; what is left is a name below that path.
CString resolveParamName(const CString& ownerPath, const CString& name);

/// The full name of a process's own parameter: path, ".", local name.
CString fullParamName(const CString& processPath, const CString& localName);

}  // namespace tarv
