#include "packages/peng_robinson/eos/bracketing.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {

double solveRising(const std::function<double(double)>& f, double low, double fLow, double high, double fHigh,
                   double tolerance) {
    double best = std::abs(fLow) < std::abs(fHigh) ? low : high;
    double fBest = std::min(std::abs(fLow), std::abs(fHigh));
    double weightLow = fLow, weightHigh = fHigh;
    int lastSide = 0;
    for (int i = 0; i < 200 && fBest > tolerance; ++i) {
        double at = low - weightLow * (high - low) / (weightHigh - weightLow);
        if (!(at > low && at < high) || i % 6 == 5) {
            at = 0.5 * (low + high);
        }
        if (at == low || at == high) {
            break;
        }
        const double value = f(at);
        if (std::abs(value) < fBest) {
            best = at;
            fBest = std::abs(value);
        }
        const int side = value < 0.0 ? -1 : 1;
        if (side < 0) {
            low = at;
            weightLow = value;
            weightHigh = lastSide == side ? 0.5 * weightHigh : weightHigh;
        } else {
            high = at;
            weightHigh = value;
            weightLow = lastSide == side ? 0.5 * weightLow : weightLow;
        }
        lastSide = side;
    }
    return best;
}

} // namespace peng_robinson::eos
