#pragma once

#include "Core/CCreatorRegistry.h"

namespace tarv {

/// Every class that definitions can name by a tag, in ascending order of the tags.
extern const CCreatorRow kCreatorRows[];
extern const int32_t kCreatorRowCount;

}  // namespace tarv
