#include "bench/Report.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "bench/Goals.h"

namespace zarvo::bench {

namespace {

/** The columns of a figure, as text. */
struct Cells {
    std::string row, against, ours, theirs, ratio, goal, stretch, verdict;
};

const Cells kHeading{"row", "against", "ours", "theirs", "ratio", "goal", "stretch", "reached"};

std::string Short(double value, const char* format) {
    char text[48];
    std::snprintf(text, sizeof(text), format, value);
    return text;
}

/** A unit of nanoseconds, alone or per something, is scaled to the value. */
std::string Amount(double value, const std::string& unit) {
    if (!unit.starts_with("ns")) return Short(value, value < 100 ? "%.3g " : "%.0f ") + unit;
    const std::string rest = unit.substr(2);
    if (value < 1e3) return Short(value, "%.3g ns") + rest;
    if (value < 1e7) return Short(value / 1e3, value < 1e5 ? "%.2f µs" : "%.1f µs") + rest;
    return Short(value / 1e6, "%.1f ms") + rest;
}

std::string Verdict(const Goal& goal, const Figure& figure) {
    std::string reached = goal.Text(goal.Reached(figure));
    if (!goal.IsReachedBy(figure)) return reached + ": missed";
    const bool stretched = goal.stretch && goal.IsStretchedBy(figure);
    return reached + (stretched ? ": stretch" : ": goal");
}

Cells CellsOf(const Figure& figure) {
    Cells cells;
    cells.row = figure.row;
    cells.against = figure.against;
    cells.ours = Amount(figure.ours, figure.unit);
    if (!figure.against.empty()) {
        cells.theirs = Amount(figure.theirs, figure.unit);
        cells.ratio = Short(figure.ratio, "%.3f");
    }
    if (const Goal* const goal = GoalOf(figure)) {
        cells.goal = goal->Text(goal->goal);
        cells.stretch = goal->stretch ? goal->Text(*goal->stretch) : "";
        cells.verdict = Verdict(*goal, figure);
    }
    return cells;
}

/** Bytes are not columns: a 'µ' has two. */
std::string Padded(const std::string& text, size_t width) {
    const auto columns = static_cast<size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
    return text + std::string(width > columns ? width - columns : 0, ' ');
}

std::string TextLine(const Cells& cells) {
    return Padded(cells.row, 46) + ' ' + Padded(cells.against, 21) + ' ' + Padded(cells.ours, 17) +
           ' ' + Padded(cells.theirs, 17) + ' ' + Padded(cells.ratio, 8) + ' ' +
           Padded(cells.goal, 17) + ' ' + cells.verdict + '\n';
}

std::string MarkdownLine(const Cells& cells) {
    return "| " + cells.row + " | " + cells.against + " | " + cells.ours + " | " + cells.theirs +
           " | " + cells.ratio + " | " + cells.goal + " | " + cells.stretch + " | " +
           cells.verdict + " |\n";
}

}  // namespace

std::string TextOf(const Conditions& conditions) {
    std::string text;
    for (const auto& [name, value] : conditions)
        text += Padded(name, 14) + ' ' + value + '\n';
    return text;
}

std::string TextOf(const Figures& figures) {
    std::string text = TextLine(kHeading);
    for (const Figure& figure : figures.figures)
        text += TextLine(CellsOf(figure));
    return text;
}

std::string MarkdownOf(const Conditions& conditions, const Figures& figures) {
    std::string text =
            "# Figures\n\nMade by `./aon bench --write-docs`. What the rows mean: "
            "[`../speed.md`](../speed.md).\n\n| condition | |\n|---|---|\n";
    for (const auto& [name, value] : conditions)
        text += "| " + name + " | " + value + " |\n";
    text += '\n' + MarkdownLine(kHeading) + "|---|---|---|---|---|---|---|---|\n";
    for (const Figure& figure : figures.figures)
        text += MarkdownLine(CellsOf(figure));
    for (const Curve& curve : figures.curves)
        text += "\n![" + curve.title + "](" + PlotName(curve) + ")\n";
    return text;
}

std::string PlotName(const Curve& curve) {
    std::string name = curve.row;
    for (char& c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '-';
    return name + ".svg";
}

}  // namespace zarvo::bench
