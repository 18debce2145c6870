#pragma once

#include <map>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <vector>

#include "CDefinitionNode.h"

namespace tarv {

/// A rectangle in the units of a drawing, which are pixels at scale 1.0.
struct CSvgBox {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// Widths of the border that is cut off a frame to make its nine pieces, from the box's edges inwards.
struct CSvgSlices {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};
constexpr int kSlicedPieces = 9;

/// One image of a drawing: a group with an id at its top level.
struct CSvgImage {
    std::string id;
    std::string range;  ///< name of its range; empty for the default one
    int number = 0;     ///< in the range
    CSvgBox box;        ///< the nominal rectangle
    bool isTiledX = false;
    bool isTiledY = false;
    bool isSliced = false;
    CSvgSlices slices;  ///< of one that is sliced
    int piece = 0;      ///< which of the nine this image is, row by row
    int bytesPerPixel = 2;
    pugi::xml_node group;
};

/// Images that belong together, by index.
struct CSvgRange {
    std::string name;
    uint32_t first = 0;
    uint32_t last = 0;
};

/// The drawing of an image set. The form is documented in Gfx/README.md.
class CSvgSource {
public:
    [[nodiscard]] CDefinitionFailure load(const std::string& path);
    /// The same for a text in memory; `path` is only shown.
    [[nodiscard]] CDefinitionFailure parse(const std::string& path, std::string text);

    pugi::xml_node root() const { return root_; }
    /// In the order of the document, which is that of their indexes.
    const std::vector<CSvgImage>& images() const { return images_; }
    /// In the same order.
    const std::vector<CSvgRange>& ranges() const { return ranges_; }
    /// "image 'id': text" at the place of the node; of several shapes the one that the node is.
    CDefinitionError errorAt(pugi::xml_node node, const std::string& id, const std::string& text) const;

private:
    CSourcePlace placeOf(pugi::xml_node node) const;
    [[nodiscard]] CDefinitionFailure readTop(pugi::xml_node node);
    [[nodiscard]] CDefinitionFailure readImage(pugi::xml_node group);
    [[nodiscard]] CDefinitionFailure readOptions(CSvgImage& image) const;
    [[nodiscard]] CDefinitionFailure readBox(CSvgImage& image) const;
    [[nodiscard]] CDefinitionFailure readSlices(CSvgImage& image) const;
    [[nodiscard]] CDefinitionFailure placeInRange(CSvgImage& image);
    [[nodiscard]] CDefinitionFailure checkShapes(const CSvgImage& image) const;
    [[nodiscard]] CDefinitionFailure checkReferences(pugi::xml_node node, const std::string& id,
                                                     const std::set<std::string>& known) const;

    std::string path_;
    std::string text_;
    pugi::xml_document document_;
    pugi::xml_node root_;
    std::vector<CSvgImage> images_;
    std::vector<CSvgRange> ranges_;
    std::set<std::string> sharedIds_;  ///< of what all images may refer to
};

/// The name of an element without its namespace; empty for one of a foreign namespace, which an editor left.
std::string svgName(pugi::xml_node node);
/// Words of an attribute.
std::vector<std::string> svgWords(pugi::xml_attribute attribute);
/// A property of a shape (an attribute or in `style`), its own or the nearest group's; empty when there is none.
std::string svgProperty(pugi::xml_node node, const std::string& name);
/// A length in pixels: a number, with or without `px`. An absent attribute is 0; false for anything else.
bool svgLength(pugi::xml_attribute attribute, double& value);

}  // namespace tarv
