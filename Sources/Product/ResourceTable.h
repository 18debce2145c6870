#pragma once

#include "Core/CResourceReader.h"

namespace tarv {

/// The embedded byte ranges in the order of Definitions/Resources.xml, ended by a null row. Made by ResourcePacker.
extern const CResourceRow kResourceRows[];

}  // namespace tarv
