#include "Core/CApplication.h"

#include <atomic>

#include "Core/CApplicationData.h"
#include "Core/CNotifyServer.h"
#include "Core/CScaledResource.h"
#include "Core/Log.h"

namespace tarv {

namespace {

/// Root of a tree, with the server of its events.
class CRootObject : public CObject {
public:
    ~CRootObject() override {
        destroyChildren();
        releaseListeners();
    }
    CNotifyServer server;
};

CApplication* application = nullptr;
bool startTried = false;
constexpr double kMinScale = 0.5;
constexpr double kMaxScale = 4.0;
std::atomic<double> scale{1.0};
// Under the creation lock.
int32_t openEditors = 0;

CLock& creationLock() {
    static CLock lock;
    return lock;
}

double readScale() {
    bool ok = false;
    CString text = CLocalData::instance().readText("ui-scale", "1.0");
    double value = CString::toDouble(text, &ok);
    return ok && value >= kMinScale && value <= kMaxScale ? value : 1.0;
}

}  // namespace

CApplication::~CApplication() {
    delete sharedRoot_;
}

void CApplication::ensureStarted(const CProductTables& tables) {
    CLockScope scope(creationLock());
    if (!startTried) {
        startTried = true;
        CError* error = start(tables);
        if (error) {
            showError(error);
        }
    }
}

CError* CApplication::start(const CProductTables& tables) {
    CLockScope scope(creationLock());
    if (application) {
        return nullptr;
    }
    startTried = true;
    scale = readScale();
    if (tables.registerWindowClasses) {
        if (CError* error = tables.registerWindowClasses("TarveloBrindle XEQ")) {
            return addErrorLocation(error, "Sources/Core/Application", __LINE__, CString(), CString());
        }
    }
    application = new CApplication;
    if (CError* error = application->init(tables)) {
        finish();
        startTried = true;
        return addErrorLocation(error, "Sources/Core/Application", __LINE__, CString(), CString());
    }
    return nullptr;
}

CError* CApplication::init(const CProductTables& tables) {
    logLine("Initializing application...");
    CCreatorRegistry::objectDescriptor();
    TARV_TRY(CCreatorRegistry::registerRows(tables.creators, tables.creatorCount));
    CResourceMap::addRows(tables.resources);
    TARV_TRY(initSharedObject(tables.sharedTree));
    return nullptr;
}

CError* CApplication::initSharedObject(const char* resourceName) {
    if (sharedRoot_) {
        TARV_FAIL("@tarvstr_CApplication_initSharedObject_Exists Shared object already exists.");
    }
    sharedRoot_ = new CObject;
    if (resourceName) {
        TARV_TRY(sharedRoot_->loadFromResource(resourceName, true));
    }
    sharedRoot_->freeze();
    return nullptr;
}

void CApplication::finish() {
    CLockScope scope(creationLock());
    if (application) {
        logLine("Finalizing application...");
        delete application;
        application = nullptr;
    }
    CCreatorRegistry::clear();
    CResourceMap::clear();
    CScaledResource::forgetScale();
    openEditors = 0;
    startTried = false;
}

bool CApplication::exists() {
    return application != nullptr;
}

CObject* CApplication::sharedRoot() {
    return application ? application->sharedRoot_ : nullptr;
}

CError* CApplication::initRootObject(CObject*& root) {
    root = nullptr;
    if (!application) {
        TARV_FAIL("@tarvstr_CApplication_initRootObject_NoShared No shared object created.");
    }
    auto* made = new CRootObject;
    made->notifyServer_ = &made->server;
    root = made;
    return nullptr;
}

double CApplication::uiScale() {
    return scale;
}

void CApplication::refreshUiScale() {
    CLockScope scope(creationLock());
    if (openEditors == 0) {
        scale = readScale();
    }
}

CError* CApplication::openEditor() {
    CLockScope scope(creationLock());
    refreshUiScale();
    TARV_TRY(CScaledResource::loadAll(scale));
    ++openEditors;
    return nullptr;
}

void CApplication::closeEditor() {
    CLockScope scope(creationLock());
    --openEditors;
}

}  // namespace tarv
