#include "CSvgSource.h"

#include <algorithm>

#include "CTextSource.h"
#include "SvgSnapping.h"

namespace tarv {

namespace {

constexpr unsigned kParseFlags = pugi::parse_default | pugi::parse_ws_pcdata_single;
constexpr double kSideMax = 4096;  // of a box: far above any window
constexpr const char* kSilentTops[] = {"title", "desc", "metadata", "style", ""};

bool isElement(pugi::xml_node node) {
    return node.type() == pugi::node_element;
}

/// All ids of a node and below.
void collectIds(pugi::xml_node node, std::set<std::string>& ids) {
    if (node.attribute("id")) {
        ids.insert(node.attribute("id").value());
    }
    for (pugi::xml_node child : node) {
        collectIds(child, ids);
    }
}

/// The ids that an attribute's value refers to: "#id" in links, "url(#id)" anywhere.
std::vector<std::string> referencesIn(pugi::xml_attribute attribute) {
    const std::string name = attribute.name(), value = attribute.value();
    std::vector<std::string> ids;
    if ((name == "href" || name == "xlink:href") && value.starts_with('#')) {
        ids.push_back(value.substr(1));
    }
    for (size_t at = 0; (at = value.find("url(#", at)) != value.npos; ++at) {
        ids.push_back(value.substr(at + 5, value.find(')', at) - at - 5));
    }
    return ids;
}

bool isBox(pugi::xml_node node) {
    return svgName(node) == "rect" && std::string(node.attribute("class").value()) == "box";
}

}  // namespace

CDefinitionFailure CSvgSource::load(const std::string& path) {
    std::string text;
    if (auto failure = readFile(path, text)) {
        return failure;
    }
    return parse(path, std::move(text));
}

CDefinitionFailure CSvgSource::parse(const std::string& path, std::string text) {
    path_ = path;
    text_ = std::move(text);
    const pugi::xml_parse_result result =
        document_.load_buffer(text_.data(), text_.size(), kParseFlags, pugi::encoding_utf8);
    root_ = document_.document_element();
    if (!result || svgName(root_) != "svg") {
        return CDefinitionError{{path_},
                                result ? "the file holds no drawing (an 'svg' element)"
                                       : std::string("malformed XML: ") + result.description()};
    }
    for (pugi::xml_node node : root_.children("defs")) {
        collectIds(node, sharedIds_);
    }
    for (pugi::xml_node node : root_) {
        if (!isElement(node)) {
            continue;
        }
        if (auto failure = readTop(node)) {
            return failure;
        }
    }
    return images_.empty() ? CDefinitionFailure(CDefinitionError{{path_}, "the drawing holds no image"}) : std::nullopt;
}

CDefinitionError CSvgSource::errorAt(pugi::xml_node node, const std::string& id, const std::string& text) const {
    const std::string own = node.attribute("id").value();
    std::string shape = "image '" + id + "': ";
    if (own != id) {
        shape += "<" + std::string(node.name()) + ">" + (own.empty() ? "" : " '" + own + "'") + ": ";
    }
    return {placeOf(node), shape + text};
}

CSourcePlace CSvgSource::placeOf(pugi::xml_node node) const {
    const auto end = text_.begin() + std::max<ptrdiff_t>(0, node.offset_debug());
    const auto lastBreak = std::find(std::make_reverse_iterator(end), text_.rend(), '\n').base();
    return {path_, 1 + static_cast<int>(std::count(text_.begin(), end, '\n')), std::max<int>(1, end - lastBreak)};
}

CDefinitionFailure CSvgSource::readTop(pugi::xml_node node) {
    const std::string name = svgName(node);
    if (name == "defs") {
        return checkUnsnapped(*this, node);
    }
    if (std::find(std::begin(kSilentTops), std::end(kSilentTops), name) != std::end(kSilentTops)) {
        return std::nullopt;
    }
    if (name != "g" || !node.attribute("id")) {
        return CDefinitionError{placeOf(node), "<" + name + ">: what is drawn belongs into a group with an id"};
    }
    return readImage(node);
}

CDefinitionFailure CSvgSource::readImage(pugi::xml_node group) {
    CSvgImage image;
    image.group = group;
    image.id = group.attribute("id").value();
    if (group.attribute("transform")) {
        return errorAt(group, image.id, "the group of an image takes no transform");
    }
    if (auto failure = readOptions(image)) {
        return failure;
    }
    if (auto failure = readBox(image)) {
        return failure;
    }
    if (auto failure = readSlices(image)) {
        return failure;
    }
    if (auto failure = placeInRange(image)) {
        return failure;
    }
    if (auto failure = checkShapes(image)) {
        return failure;
    }
    for (image.piece = 0; image.piece < (image.isSliced ? kSlicedPieces : 1); ++image.piece) {
        images_.push_back(image);
    }
    return std::nullopt;
}

CDefinitionFailure CSvgSource::readOptions(CSvgImage& image) const {
    for (pugi::xml_attribute attribute : image.group.attributes()) {
        const std::string name = attribute.name(), value = attribute.value();
        if (!name.starts_with("data-")) {
            continue;
        }
        if (name == "data-slice") {
            image.isSliced = true;
        } else if (name == "data-alpha" && value == "1") {
            image.bytesPerPixel = 1;
        } else if (name == "data-colour" && value == "1") {
            image.bytesPerPixel = 4;
        } else if (name == "data-tile" && (value == "x" || value == "y" || value == "xy")) {
            image.isTiledX = value != "y";
            image.isTiledY = value != "x";
        } else {
            return errorAt(image.group, image.id, name + "='" + value + "' has no meaning here");
        }
    }
    if (image.group.attribute("data-alpha") && image.group.attribute("data-colour")) {
        return errorAt(image.group, image.id, "data-alpha and data-colour exclude each other");
    }
    return std::nullopt;
}

CDefinitionFailure CSvgSource::readBox(CSvgImage& image) const {
    pugi::xml_node box;
    for (pugi::xml_node child : image.group) {
        if (isElement(child) && isBox(child)) {
            if (box) {
                return errorAt(child, image.id, "a second box");
            }
            box = child;
        }
    }
    if (!box) {
        return errorAt(image.group, image.id, "there is no <rect class='box'> for its nominal size");
    }
    CSvgBox& b = image.box;
    if (!svgLength(box.attribute("x"), b.x) || !svgLength(box.attribute("y"), b.y) ||
        !svgLength(box.attribute("width"), b.width) || !svgLength(box.attribute("height"), b.height) ||
        box.attribute("transform") || b.width < 1 || b.height < 1 || b.width > kSideMax || b.height > kSideMax) {
        return errorAt(box, image.id, "a box has x, y, width and height in pixels, of 1 to 4096, and no transform");
    }
    return std::nullopt;
}

CDefinitionFailure CSvgSource::readSlices(CSvgImage& image) const {
    if (!image.isSliced) {
        return std::nullopt;
    }
    const std::vector<std::string> words = svgWords(image.group.attribute("data-slice"));
    double* const borders[] = {&image.slices.left, &image.slices.top, &image.slices.right, &image.slices.bottom};
    bool isGood = words.size() == std::size(borders);
    for (size_t i = 0; isGood && i < words.size(); ++i) {
        isGood =
            !words[i].empty() && words[i].find_first_not_of("0123456789") == std::string::npos && words[i].size() <= 4;
        *borders[i] = isGood ? std::stod(words[i]) : 0.0;
        isGood = isGood && *borders[i] >= 1;
    }
    // At the smallest scale a pixel has to be left between the borders.
    constexpr double kMiddle = 2.0;
    if (!isGood || image.slices.left + image.slices.right + kMiddle > image.box.width ||
        image.slices.top + image.slices.bottom + kMiddle > image.box.height || image.isTiledX || image.isTiledY) {
        return errorAt(image.group, image.id,
                       "data-slice has four borders (left, top, right, bottom) in whole pixels that leave a middle of "
                       "two or more, on an image that is no tile");
    }
    return std::nullopt;
}

CDefinitionFailure CSvgSource::placeInRange(CSvgImage& image) {
    const size_t dash = image.id.rfind('-');
    const bool isNumbered = dash != image.id.npos && dash > 0 && dash + 1 < image.id.size() &&
                            image.id.size() - dash <= 4 &&
                            image.id.find_first_not_of("0123456789", dash + 1) == image.id.npos;
    image.range = image.id.substr(0, isNumbered ? dash : image.id.npos);
    image.number = isNumbered ? std::stoi(image.id.substr(dash + 1)) : 0;
    if (image.range == "default") {
        image.range.clear();
    }
    const auto index = static_cast<uint32_t>(images_.size());
    for (const CSvgImage& other : images_) {
        if (other.id == image.id) {
            return errorAt(image.group, image.id, "there are two images of this id");
        }
    }
    if (image.isSliced && isNumbered) {
        return errorAt(image.group, image.id, "the nine pieces of a sliced image are its range");
    }
    const bool goesOn = !ranges_.empty() && ranges_.back().name == image.range;
    if (goesOn && isNumbered && image.number == images_.back().number + 1) {
        ranges_.back().last = index;
        return std::nullopt;
    }
    const bool isKnown =
        std::any_of(ranges_.begin(), ranges_.end(), [&](const CSvgRange& range) { return range.name == image.range; });
    if (isKnown || image.number != 0) {
        return errorAt(image.group, image.id, "the images of a range stand together, numbered from 0 without a gap");
    }
    ranges_.push_back({image.range, index, index + (image.isSliced ? kSlicedPieces - 1u : 0u)});
    return std::nullopt;
}

CDefinitionFailure CSvgSource::checkShapes(const CSvgImage& image) const {
    std::set<std::string> known = sharedIds_;
    collectIds(image.group, known);
    for (pugi::xml_node child : image.group) {
        if (!isElement(child) || isBox(child)) {
            continue;
        }
        if (auto failure = checkReferences(child, image.id, known)) {
            return failure;
        }
        if (auto failure = checkSnapped(*this, image, child)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CSvgSource::checkReferences(pugi::xml_node node, const std::string& id,
                                               const std::set<std::string>& known) const {
    if (svgName(node) == "image") {
        return errorAt(node, id, "a bitmap can't be drawn anew for each scale");
    }
    for (pugi::xml_attribute attribute : node.attributes()) {
        for (const std::string& reference : referencesIn(attribute)) {
            if (!known.count(reference)) {
                return errorAt(node, id, "'#" + reference + "' is neither in 'defs' nor in this image");
            }
        }
    }
    for (pugi::xml_node child : node) {
        if (auto failure = checkReferences(child, id, known)) {
            return failure;
        }
    }
    return std::nullopt;
}

}  // namespace tarv
