// Window classes on systems that have none: a set of the names that are registered.

#include "Platform/WindowClass.h"

#include <cerrno>
#include <new>
#include <set>
#include <string>

#include "Platform/Lock.h"

namespace tarv {

namespace {

struct CClassNames {
    CLock lock;
    std::set<std::u16string> names;
};

CClassNames& classNames() {
    alignas(CClassNames) static unsigned char storage[sizeof(CClassNames)];
    static CClassNames* all = new (storage) CClassNames;
    return *all;
}

}  // namespace

CPlatformError registerWindowClass(const char16_t* name) {
    CClassNames& all = classNames();
    CLockScope scope(all.lock);
    return all.names.insert(name).second ? 0 : EEXIST;
}

CPlatformError unregisterWindowClass(const char16_t* name) {
    CClassNames& all = classNames();
    CLockScope scope(all.lock);
    return all.names.erase(name) ? 0 : ENOENT;
}

}  // namespace tarv
