#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ztm::cli {

/// How lines are written.
enum class Form {
    Tabs,    ///< values apart by tabs, for other programs
    Columns, ///< tidy columns, for people
    Json     ///< one object a line
};

/// A value of a line: its text, and what it is in JSON.
class Cell {
public:
    Cell(std::string_view text); // NOLINT(google-explicit-constructor)
    Cell(const char *text) : Cell(std::string_view(text)) {}
    Cell(const std::string &text) : Cell(std::string_view(text)) {}
    /// A number with so many decimals and a point in every locale. NaN is a gap.
    Cell(double value, int decimals);
    Cell(int32_t value) : Cell(static_cast<double>(value), 0) {}
    Cell(size_t value) : Cell(static_cast<double>(value), 0) {}
    /// A byte as in "0x0F", and a plain number in JSON.
    static Cell Hex(int32_t byte);
    static Cell Bool(bool value, std::string_view whenTrue, std::string_view whenFalse);

    const std::string &Text() const { return text; }
    void AddTo(nlohmann::ordered_json &object, const std::string &key) const;

private:
    enum class Kind { Text, Number, Bool };

    std::string text;
    Kind kind = Kind::Text;
    double number = 0;
};

struct Column {
    std::string Key;      ///< in JSON, and the heading
    int Width;            ///< in tidy columns; negative: to the right
    bool IsInJson = true; ///< false for what another column says as well
};

/// Standard output.
class Output {
public:
    explicit Output(Form form) : form(form) {}

    Form HowWritten() const { return form; }

    /// The headings of the lines that follow, unless they are the last ones already; none in JSON.
    void Heading(const std::vector<Column> &columns);
    /// A line with a cell for each column. It has left the process when Flush returns.
    void Line(const std::vector<Column> &columns, const std::vector<Cell> &cells);
    /// A text as it is.
    void Print(std::string_view text);
    /// Throws OutputClosed if nobody reads it any more, and Failure if it cannot be written.
    void Flush();

private:
    void Put(const std::vector<Column> &columns, const std::vector<std::string> &texts);

    Form form;
    std::string waiting;
    std::vector<std::string> lastTitles;
};

/// A line on standard error.
void Tell(const std::string &text);

} // namespace ztm::cli
