#include "sheet/chart/chart.h"

#include "sheet/chart/scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace sheet::chart {

namespace {

constexpr double width = 720.0;
constexpr double height = 480.0;
constexpr double left = 90.0;
constexpr double right = 24.0;
constexpr double bottom = 64.0;
constexpr double legendRow = 20.0;
// More points than this show their line only.
constexpr std::size_t mostMarks = 60;

// Told apart also by people who do not see all colours (Okabe and Ito, Color Universal Design, 2008).
constexpr const char* colours[] = {"#0072b2", "#d55e00", "#009e73", "#cc79a7",
                                   "#e69f00", "#56b4e9", "#000000"};
const char* colourOf(std::size_t series) { return colours[series % std::size(colours)]; }

// Lines of the same colour are dashed differently.
constexpr const char* dashes[] = {"", " stroke-dasharray=\"8 4\"", " stroke-dasharray=\"2 3\""};
const char* dashOf(std::size_t series) { return dashes[series / std::size(colours) % std::size(dashes)]; }

// Characters that fit, at seven units each; those of the title are larger.
constexpr std::size_t mostOfTitle = 72;
constexpr std::size_t mostOfXTitle = 80;
constexpr std::size_t mostOfYTitle = 44;
constexpr std::size_t mostOfName = 40;
constexpr std::size_t mostLegendRows = 10; // more would leave no room for the chart

bool isFinite(const Point& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

std::string number(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    return text.data();
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default: // XML has no other control characters
            result += c >= 0 && c < ' ' ? ' ' : c;
        }
    }
    return result;
}

std::size_t characters(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string shortened(const std::string& text, std::size_t most) {
    if (characters(text) <= most) {
        return text;
    }
    std::size_t end = 0;
    for (std::size_t count = 0; end < text.size(); ++end) {
        const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
        if (begins && ++count == most) {
            break; // here stands the ellipsis
        }
    }
    return text.substr(0, end) + "…";
}

// The title of an axis, with the power of ten that its labels leave out: "pressure, 10⁶ Pa" would need to
// know units, so the factor stands in parentheses.
std::string withPower(const std::string& title, int power) {
    if (power == 0) {
        return title;
    }
    constexpr const char* raised[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string text{title};
    text.append(title.empty() ? "" : "  ").append("(× 10").append(power < 0 ? "⁻" : "");
    for (const char digit : std::to_string(std::abs(power))) {
        text.append(raised[digit - '0']);
    }
    return text.append(")");
}

class Drawing {
  public:
    explicit Drawing(const Chart& chart)
        : chart_{chart}, legend_{legendOf(chart)}, top_{(chart.title.empty() ? 24.0 : 52.0) +
                                                        legendRow * static_cast<double>(legend_.size())} {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        double x[2] = {infinity, -infinity};
        double y[2] = {infinity, -infinity};
        for (const Series& series : chart.series) {
            for (const Point& point : series.points) {
                if (isFinite(point)) {
                    x[0] = std::min(x[0], point.x);
                    x[1] = std::max(x[1], point.x);
                    y[0] = std::min(y[0], point.y);
                    y[1] = std::max(y[1], point.y);
                }
            }
        }
        xScale_ = scaleFor(x[0], x[1]);
        yScale_ = scaleFor(y[0], y[1]);
    }

    std::string text() {
        add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + number(width) + "\" height=\"" +
            number(height) + "\" viewBox=\"0 0 " + number(width) + ' ' + number(height) +
            "\" font-family=\"Segoe UI, Helvetica, Arial, sans-serif\" font-size=\"13\" fill=\"#333\">");
        add("<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>");
        if (!chart_.title.empty()) {
            write(width / 2.0, 30.0, shortened(chart_.title, mostOfTitle), "middle",
                  " font-size=\"17\" font-weight=\"600\"");
        }
        addAxes();
        addLegend();
        for (std::size_t i = 0; i < chart_.series.size(); ++i) {
            addSeries(chart_.series[i].points, i);
        }
        add("</svg>");
        return std::move(text_);
    }

  private:
    struct LegendRow {
        std::size_t first; // of the series
        std::size_t count;
        double width;
    };

    static double legendWidth(const Series& series) {
        return 54.0 + 7.0 * static_cast<double>(characters(shortened(series.name, mostOfName)));
    }

    // A single series needs none.
    static std::vector<LegendRow> legendOf(const Chart& chart) {
        std::vector<LegendRow> rows;
        for (std::size_t i = 0; chart.series.size() > 1 && i < chart.series.size(); ++i) {
            const double needed = legendWidth(chart.series[i]);
            if (rows.empty() || rows.back().width + needed > width - 16.0) {
                if (rows.size() == mostLegendRows) {
                    break;
                }
                rows.push_back({i, 0, 0.0});
            }
            ++rows.back().count;
            rows.back().width += needed;
        }
        return rows;
    }

    double xOf(double value) const { return left + xScale_.placeOf(value) * (width - left - right); }
    double yOf(double value) const {
        return height - bottom - yScale_.placeOf(value) * (height - bottom - top_);
    }

    void add(const std::string& line) { text_ += line + '\n'; }

    void write(double x, double y, const std::string& words, const char* anchor,
               const std::string& more = {}) {
        add("<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" text-anchor=\"" + anchor + '"' + more +
            '>' + escaped(words) + "</text>");
    }

    void addLine(double x1, double y1, double x2, double y2, const char* colour) {
        add("<line x1=\"" + number(x1) + "\" y1=\"" + number(y1) + "\" x2=\"" + number(x2) + "\" y2=\"" +
            number(y2) + "\" stroke=\"" + colour + "\"/>");
    }

    void addAxes() {
        constexpr const char* grid = "#e3e3e3";
        constexpr const char* axis = "#666";
        const double low = height - bottom;
        for (std::size_t i = 0; i < xScale_.ticks.size(); ++i) {
            const double x = xOf(xScale_.ticks[i]);
            addLine(x, top_, x, low, grid);
            write(x, low + 20.0, xScale_.labels[i], "middle");
        }
        for (std::size_t i = 0; i < yScale_.ticks.size(); ++i) {
            const double y = yOf(yScale_.ticks[i]);
            addLine(left, y, width - right, y, grid);
            write(left - 9.0, y + 4.5, yScale_.labels[i], "end");
        }
        addLine(left, low, width - right, low, axis);
        addLine(left, top_, left, low, axis);
        write((left + width - right) / 2.0, height - 18.0,
              withPower(shortened(chart_.xTitle, mostOfXTitle), xScale_.power), "middle");
        const double middle = (top_ + low) / 2.0;
        write(24.0, middle, withPower(shortened(chart_.yTitle, mostOfYTitle), yScale_.power), "middle",
              " transform=\"rotate(-90 24.0 " + number(middle) + ")\"");
    }

    // Rows above the chart, as wide as their names at seven units a character.
    void addLegend() {
        double y = top_ - 16.0 - legendRow * (static_cast<double>(legend_.size()) - 1.0);
        for (const LegendRow& row : legend_) {
            double x = std::max((left + width - right - row.width) / 2.0, 8.0);
            x = std::min(x, width - 8.0 - row.width);
            for (std::size_t i = row.first; i < row.first + row.count; ++i) {
                add("<line x1=\"" + number(x) + "\" y1=\"" + number(y) + "\" x2=\"" + number(x + 24.0) +
                    "\" y2=\"" + number(y) + "\" stroke=\"" + colourOf(i) + "\" stroke-width=\"2\"" +
                    dashOf(i) + "/>");
                write(x + 30.0, y + 4.5, shortened(chart_.series[i].name, mostOfName), "start");
                x += legendWidth(chart_.series[i]);
            }
            y += legendRow;
        }
    }

    void addSeries(const std::vector<Point>& points, std::size_t series) {
        const std::string colour = colourOf(series);
        const bool marksAll = points.size() <= mostMarks;
        std::vector<Point> line;
        const auto finish = [&] {
            if (!line.empty()) {
                std::string places;
                for (const Point& point : line) {
                    places.append(places.empty() ? "" : " ")
                        .append(number(xOf(point.x)))
                        .append(",")
                        .append(number(yOf(point.y)));
                }
                add("<polyline points=\"" + places + "\" fill=\"none\" stroke=\"" + colour +
                    "\" stroke-width=\"2\" stroke-linejoin=\"round\"" + dashOf(series) + "/>");
            }
            if (!marksAll && line.size() == 1) { // a line of one point shows nothing
                addMark(line.front(), colour);
            }
            line.clear();
        };
        for (const Point& point : points) {
            if (isFinite(point)) {
                line.push_back(point);
            } else {
                finish();
            }
        }
        finish();
        for (const Point& point : points) {
            if (marksAll && isFinite(point)) {
                addMark(point, colour);
            }
        }
    }

    void addMark(const Point& point, const std::string& colour) {
        add("<circle cx=\"" + number(xOf(point.x)) + "\" cy=\"" + number(yOf(point.y)) +
            "\" r=\"3\" fill=\"" + colour + "\"/>");
    }

    const Chart& chart_;
    std::vector<LegendRow> legend_;
    Scale xScale_;
    Scale yScale_;
    double top_;
    std::string text_;
};

} // namespace

bool hasPoints(const Chart& chart) {
    return std::ranges::any_of(
        chart.series, [](const Series& series) { return std::ranges::any_of(series.points, isFinite); });
}

std::string svgOf(const Chart& chart) { return Drawing{chart}.text(); }

} // namespace sheet::chart
