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
        : chart_{chart}, top_{(chart.title.empty() ? 24.0 : 52.0) + (hasLegend() ? legendRow : 0.0)} {
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
            write(width / 2.0, 30.0, chart_.title, "middle", " font-size=\"17\" font-weight=\"600\"");
        }
        addAxes();
        addLegend();
        for (std::size_t i = 0; i < chart_.series.size(); ++i) {
            addSeries(chart_.series[i].points, colourOf(i));
        }
        add("</svg>");
        return std::move(text_);
    }

  private:
    bool hasLegend() const { return chart_.series.size() > 1; }
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
        write((left + width - right) / 2.0, height - 18.0, withPower(chart_.xTitle, xScale_.power), "middle");
        const double middle = (top_ + low) / 2.0;
        write(24.0, middle, withPower(chart_.yTitle, yScale_.power), "middle",
              " transform=\"rotate(-90 24.0 " + number(middle) + ")\"");
    }

    // One row above the chart, as wide as its names at seven units a character.
    void addLegend() {
        if (!hasLegend()) {
            return;
        }
        const auto widthOf = [](const Series& series) {
            return 54.0 + 7.0 * static_cast<double>(characters(series.name));
        };
        double all = 0.0;
        for (const Series& series : chart_.series) {
            all += widthOf(series);
        }
        double x = std::max((left + width - right - all) / 2.0, 8.0);
        const double y = top_ - 16.0;
        for (std::size_t i = 0; i < chart_.series.size(); ++i) {
            add("<line x1=\"" + number(x) + "\" y1=\"" + number(y) + "\" x2=\"" + number(x + 24.0) +
                "\" y2=\"" + number(y) + "\" stroke=\"" + colourOf(i) + "\" stroke-width=\"2\"/>");
            write(x + 30.0, y + 4.5, chart_.series[i].name, "start");
            x += widthOf(chart_.series[i]);
        }
    }

    void addSeries(const std::vector<Point>& points, const char* colour) {
        std::string line;
        const auto finish = [&] {
            if (!line.empty()) {
                add("<polyline points=\"" + line + "\" fill=\"none\" stroke=\"" + colour +
                    "\" stroke-width=\"2\" stroke-linejoin=\"round\"/>");
            }
            line.clear();
        };
        for (const Point& point : points) {
            if (!isFinite(point)) {
                finish();
                continue;
            }
            line.append(line.empty() ? "" : " ")
                .append(number(xOf(point.x)))
                .append(",")
                .append(number(yOf(point.y)));
        }
        finish();
        if (points.size() > mostMarks) {
            return;
        }
        for (const Point& point : points) {
            if (isFinite(point)) {
                add("<circle cx=\"" + number(xOf(point.x)) + "\" cy=\"" + number(yOf(point.y)) +
                    "\" r=\"3\" fill=\"" + colour + "\"/>");
            }
        }
    }

    const Chart& chart_;
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
