#include "Product/Product.h"

#include "Core/CApplication.h"
#include "Product/CreatorTable.h"
#include "Product/ResourceTable.h"

namespace tarv {

namespace {

/// Its constructor ends behind those of all statics that the start makes, so that its destructor runs before theirs.
class CProductLife {
public:
    CProductLife() {
        CApplication::ensureStarted(
            {.creators = kCreatorRows, .creatorCount = kCreatorRowCount, .resources = kResourceRows});
    }
    ~CProductLife() { CApplication::finish(); }
};

}  // namespace

void ensureProductStarted() {
    static CProductLife life;
}

}  // namespace tarv
