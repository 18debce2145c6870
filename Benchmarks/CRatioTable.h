#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarv::bench {

/// A table of costs with a column for each set of instructions, as it stands in a document: what something takes, its
/// ratio to what it is held against, and the limit of that ratio.
class CRatioTable {
public:
    /// `base` heads the column of what the others are held against, empty for none; `scale` turns costs into the unit
    /// of `title`.
    CRatioTable(std::string title, std::string base, double scale)
        : title_(std::move(title)), base_(std::move(base)), scale_(scale) {}

    /// Begins a row.
    void row(const std::string& name) { rows_.push_back({name, 0.0, {}}); }
    /// The next cell of the row; a limit of 0 is none. Takes the lowest base of a row.
    void cell(double base, double cost, double limit);
    /// The next cell is empty: this machine lacks the set.
    void missing() { rows_.back().cells.emplace_back(); }

    void print(const std::vector<std::string>& columns) const;
    /// Cells whose ratio is above the limit.
    int32_t failures() const { return failures_; }

private:
    struct CRow {
        std::string name;
        double base;
        std::vector<std::string> cells;
    };

    std::string title_;
    std::string base_;
    double scale_;
    std::vector<CRow> rows_;
    int32_t failures_ = 0;
};

}  // namespace tarv::bench
