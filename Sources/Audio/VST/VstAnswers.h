#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

/// The answer to kEffectCanDo. The question is compared exactly; an unknown one gives 0. Any thread.
intptr_t vstCanDo(const CString& question);
/// The number of a category by its name in the project; 0 for an unknown one. Any thread.
int32_t vstCategory(const CString& name);

}  // namespace tarv
