#include "CPlainEditor.h"

#include <stdlib.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Core/CStreams.h"
#include "DefinitionCompiler.h"
#include "Product/Product.h"

namespace tarv {

namespace {

constexpr uint32_t kTreeBlockId = 0x6c6d7863;  // 'cxml'
/// As a host that gives the plug-in all of its channels.
constexpr double kSampleRate = 44100.0;
constexpr int32_t kChannels = 8;
constexpr CIntRect kScreen{0, 0, 1920, 1080};
constexpr CIntRect kHost{CPlainEditor::kHostX, CPlainEditor::kHostY, 1700, 1000};

std::string textOf(CError* error) {
    const std::string text = error ? error->joined().toUtf8() : std::string();
    delete error;
    return text;
}

CByteBuffer bufferOf(const std::string& bytes) {
    CByteBuffer buffer;
    buffer.resize(static_cast<int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer.data());
    return buffer;
}

/// The bytes of a tree, from its source or its compressed block.
std::string readTree(const std::string& path, CByteBuffer& tree) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return "cannot read '" + path + "'";
    }
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (bytes.starts_with("cxml")) {
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
        return textOf(reader.readCompressedData(tree, kTreeBlockId));
    }
    std::string compiled;
    std::vector<std::string> files;
    if (const auto failure = compileDefinitions(path, "", compiled, files)) {
        return failure->message();
    }
    tree = bufferOf(compiled);
    return "";
}

}  // namespace

/// Settings of the user are neither read nor written while it lives.
class CPlainEditor::COwnData {
public:
    COwnData() {
        const char* former = std::getenv(kVariable);
        hasFormer_ = former != nullptr;
        former_ = hasFormer_ ? former : "";
        folder_ = (std::filesystem::temp_directory_path() / "tarv-editor-XXXXXX").string();
        if (!mkdtemp(folder_.data())) {
            std::fprintf(stderr, "cannot make a folder '%s'\n", folder_.c_str());
            std::exit(1);
        }
        setenv(kVariable, folder_.c_str(), 1);
        forget();
    }
    ~COwnData() {
        if (hasFormer_) {
            setenv(kVariable, former_.c_str(), 1);
        } else {
            unsetenv(kVariable);
        }
        forget();
        std::filesystem::remove_all(folder_);
    }
    COwnData(const COwnData&) = delete;
    COwnData& operator=(const COwnData&) = delete;

private:
    static constexpr const char* kVariable = "TARV_DATA_ROOT";

    static void forget() {
        CGlobalData::instance().reset();
        CLocalData::instance().reset();
    }

    bool hasFormer_ = false;
    std::string former_;
    std::string folder_;
};

CPlainEditor::CPlainEditor() : ownData_(std::make_unique<COwnData>()), system_({kScreen}) {
    ensureProductStarted();
    host_ = system_.desktop().openHost(kHost);
}

CPlainEditor::~CPlainEditor() {
    close();
}

void CPlainEditor::close() {
    tree_.reset();
    instance_.reset();
    if (isCounted_) {
        CApplication::closeEditor();
        isCounted_ = false;
    }
}

std::string CPlainEditor::open(const std::string& path, double scale, bool hasEngine) {
    close();
    CByteBuffer bytes;
    std::string failure = readTree(path, bytes);
    if (failure.empty() && hasEngine) {
        failure = makeEngine();
    }
    return failure.empty() ? openTree(bytes, "", scale) : failure;
}

std::string CPlainEditor::openProduct(double scale) {
    close();
    const std::string failure = makeEngine();
    return failure.empty() ? openTree({}, "UserInterface.xml", scale) : failure;
}

std::string CPlainEditor::makeEngine() {
    CError* error = nullptr;
    instance_.reset(CPlainInstance::create(error));
    if (instance_) {
        instance_->start(kSampleRate, kChannels, kChannels);
    }
    return textOf(error);
}

void CPlainEditor::endEngine() {
    instance_.reset();
    system_.pump();
}

std::string CPlainEditor::openTree(const CByteBuffer& bytes, const std::string& resource, double scale) {
    CLocalData::instance().writeText("ui-scale", CString::fromDouble(scale, 4));
    std::string failure = textOf(load(bytes, resource));
    if (failure.empty() && window()) {
        failure = textOf(window()->open());
        system_.pump();
    }
    return failure;
}

CError* CPlainEditor::load(const CByteBuffer& bytes, const std::string& resource) {
    TARV_TRY(CApplication::openEditor());
    isCounted_ = true;
    CObject* root = nullptr;
    TARV_TRY(CApplication::initRootObject(root));
    tree_.reset(root);
    TARV_TRY(root->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host_))));
    if (instance_) {
        TARV_TRY(root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(instance_->instanceRoot())));
    }
    if (!resource.empty()) {
        TARV_TRY(root->loadFromResource(resource.c_str(), true));
        return nullptr;
    }
    CTreeCursor cursor{bytes.data(), bytes.data() + bytes.count()};
    TARV_TRY(root->createFromBinary(cursor, true, true, false, false));
    return nullptr;
}

CPictureByHand CPlainEditor::pictureOf(const CWindow& window) {
    CWindowByHand* shown = system_.desktop().find(window.handle());
    return shown ? shown->picture() : CPictureByHand();
}

bool CPlainEditor::pointAt(const CView& view) {
    const CViewRect& rect = view.visibleRect();
    auto* own = dynamic_cast<CWindow*>(view.window());
    if (rect.isEmpty() || !own || !own->isOpen()) {
        return false;
    }
    system_.input().moveIn(own->handle(), static_cast<int32_t>(std::lround(rect.x + rect.width / 2.0)),
                           static_cast<int32_t>(std::lround(rect.y + rect.height / 2.0)));
    return true;
}

std::string CPlainEditor::setState(const std::string& path, const std::string& states) {
    auto* view = tree_->findObjectOf<CView>(path.c_str());
    return view ? textOf(view->setState(states.c_str())) : "no view '" + path + "'";
}

}  // namespace tarv
