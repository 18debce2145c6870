#include "Benchmarks/CRatioTable.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tarv::bench {

namespace {

std::string texted(const char* format, double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

/// Three digits that count.
std::string costText(double value) {
    return texted(value < 10.0 ? "%.2f" : value < 100.0 ? "%.1f" : "%.0f", value);
}

}  // namespace

void CRatioTable::cell(double base, double cost, double limit) {
    CRow& row = rows_.back();
    row.base = row.base > 0.0 ? std::min(row.base, base) : base;
    const double ratio = cost / base;
    std::string text = costText(cost * scale_) + ": " + texted("%.3f", ratio);
    if (limit > 0.0) {
        // A ratio that is no number is above every limit.
        const bool isAbove = !(ratio <= limit);
        failures_ += isAbove ? 1 : 0;
        text += texted(isAbove ? " ABOVE %.2f" : " of %.2f", limit);
    }
    row.cells.push_back(text);
}

void CRatioTable::print(const std::vector<std::string>& columns) const {
    const auto begin = [&](const std::string& name, const std::string& base) {
        std::printf("\n| %-44s |", name.c_str());
        if (!base_.empty()) {
            std::printf(" %-8s |", base.c_str());
        }
    };
    const auto addCells = [](const std::vector<std::string>& cells) {
        for (const std::string& cell : cells) {
            std::printf(" %-22s |", cell.c_str());
        }
    };
    begin(title_, base_);
    addCells(columns);
    std::printf(base_.empty() ? "\n| --- |" : "\n| --- | --- |");
    for (size_t i = 0; i < columns.size(); ++i) {
        std::printf(" --- |");
    }
    for (const CRow& row : rows_) {
        begin(row.name, costText(row.base * scale_));
        addCells(row.cells);
    }
    std::printf("\n");
    std::fflush(stdout);
}

}  // namespace tarv::bench
