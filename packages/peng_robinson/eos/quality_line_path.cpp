// Following a quality line from a low pressure to the critical point.
#include "packages/peng_robinson/eos/linear_solver.h"
#include "packages/peng_robinson/eos/quality_line.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace peng_robinson::eos {

// From one point of the line to the next. Between them every unknown is a cubic that has the values and the
// directions of both ends.
class QualityLine::Step {
  public:
    /// Derivatives by the unknown that the step was made in, times its change.
    Step(const Unknowns& from, const Unknowns& to, const Unknowns& slopeFrom, const Unknowns& slopeTo,
         std::size_t steppedIn)
        : from_{from}, to_{to}, slopeFrom_{slopeFrom}, slopeTo_{slopeTo},
          factorFrom_{(to[steppedIn] - from[steppedIn]) / slopeFrom[steppedIn]},
          factorTo_{(to[steppedIn] - from[steppedIn]) / slopeTo[steppedIn]} {}

    const Unknowns& from() const { return from_; }

    double at(std::size_t i, double s) const {
        const Cubic c = cubic(i);
        return from_[i] + s * (c.first + s * (c.second + s * c.third));
    }
    Unknowns at(double s) const {
        Unknowns values(from_.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = at(i, s);
        }
        return values;
    }
    /// 0, 1 and the places between them where unknown i turns round, in increasing order.
    std::vector<double> piecesOf(std::size_t i) const {
        const Cubic c = cubic(i);
        std::vector<double> ends{0.0, 1.0};
        const double discriminant = c.second * c.second - 3.0 * c.third * c.first;
        if (discriminant > 0.0) {
            const double q = -(c.second + std::copysign(std::sqrt(discriminant), c.second));
            for (const double s : {q / (3.0 * c.third), c.first / q}) {
                if (s > 0.0 && s < 1.0) {
                    ends.push_back(s);
                }
            }
        }
        std::ranges::sort(ends);
        return ends;
    }

  private:
    struct Cubic {
        double first, second, third;
    };
    Cubic cubic(std::size_t i) const {
        const double change = to_[i] - from_[i];
        const double a = factorFrom_ * slopeFrom_[i], b = factorTo_ * slopeTo_[i];
        return {a, 3.0 * change - 2.0 * a - b, a + b - 2.0 * change};
    }

    const Unknowns &from_, &to_, &slopeFrom_, &slopeTo_;
    double factorFrom_, factorTo_;
};

QualityLine::Unknowns QualityLine::tangent(const Unknowns& at, std::size_t fixed) const {
    const std::size_t n = z_.size();
    const System system = assemble(at);
    std::vector<double> matrix((n + 1) * (n + 1)), right(n + 1);
    for (std::size_t row = 0; row <= n; ++row) {
        right[row] = -system.derivative(row, fixed);
        for (std::size_t column = 0; column <= n; ++column) {
            matrix[row * (n + 1) + column] = system.derivative(row, column < fixed ? column : column + 1);
        }
    }
    Unknowns result = solveLinear(std::move(matrix), std::move(right));
    if (!result.empty()) {
        result.insert(result.begin() + static_cast<std::ptrdiff_t>(fixed), 1.0);
    }
    return result;
}

std::optional<QualityLine::Unknowns> QualityLine::start() const {
    for (const double pressure : {1e4, 1e3, 1e5, 1e2, 1e6}) {
        if (const std::optional<Point> point = estimateAndSolve(Variable::pressure, pressure)) {
            Unknowns at = point->lnK;
            at.push_back(std::log(point->T));
            at.push_back(std::log(point->P));
            return at;
        }
    }
    return std::nullopt;
}

// The point that the guess leads to, when it has its phases the same way round as the line nearby.
void QualityLine::add(Unknowns guess, const Unknowns& near, Variable given, double wanted,
                      std::vector<Point>& found) const {
    guess[indexOf(given)] = wanted;
    const std::optional<Unknowns> exact = solve(std::move(guess), indexOf(given), 30);
    if (!exact || std::inner_product(exact->begin(), exact->begin() + static_cast<std::ptrdiff_t>(z_.size()),
                                     near.begin(), 0.0) <= 0.0) {
        return;
    }
    Point point = pointAt(*exact, given);
    const bool isKnown = std::ranges::any_of(found, [&](const Point& known) {
        return std::abs(known.T / point.T - 1.0) < 1e-9 && std::abs(known.P / point.P - 1.0) < 1e-9;
    });
    if (!isKnown) {
        found.push_back(std::move(point));
    }
}

// Where the line turns round in the given variable, it may pass the wanted value twice in one step.
void QualityLine::collect(const Step& step, Variable given, double wanted, std::vector<Point>& found) const {
    const std::size_t target = indexOf(given);
    const std::vector<double> ends = step.piecesOf(target);
    for (std::size_t piece = 1; piece < ends.size(); ++piece) {
        double low = ends[piece - 1], high = ends[piece];
        const double before = step.at(target, low) - wanted, after = step.at(target, high) - wanted;
        if (before * after > 0.0 || before == after) {
            continue;
        }
        for (int i = 0; i < 50; ++i) {
            const double middle = 0.5 * (low + high);
            ((step.at(target, middle) - wanted) * before > 0.0 ? low : high) = middle;
        }
        add(step.at(0.5 * (low + high)), step.from(), given, wanted, found);
    }
}

// The line is followed almost to the critical point. What is left of it is straight.
void QualityLine::collectBeforeCriticalPoint(const Unknowns& at, const Unknowns& direction, Variable given,
                                             double wanted, std::vector<Point>& found) const {
    const std::size_t target = indexOf(given);
    std::size_t widest = 0;
    for (std::size_t i = 0; i < z_.size(); ++i) {
        widest = std::abs(at[i]) > std::abs(at[widest]) ? i : widest;
    }
    const double length = -at[widest] / direction[widest];
    const double part = (wanted - at[target]) / direction[target];
    if (part >= 0.0 && part <= length) {
        Unknowns guess = at;
        for (std::size_t i = 0; i < guess.size(); ++i) {
            guess[i] += part * direction[i];
        }
        add(std::move(guess), at, given, wanted, found);
    }
}

std::vector<QualityLine::Point> QualityLine::follow(Variable given, double value) const {
    constexpr double nearlyCritical = 5e-3;
    const std::size_t n = z_.size();
    const double wanted = std::log(value);
    std::vector<Point> found;
    std::optional<Unknowns> at = start();
    if (!at) {
        return found;
    }
    // Pressure and temperature are scaled so that a step changes none of the unknowns by more than its share.
    const auto share = [n](std::size_t i) { return i == n ? 0.05 : 0.4; };
    double length = 1.0;                      // of the step, 1 = largest
    Unknowns direction = tangent(*at, n + 1); // towards higher pressures at first
    for (int step = 0; step < 2000 && !direction.empty(); ++step) {
        std::size_t fastest = 0;
        for (std::size_t i = 0; i < direction.size(); ++i) {
            if (std::abs(direction[i]) / share(i) > std::abs(direction[fastest]) / share(fastest)) {
                fastest = i;
            }
        }
        // Near the critical point all ln K go to zero together; smaller steps keep from jumping over it.
        double distance = share(fastest) * length / std::abs(direction[fastest]);
        for (std::size_t i = 0; i < n; ++i) {
            if (std::abs(direction[i]) > 0.0) {
                distance = std::min(distance, std::max(0.3 * spread(*at), 1e-3) / std::abs(direction[i]));
            }
        }
        Unknowns guess = *at;
        for (std::size_t i = 0; i < guess.size(); ++i) {
            guess[i] += distance * direction[i];
        }
        std::optional<Unknowns> next = solve(std::move(guess), fastest, 12);
        const bool jumped =
            next && std::inner_product(next->begin(), next->begin() + static_cast<std::ptrdiff_t>(n),
                                       at->begin(), 0.0) <= 0.0;
        if (!next || jumped) {
            length *= 0.5;
            if (length < 1e-3) {
                break;
            }
            continue;
        }
        length = std::min(1.0, 1.5 * length);
        Unknowns onward = tangent(*next, fastest);
        if (onward.empty()) {
            break;
        }
        for (double& slope : onward) {
            slope *= direction[fastest] < 0.0 ? -1.0 : 1.0;
        }
        collect(Step{*at, *next, direction, onward, fastest}, given, wanted, found);
        at = std::move(next);
        direction = std::move(onward);
        if (spread(*at) < nearlyCritical) {
            collectBeforeCriticalPoint(*at, direction, given, wanted, found);
            break;
        }
        if ((*at)[n + 1] > 25.0 || (*at)[n + 1] < 0.0) {
            break;
        }
    }
    return found;
}

} // namespace peng_robinson::eos
