#include "SvgSnapping.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "CRaster.h"
#include "CTextSource.h"

namespace tarv {

namespace {

/// One direction of an image: user units to whole device pixels from the box's edge, and back.
struct CAxis {
    double origin;
    double size;  ///< of the box
    double scale;

    int edge(double value) const { return devicePixels((value - origin) * scale); }
    double user(double device) const { return origin + device / scale; }
    /// Where the pixel of a hairline around `value` begins. It keeps its distance from the nearer edge of the box, so
    /// that lines along both edges stay on them.
    int hairStart(double value) const {
        const double inside = value - origin;
        return inside * 2 <= size ? edge(value - 0.5) : edge(value + 0.5) - 1;
    }
};

/// What moves a shape of one class, along with what it needs to know.
class CSnapper {
public:
    CSnapper(const CSvgBox& box, double scale)
        : scale_(scale), x_{box.x, box.width, scale}, y_{box.y, box.height, scale} {}

    void snapRect(pugi::xml_node node);
    void snapRound(pugi::xml_node node);
    void snapLine(pugi::xml_node node);
    void snapPoints(pugi::xml_node node);
    void hairRect(pugi::xml_node node);
    void hairRound(pugi::xml_node node);
    void hairLine(pugi::xml_node node);
    void hairPoints(pugi::xml_node node);
    void hairFill(pugi::xml_node node);

private:
    static double get(pugi::xml_node node, const char* name) {
        double value = 0;
        svgLength(node.attribute(name), value);
        return value;
    }
    static void set(pugi::xml_node node, const char* name, double value);
    static void setProperty(pugi::xml_node node, const char* name, const std::string& value);
    void setStroke(pugi::xml_node node, int devices) const;
    /// Width of the stroke in user units, 0 without one.
    static double strokeOf(pugi::xml_node node);
    int strokeDevices(double stroke) const { return stroke > 0 ? std::max(1, devicePixels(stroke * scale_)) : 0; }
    void span(pugi::xml_node node, const CAxis& axis, const char* start, const char* length, double stroke,
              int devices);
    void roundSpan(pugi::xml_node node, const CAxis& axis, const char* centre, const char* radius, double stroke,
                   int devices);
    void lineAcross(pugi::xml_node node, const CAxis& axis, const char* first, const char* second, double centre) const;
    template <class TMove>
    void movePoints(pugi::xml_node node, const TMove& move) const;

    double scale_;
    CAxis x_, y_;
};

std::string numberText(double value) {
    char text[40];
    std::snprintf(text, sizeof(text), "%.12g", value);
    return text;
}

void CSnapper::set(pugi::xml_node node, const char* name, double value) {
    pugi::xml_attribute attribute = node.attribute(name);
    (attribute ? attribute : node.append_attribute(name)).set_value(numberText(value).c_str());
}

void CSnapper::setProperty(pugi::xml_node node, const char* name, const std::string& value) {
    pugi::xml_attribute style = node.attribute("style");
    const std::string text = std::string(style.value()) + ";" + name + ":" + value;
    (style ? style : node.append_attribute("style")).set_value(text.c_str());
}

void CSnapper::setStroke(pugi::xml_node node, int devices) const {
    if (devices > 0) {
        setProperty(node, "stroke-width", numberText(devices / scale_));
    }
}

double CSnapper::strokeOf(pugi::xml_node node) {
    const std::string paint = svgProperty(node, "stroke"), width = svgProperty(node, "stroke-width");
    if (paint.empty() || paint == "none") {
        return 0;
    }
    double value = 1;
    parseNumber(width.ends_with("px") ? width.substr(0, width.size() - 2) : width, value);
    return value;
}

/// The outer edges of a span with its stroke come to lie on whole pixels.
void CSnapper::span(pugi::xml_node node, const CAxis& axis, const char* start, const char* length, double stroke,
                    int devices) {
    const double from = get(node, start), size = get(node, length);
    const int low = axis.edge(from - stroke / 2), high = axis.edge(from + size + stroke / 2);
    set(node, start, axis.user(low + devices / 2.0));
    set(node, length, std::max(0, high - low - devices) / scale_);
}

void CSnapper::roundSpan(pugi::xml_node node, const CAxis& axis, const char* centre, const char* radius, double stroke,
                         int devices) {
    const double middle = get(node, centre), size = get(node, radius);
    const int low = axis.edge(middle - size - stroke / 2), width = devicePixels((2 * size + stroke) * scale_);
    set(node, centre, axis.user(low + width / 2.0));
    set(node, radius, std::max(0, width - devices) / 2.0 / scale_);
}

void CSnapper::snapRect(pugi::xml_node node) {
    const double stroke = strokeOf(node);
    const int devices = strokeDevices(stroke);
    span(node, x_, "x", "width", stroke, devices);
    span(node, y_, "y", "height", stroke, devices);
    setStroke(node, devices);
}

void CSnapper::snapRound(pugi::xml_node node) {
    const double stroke = strokeOf(node);
    const int devices = strokeDevices(stroke);
    const bool isCircle = svgName(node) == "circle";
    const double radius = get(node, "r");
    roundSpan(node, x_, "cx", isCircle ? "r" : "rx", stroke, devices);
    if (isCircle) {
        const double snapped = get(node, "r");
        set(node, "r", radius);
        roundSpan(node, y_, "cy", "r", stroke, devices);
        set(node, "r", snapped);
    } else {
        roundSpan(node, y_, "cy", "ry", stroke, devices);
    }
    setStroke(node, devices);
}

void CSnapper::lineAcross(pugi::xml_node node, const CAxis& axis, const char* first, const char* second,
                          double centre) const {
    set(node, first, axis.user(centre));
    set(node, second, axis.user(centre));
}

void CSnapper::snapLine(pugi::xml_node node) {
    const double stroke = strokeOf(node);
    const int devices = strokeDevices(stroke);
    const std::string cap = svgProperty(node, "stroke-linecap");
    // A cap reaches out by half of the stroke; its end is what has to lie on a pixel's edge then.
    const bool hasCap = cap == "round" || cap == "square";
    const double x1 = get(node, "x1"), x2 = get(node, "x2"), y1 = get(node, "y1"), y2 = get(node, "y2");
    const auto place = [&](const CAxis& axis, double value, bool isCentre) {
        return axis.user(isCentre ? axis.edge(value - stroke / 2) + devices / 2.0 : axis.edge(value));
    };
    set(node, "x1", place(x_, x1, hasCap || x1 == x2));
    set(node, "x2", place(x_, x2, hasCap || x1 == x2));
    set(node, "y1", place(y_, y1, hasCap || y1 == y2));
    set(node, "y2", place(y_, y2, hasCap || y1 == y2));
    setStroke(node, devices);
}

template <class TMove>
void CSnapper::movePoints(pugi::xml_node node, const TMove& move) const {
    std::string text = node.attribute("points").value(), moved;
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream numbers(text);
    for (double x = 0, y = 0; numbers >> x >> y;) {
        moved += (moved.empty() ? "" : " ") + numberText(move(x_, x)) + "," + numberText(move(y_, y));
    }
    node.attribute("points").set_value(moved.c_str());
}

void CSnapper::snapPoints(pugi::xml_node node) {
    const double stroke = strokeOf(node);
    const int devices = strokeDevices(stroke);
    movePoints(node, [&](const CAxis& axis, double v) { return axis.user(axis.edge(v - stroke / 2) + devices / 2.0); });
    setStroke(node, devices);
}

void CSnapper::hairRect(pugi::xml_node node) {
    span(node, x_, "x", "width", 1, 1);
    span(node, y_, "y", "height", 1, 1);
    setStroke(node, 1);
}

void CSnapper::hairRound(pugi::xml_node node) {
    const double radius = get(node, "r");
    if (svgName(node) == "circle") {
        roundSpan(node, x_, "cx", "r", 1, 1);
        const double snapped = get(node, "r");
        set(node, "r", radius);
        roundSpan(node, y_, "cy", "r", 1, 1);
        set(node, "r", snapped);
    } else {
        roundSpan(node, x_, "cx", "rx", 1, 1);
        roundSpan(node, y_, "cy", "ry", 1, 1);
    }
    setStroke(node, 1);
}

void CSnapper::hairLine(pugi::xml_node node) {
    const double x1 = get(node, "x1"), x2 = get(node, "x2"), y1 = get(node, "y1"), y2 = get(node, "y2");
    if (y1 == y2) {
        set(node, "x1", x_.user(x_.edge(x1)));
        set(node, "x2", x_.user(x_.edge(x2)));
        lineAcross(node, y_, "y1", "y2", y_.hairStart(y1) + 0.5);
    } else {
        set(node, "y1", y_.user(y_.edge(y1)));
        set(node, "y2", y_.user(y_.edge(y2)));
        lineAcross(node, x_, "x1", "x2", x_.hairStart(x1) + 0.5);
    }
    setProperty(node, "stroke-linecap", "butt");
    setStroke(node, 1);
}

void CSnapper::hairPoints(pugi::xml_node node) {
    movePoints(node, [&](const CAxis& axis, double v) { return axis.user(axis.hairStart(v) + 0.5); });
    // Corners and ends fill their pixels.
    setProperty(node, "stroke-linejoin", "miter");
    setProperty(node, "stroke-linecap", "square");
    setStroke(node, 1);
}

void CSnapper::hairFill(pugi::xml_node node) {
    for (const auto& [axis, start, length] :
         {std::tuple<const CAxis&, const char*, const char*>{x_, "x", "width"}, {y_, "y", "height"}}) {
        if (get(node, length) != 1) {
            span(node, axis, start, length, 0, 0);
            continue;
        }
        set(node, start, axis.user(axis.hairStart(get(node, start) + 0.5)));
        set(node, length, 1 / scale_);
    }
}

struct CSnapRow {
    const char* shapeClass;
    const char* shape;
    void (CSnapper::*move)(pugi::xml_node);
};

constexpr CSnapRow kSnapRows[] = {
    {"snap", "rect", &CSnapper::snapRect},       {"snap", "circle", &CSnapper::snapRound},
    {"snap", "ellipse", &CSnapper::snapRound},   {"snap", "line", &CSnapper::snapLine},
    {"snap", "polyline", &CSnapper::snapPoints}, {"snap", "polygon", &CSnapper::snapPoints},
    {"hair", "rect", &CSnapper::hairRect},       {"hair", "circle", &CSnapper::hairRound},
    {"hair", "ellipse", &CSnapper::hairRound},   {"hair", "line", &CSnapper::hairLine},
    {"hair", "polyline", &CSnapper::hairPoints}, {"hair", "polygon", &CSnapper::hairPoints},
    {"hairfill", "rect", &CSnapper::hairFill},
};
constexpr const char* kLengths[] = {"x", "y", "width", "height", "x1", "y1", "x2", "y2", "cx", "cy", "r", "rx", "ry"};

const CSnapRow* findRow(const std::string& shapeClass, const std::string& shape) {
    for (const CSnapRow& row : kSnapRows) {
        if (row.shapeClass == shapeClass && (shape.empty() || row.shape == shape)) {
            return &row;
        }
    }
    return nullptr;
}

bool arePointsWell(pugi::xml_node node) {
    std::string text = node.attribute("points").value();
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream words(text);
    int count = 0;
    for (std::string word; words >> word; ++count) {
        double value = 0;
        if (!parseNumber(word, value)) {
            return false;
        }
    }
    return count >= 4 && count % 2 == 0;
}

CDefinitionFailure checkGeometry(const CSvgSource& source, const std::string& id, pugi::xml_node node,
                                 const std::string& shapeClass) {
    for (const char* name : kLengths) {
        double value = 0;
        if (!svgLength(node.attribute(name), value)) {
            return source.errorAt(node, id,
                                  std::string(name) + "='" + node.attribute(name).value() + "' is no length in pixels");
        }
    }
    if (svgName(node).starts_with("poly") && !arePointsWell(node)) {
        return source.errorAt(node, id, "its points aren't pairs of numbers, two or more");
    }
    const auto same = [&](const char* a, const char* b) {
        double first = 0, second = 0;
        svgLength(node.attribute(a), first);
        svgLength(node.attribute(b), second);
        return first == second;
    };
    if (shapeClass == "hair" && svgName(node) == "line" && !same("x1", "x2") && !same("y1", "y2")) {
        return source.errorAt(node, id, "a hairline is level or upright");
    }
    const std::string paint = svgProperty(node, "stroke");
    if (shapeClass == "hair" && (paint.empty() || paint == "none")) {
        return source.errorAt(node, id, "a hairline needs a stroke");
    }
    double width = 0, height = 0;
    svgLength(node.attribute("width"), width);
    svgLength(node.attribute("height"), height);
    if (shapeClass == "hairfill" && width != 1 && height != 1) {
        return source.errorAt(node, id, "one side of a 'hairfill' is 1");
    }
    return std::nullopt;
}

CDefinitionFailure checkClass(const CSvgSource& source, const std::string& id, pugi::xml_node node) {
    const std::vector<std::string> words = svgWords(node.attribute("class"));
    if (words.empty()) {
        return std::nullopt;
    }
    if (words.size() > 1 || !findRow(words[0], "")) {
        return source.errorAt(
            node, id,
            std::string("class '") + node.attribute("class").value() + "' is none of box (once), snap, hair, hairfill");
    }
    if (!findRow(words[0], svgName(node))) {
        return source.errorAt(node, id, "class '" + words[0] + "' has no meaning on this shape");
    }
    for (pugi::xml_node up = node; up.parent() && up != source.root(); up = up.parent()) {
        if (up.attribute("transform")) {
            return source.errorAt(node, id, "class '" + words[0] + "' can't hold under a transform");
        }
    }
    return checkGeometry(source, id, node, words[0]);
}

}  // namespace

void snapImage(const CSvgImage& image, double scale, pugi::xml_node copy) {
    CSnapper snapper(image.box, scale);
    for (pugi::xml_node node : copy) {
        const std::vector<std::string> words = svgWords(node.attribute("class"));
        if (words.size() == 1) {
            if (const CSnapRow* row = findRow(words[0], svgName(node))) {
                (snapper.*row->move)(node);
            }
        }
        snapImage(image, scale, node);
    }
}

CDefinitionFailure checkSnapped(const CSvgSource& source, const CSvgImage& image, pugi::xml_node node) {
    if (auto failure = checkClass(source, image.id, node)) {
        return failure;
    }
    for (pugi::xml_node child : node) {
        if (auto failure = checkSnapped(source, image, child)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure checkUnsnapped(const CSvgSource& source, pugi::xml_node node) {
    if (node.attribute("class")) {
        return source.errorAt(node, "defs",
                              std::string("class '") + node.attribute("class").value() +
                                  "' has no meaning here: what is shared has no place of its own");
    }
    for (pugi::xml_node child : node) {
        if (auto failure = checkUnsnapped(source, child)) {
            return failure;
        }
    }
    return std::nullopt;
}

}  // namespace tarv
