#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CDefinitionNode.h"

namespace tarv {

/// One line of a text source that says something.
struct CTextLine {
    CSourcePlace place;
    std::vector<std::string> words;
};

/// A text source: lines of words between blanks. `#` in front of a line or behind a blank begins a comment; lines
/// without words are left out. CR LF ends a line as well.
class CTextSource {
public:
    [[nodiscard]] CDefinitionFailure load(const std::string& path);
    /// The same for a text in memory; `path` is only shown.
    void parse(const std::string& path, std::string_view text);

    const std::string& path() const { return path_; }
    const std::vector<CTextLine>& lines() const { return lines_; }

private:
    std::string path_;
    std::vector<CTextLine> lines_;
};

/// A file's bytes.
[[nodiscard]] CDefinitionFailure readFile(const std::string& path, std::string& bytes);

/// A text source whose lines are all `key = value words...`, each key once.
class CKeySource {
public:
    /// Fails on another form of line, and on a key that is not among `keys` when there are any.
    [[nodiscard]] CDefinitionFailure take(const CTextSource& source, const std::vector<std::string_view>& keys);
    /// The line of a key, null when it is not there.
    const CTextLine* find(std::string_view key) const;
    /// The whole value of a key that has to be there.
    [[nodiscard]] CDefinitionFailure getText(std::string_view key, std::string& text) const;
    /// A number from `low` to `high`, both included.
    [[nodiscard]] CDefinitionFailure getNumber(std::string_view key, double low, double high, double& value) const;
    const std::vector<CTextLine>& lines() const { return lines_; }

private:
    std::string path_;
    std::vector<CTextLine> lines_;
};

/// A decimal number and nothing else; false for what is none or not finite.
bool parseNumber(std::string_view text, double& value);

}  // namespace tarv
