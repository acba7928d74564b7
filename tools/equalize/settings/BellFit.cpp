#include "tools/equalize/settings/BellFit.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <type_traits>

#include <nlopt.h>

namespace eq {
namespace {

/// The fit compares the responses at `FitPoints` frequencies, which is 48 per octave. The search for the largest
/// deviation uses more frequencies.
constexpr int FitPoints = 480;
constexpr int CheckPoints = 4000;

/// The variables of the solver. Each bell has three: the logarithm of the frequency, the gain, and the logarithm of q.
/// The offset is the last variable. The logarithms have base 2. All ranges then have about the same size, which the
/// solver needs.
constexpr std::size_t PerBell = 3;
using Variables = std::vector<double>;

struct Point {
    double frequency;
    double cosine;
    double sine;
    double target;
};

std::vector<Point> pointsOf(const TargetResponse& target, int sampleRate, int count) {
    const auto [lowest, highest] = fitRange(sampleRate);
    std::vector<Point> points;
    for (int i = 0; i < count; ++i) {
        const double frequency = lowest * std::pow(highest / lowest, i / (count - 1.0));
        const double angle = angleOf(frequency, sampleRate);
        points.push_back({frequency, std::cos(angle), std::sin(angle), target.decibelsAt(frequency)});
    }
    return points;
}

/// The response of one bell and its derivatives. Ω is the angle of a point, w is the angle of the bell, and G is its
/// gain as a factor. With X = cos Ω - cos w, S = sin Ω and t = tan(w / 2q),
///
///     |H|² = (X² + n²S²) / (X² + d²S²),   n = Gt, d = t for a boost;   n = t, d = t/G for a cut.
class BellCurve {
public:
    BellCurve(const double* variables, int sampleRate)
        : m_angle(angleOf(std::exp2(variables[0]), sampleRate)), m_gain(std::pow(10.0, variables[1] / 20.0)) {
        const double q = std::exp2(variables[2]);
        const double t = std::tan(m_angle / 2.0 / q);
        // The derivative of t, per octave of the frequency.
        const double slope = (1.0 + t * t) * m_angle / (2.0 * q) * std::numbers::ln2;
        m_cosine = std::cos(m_angle);
        m_angleSlope = std::sin(m_angle) * m_angle * std::numbers::ln2;
        const bool isBoost = m_gain > 1.0;
        m_numerator = isBoost ? m_gain * t : t;
        m_denominator = isBoost ? t : t / m_gain;
        const double perDecibel = std::numbers::ln10 / 20.0;
        m_numeratorPerGain = isBoost ? m_numerator * perDecibel : 0.0;
        m_denominatorPerGain = isBoost ? 0.0 : -m_denominator * perDecibel;
        m_relativeSlope = slope / t;
    }

    /// Returns the gain in dB at a point. Writes the derivatives with respect to the three variables.
    double at(const Point& point, double (&derivatives)[PerBell]) const {
        constexpr double Scale = 10.0 / std::numbers::ln10;
        const double x = point.cosine - m_cosine;
        const double s2 = point.sine * point.sine;
        const double above = x * x + m_numerator * m_numerator * s2;
        const double below = x * x + m_denominator * m_denominator * s2;
        const double byNumerator = Scale * 2.0 * m_numerator * s2 / above;
        const double byDenominator = -Scale * 2.0 * m_denominator * s2 / below;
        // `m_numerator` and `m_denominator` are proportional to t.
        const double byWidth = (byNumerator * m_numerator + byDenominator * m_denominator) * m_relativeSlope;
        const double byCentre = Scale * 2.0 * x * (1.0 / above - 1.0 / below);
        derivatives[0] = byCentre * m_angleSlope + byWidth;
        derivatives[1] = byNumerator * m_numeratorPerGain + byDenominator * m_denominatorPerGain;
        derivatives[2] = -byWidth;
        return Scale * std::log(above / below);
    }

private:
    double m_angle;
    double m_gain;
    double m_cosine;
    double m_angleSlope;
    double m_numerator;
    double m_denominator;
    double m_numeratorPerGain;
    double m_denominatorPerGain;
    double m_relativeSlope;
};

class Fitter {
public:
    Fitter(const TargetResponse& target, int sampleRate, ValueRange offsets)
        : m_sampleRate(sampleRate), m_points(pointsOf(target, sampleRate, FitPoints)), m_offsets(offsets) {
        const ValueRange reach = bellFrequencyRange(sampleRate);
        m_ranges[0] = {std::log2(reach.lowest), std::log2(reach.highest)};
        m_ranges[1] = GainRange;
        m_ranges[2] = {std::log2(QRange.lowest), std::log2(QRange.highest)};
    }

    /// Returns the best variables found. Adds bells one by one at the largest deviation. Then starts the solver again
    /// from evenly spaced bells, and from random changes of the best bells.
    Variables fit(int mostBells) {
        Variables best{startOffset()};
        while (bellsIn(best) < mostBells && largestDeviation(best) > Enough) {
            addBell(best);
            improve(best, bellsIn(best) < mostBells ? EvaluationsOfStage : MostEvaluations);
        }
        double error = errorOf(best);
        const auto tryFrom = [&](Variables start) {
            const double found = improve(start, MostEvaluations);
            if (found >= error) return;
            error = found;
            best = std::move(start);
        };
        if (largestDeviation(best) > Enough) tryFrom(evenBells(mostBells));
        const int rounds = std::min(MostRounds, BellRounds / mostBells);
        for (int round = 0; round < rounds && largestDeviation(best) > Enough; ++round)
            tryFrom(round % 2 == 0 ? shaken(best) : moved(best));
        return best;
    }

    [[nodiscard]] BellFit result(const Variables& variables, const TargetResponse& target) const {
        BellFit fit;
        for (int bell = 0; bell < bellsIn(variables); ++bell) {
            const double* const own = variables.data() + static_cast<std::size_t>(bell) * PerBell;
            fit.bells.push_back(rounded({std::exp2(own[0]), own[1], std::exp2(own[2])}));
        }
        std::ranges::sort(fit.bells, {}, &Bell::frequency);
        fit.offset = variables.back();
        for (const Point& point : pointsOf(target, m_sampleRate, CheckPoints)) {
            double sum = fit.offset;
            for (const Bell& bell : fit.bells) sum += decibelsOf(bell, point.frequency, m_sampleRate);
            const double deviation = std::fabs(sum - point.target);
            if (deviation < fit.deviation) continue;
            fit.deviation = deviation;
            fit.deviationFrequency = point.frequency;
        }
        return fit;
    }

private:
    static constexpr double Enough = 0.01; ///< dB; the fit ends at a smaller deviation
    static constexpr int EvaluationsOfStage = 80;
    static constexpr int MostEvaluations = 400;
    static constexpr int MostRounds = 30;
    static constexpr int BellRounds = 240; ///< limits the rounds with many bells, which take longer and improve less

    /// Returns a bell with rounded numbers, which a user can read and write. The rounding is inaudible.
    [[nodiscard]] Bell rounded(const Bell& bell) const {
        const auto [lowest, highest] = bellFrequencyRange(m_sampleRate);
        const auto to = [](double value, double step) { return std::round(value / step) * step; };
        return {std::clamp(to(bell.frequency, 0.01), lowest, highest), to(bell.gain, 0.001),
                std::clamp(to(bell.q, 0.0001), QRange.lowest, QRange.highest)};
    }

    static int bellsIn(const Variables& variables) { return static_cast<int>(variables.size() / PerBell); }

    /// Returns the first value of the offset: the mean of the target, limited to the permitted offsets.
    [[nodiscard]] double startOffset() const {
        double sum = 0.0;
        for (const Point& point : m_points) sum += point.target;
        return std::clamp(sum / FitPoints, m_offsets.lowest, m_offsets.highest);
    }

    /// Returns the mean of the squared deviations, and its gradient unless `gradient` is null.
    [[nodiscard]] double evaluate(const double* variables, std::size_t count, double* gradient) const {
        std::vector<BellCurve> curves;
        for (std::size_t i = 0; i + PerBell <= count; i += PerBell) curves.emplace_back(variables + i, m_sampleRate);
        if (gradient != nullptr) std::fill_n(gradient, count, 0.0);
        std::vector<double> derivatives(count, 1.0);
        double error = 0.0;
        for (const Point& point : m_points) {
            double deviation = variables[count - 1] - point.target;
            for (std::size_t bell = 0; bell < curves.size(); ++bell) {
                double own[PerBell];
                deviation += curves[bell].at(point, own);
                std::copy_n(own, PerBell, derivatives.begin() + static_cast<std::ptrdiff_t>(bell * PerBell));
            }
            error += deviation * deviation / FitPoints;
            if (gradient == nullptr) continue;
            for (std::size_t i = 0; i < count; ++i) gradient[i] += 2.0 * deviation * derivatives[i] / FitPoints;
        }
        return error;
    }

    [[nodiscard]] double errorOf(const Variables& variables) const {
        return evaluate(variables.data(), variables.size(), nullptr);
    }

    [[nodiscard]] std::vector<double> deviationsOf(const Variables& variables) const {
        std::vector<BellCurve> curves;
        for (std::size_t i = 0; i + PerBell <= variables.size(); i += PerBell)
            curves.emplace_back(variables.data() + i, m_sampleRate);
        std::vector<double> deviations;
        for (const Point& point : m_points) {
            double deviation = variables.back() - point.target;
            double ignored[PerBell];
            for (const BellCurve& curve : curves) deviation += curve.at(point, ignored);
            deviations.push_back(deviation);
        }
        return deviations;
    }

    [[nodiscard]] double largestDeviation(const Variables& variables) const {
        double largest = 0.0;
        for (const double deviation : deviationsOf(variables)) largest = std::max(largest, std::fabs(deviation));
        return largest;
    }

    /// Adds a bell at the largest deviation. The bell is as wide as the range with more than half of this deviation.
    void addBell(Variables& variables) const {
        const std::vector<double> deviations = deviationsOf(variables);
        const auto size = [](double deviation) { return std::fabs(deviation); };
        const auto top = std::ranges::max_element(deviations, {}, size);
        const auto isPart = [&](double deviation) { return deviation / *top > 0.5; };
        const auto right = std::find_if_not(top, deviations.end(), isPart);
        const auto left = std::find_if_not(std::make_reverse_iterator(top), deviations.rend(), isPart).base();
        const double octavesPerPoint = std::log2(m_points[1].frequency / m_points[0].frequency);
        const double width = octavesPerPoint * static_cast<double>(right - left);
        const auto place =
            static_cast<std::size_t>(left - deviations.begin()) + static_cast<std::size_t>(right - left) / 2;
        const double own[PerBell] = {std::log2(m_points[std::min(place, m_points.size() - 1)].frequency), -*top,
                                     -std::log2(width)};
        for (std::size_t i = 0; i < PerBell; ++i)
            variables.insert(variables.end() - 1, std::clamp(own[i], m_ranges[i].lowest, m_ranges[i].highest));
    }

    [[nodiscard]] Variables evenBells(int count) const {
        const double offset = startOffset();
        Variables variables;
        for (int bell = 0; bell < count; ++bell) {
            const double part = (bell + 0.5) / count;
            const Point& point = m_points[static_cast<std::size_t>(part * FitPoints)];
            const double own[PerBell] = {std::log2(point.frequency), point.target - offset, 0.5};
            for (std::size_t i = 0; i < PerBell; ++i)
                variables.push_back(std::clamp(own[i], m_ranges[i].lowest, m_ranges[i].highest));
        }
        variables.push_back(offset);
        return variables;
    }

    /// Returns the bells with random changes of all frequencies, gains and q values.
    Variables shaken(Variables variables) {
        constexpr double Distances[PerBell] = {1.0, 3.0, 0.8};
        for (std::size_t i = 0; i + 1 < variables.size(); ++i)
            variables[i] = std::clamp(variables[i] + Distances[i % PerBell] * random(), m_ranges[i % PerBell].lowest,
                                      m_ranges[i % PerBell].highest);
        return variables;
    }

    /// Moves one bell, chosen at random, to the largest deviation of the others. Returns all bells.
    Variables moved(Variables variables) {
        const double place = (random() + 1.0) / 2.0 * bellsIn(variables);
        const auto bell = static_cast<std::ptrdiff_t>(std::min(place, bellsIn(variables) - 1.0));
        const auto first = variables.begin() + bell * static_cast<std::ptrdiff_t>(PerBell);
        variables.erase(first, first + static_cast<std::ptrdiff_t>(PerBell));
        addBell(variables);
        return variables;
    }

    /// Returns a number from -1 to 1, the same on each machine.
    double random() { return static_cast<double>(m_random()) / static_cast<double>(std::mt19937::max()) * 2.0 - 1.0; }

    static double objective(unsigned count, const double* variables, double* gradient, void* fitter) {
        return static_cast<const Fitter*>(fitter)->evaluate(variables, count, gradient);
    }

    /// Runs the solver, starting with `variables`. Writes the best variables to `variables`, and returns their error.
    double improve(Variables& variables, int evaluations) {
        Variables lowest;
        Variables highest;
        for (std::size_t i = 0; i + 1 < variables.size(); ++i) {
            lowest.push_back(m_ranges[i % PerBell].lowest);
            highest.push_back(m_ranges[i % PerBell].highest);
        }
        lowest.push_back(m_offsets.lowest);
        highest.push_back(m_offsets.highest);
        // The method is from D. Kraft, "A software package for sequential quadratic programming", 1988. Some other
        // methods of the library lack a permissive licence.
        const std::unique_ptr<std::remove_pointer_t<nlopt_opt>, void (*)(nlopt_opt)> solver(
            nlopt_create(NLOPT_LD_SLSQP, static_cast<unsigned>(variables.size())), nlopt_destroy);
        nlopt_set_lower_bounds(solver.get(), lowest.data());
        nlopt_set_upper_bounds(solver.get(), highest.data());
        nlopt_set_min_objective(solver.get(), objective, this);
        nlopt_set_maxeval(solver.get(), evaluations);
        nlopt_set_ftol_rel(solver.get(), 1e-7);
        nlopt_set_ftol_abs(solver.get(), 1e-9);
        Variables found = variables;
        double error = 0.0;
        // If the solver fails, for instance because of rounding, `found` contains the best variables so far.
        static_cast<void>(nlopt_optimize(solver.get(), found.data(), &error));
        const bool isFinite = std::ranges::all_of(found, [](double value) { return std::isfinite(value); });
        const double before = errorOf(variables);
        if (!isFinite || !(errorOf(found) < before)) return before;
        variables = std::move(found);
        return errorOf(variables);
    }

    int m_sampleRate;
    std::vector<Point> m_points;
    ValueRange m_offsets;
    ValueRange m_ranges[PerBell];
    std::mt19937 m_random{1};
};

} // namespace

ValueRange fitRange(int sampleRate) {
    const double highest = std::min(FrequencyRange.highest, bellFrequencyRange(sampleRate).highest);
    // At very low rates, 20 Hz is near the highest frequency or above it.
    return {std::min(FrequencyRange.lowest, highest / 10.0), highest};
}

BellFit fitBells(const TargetResponse& target, int sampleRate, int mostBells, ValueRange offsets) {
    Fitter fitter(target, sampleRate, offsets);
    return fitter.result(fitter.fit(mostBells), target);
}

} // namespace eq
