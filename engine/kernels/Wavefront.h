#pragma once

#include "engine/kernels/Plain.h"

#include <emmintrin.h>

// A kernel for any instruction set that has vectors of four doubles, or can pretend to.
//
// Within a section each sample waits for the one before: k*s2, +x, -c*s1, c*b, +s1 are a chain of five operations, none
// of which can be left out or regrouped without another rounding. The plain kernel pays for that chain four times, once
// a band. But band 1 may begin as soon as band 0 has finished its first samples, and so on, so here the bands go over
// the block together, one lane of a vector each, every band Lag samples behind the one before it:
//
//     sample      0   4   8   12  16  20  ...  2032 2036 2040 2044
//
//     band 0      s   s   s   1   2   3   ...   .    .   N-1   N
//     band 1      s   s   1   2   3   .   ...   .   N-1   N    d
//     band 2      s   1   2   3   .   .   ...  N-1   N    d    d
//     band 3      1   2   3   .   .   .   ...   N    d    d    d
//
// Each mark stands for Lag samples of a band, and marks of one number are one round of the loop: a slanting front that
// sweeps over the block. What does not fit under the front at either end, the triangles s (start-up) and d (drain), is
// left to the plain section. Between two bands the front always has the same number of samples on their way: Lag of
// them, each rounded to float as if it lay in the block.
//
// A lag of 1 would be enough for correctness. But the way from one band's output to the next one's input (four
// operations, two conversions and a shuffle) would then become a loop of its own, longer than the chain. Four samples
// of lag hide it, and fit the vectors of four floats that go in and out.

// Everything is unnamed, so that each instruction set has its own copies: were they shared, the linker might give the
// kernel for an old processor a function compiled for a new one. For the same reason nothing of the standard library
// is used here.
namespace {

constexpr int BlockSize = BlockKernel::BlockSize;
constexpr int Lag = 4;
/// Samples on their way between the bands.
constexpr int InFlight = (BandCount - 1) * Lag;

static_assert(BandCount == 4, "a lane a band");
static_assert(BlockSize % Lag == 0 && BlockSize > InFlight);

/// Four floats: the bands' samples, or samples in their order. Every x86 processor of use has these.
struct FloatQuad {
    __m128 lanes;

    static FloatQuad load(const float* source) noexcept { return {_mm_loadu_ps(source)}; }
    static FloatQuad all(float value) noexcept { return {_mm_set1_ps(value)}; }
    static FloatQuad of(float a, float b, float c, float d) noexcept { return {_mm_setr_ps(a, b, c, d)}; }
    void store(float* target) const noexcept { _mm_storeu_ps(target, lanes); }

    /// Each lane moved up by one, with the product of the lowest of `gain` and `sample` in the place that is free.
    [[nodiscard]] FloatQuad shiftedUp(FloatQuad gain, const float* sample) const noexcept {
        const __m128 rotated = _mm_shuffle_ps(lanes, lanes, _MM_SHUFFLE(2, 1, 0, 3));
        return {_mm_move_ss(rotated, _mm_mul_ss(_mm_load_ss(sample), gain.lanes))};
    }

    /// The highest lane of each of four.
    static FloatQuad highest(const FloatQuad (&quads)[4]) noexcept {
        return {_mm_movehl_ps(_mm_unpackhi_ps(quads[2].lanes, quads[3].lanes),
                              _mm_unpackhi_ps(quads[0].lanes, quads[1].lanes))};
    }
};

/// The two ends of a run, where the front is not complete: what the plain section does there, before and after.
class Ends {
public:
    /// Brings the bands into their slanting line.
    explicit Ends(const FilterRun& filterRun) noexcept : run(filterRun) {
        for (int i = 0; i < InFlight; ++i) line[i] = run.input[i];
        applyGain(line, static_cast<float>(run.design.outputGain), InFlight);
        for (int band = 0; band < BandCount - 1; ++band) runBand(line, InFlight - band * Lag, run, band);
    }

    /// Brings the bands to the end of the block.
    void drain() noexcept {
        for (int band = 1; band < BandCount; ++band) runBand(line + InFlight - band * Lag, band * Lag, run, band);
    }

    /// What the drain has finished: Lag samples from `n` onward, which lies less than InFlight before the end.
    [[nodiscard]] FloatQuad drained(int n) const noexcept { return FloatQuad::load(line + n - (BlockSize - InFlight)); }

    const FilterRun& run;
    /// The samples on their way to band 3, then to band 2, then to band 1: Lag of each.
    float line[InFlight];
};

/// A section each of as many bands as there are doubles in a `Vector`.
template <typename Vector>
class Sections {
public:
    [[gnu::always_inline]] void load(const FilterRun& run, int firstBand) noexcept {
        c = Vector::load(run.design.centreCoefficient + firstBand);
        k = Vector::load(run.design.bandwidthCoefficient + firstBand);
        h = (Vector::load(run.design.bandGain + firstBand) - Vector::all(1.0)) * Vector::all(0.5);
        s1 = loadState(run, firstBand, 0);
        s2 = loadState(run, firstBand, 1);
    }

    [[gnu::always_inline]] void storeStates(const FilterRun& run, int firstBand) const noexcept {
        storeState(run, firstBand, 0, s1);
        storeState(run, firstBand, 1, s2);
    }

    /// A sample through each, all of them different ones.
    [[gnu::always_inline]] Vector step(Vector x) noexcept {
        const Vector a = x + k * s2;
        const Vector b = a - c * s1;
        const Vector e = s2 - k * a; // the allpass of x
        const Vector u = x - e;
        const Vector y = u * h + x;
        s2 = s1 + c * b;
        s1 = b;
        return y;
    }

private:
    [[gnu::always_inline]] static Vector loadState(const FilterRun& run, int firstBand, int index) noexcept {
        double values[Vector::Width];
        for (int i = 0; i < Vector::Width; ++i) values[i] = (run.bands[firstBand + i].*run.pair)[index];
        return Vector::load(values);
    }

    [[gnu::always_inline]] static void storeState(const FilterRun& run, int firstBand, int index, Vector s) noexcept {
        double values[Vector::Width];
        s.store(values);
        for (int i = 0; i < Vector::Width; ++i) (run.bands[firstBand + i].*run.pair)[index] = values[i];
    }

    Vector c, k, h;
    Vector s1, s2;
};

/// The front: four bands side by side. Nothing takes its address, so that it can live in registers.
template <typename Vector>
class Wavefront {
public:
    [[gnu::always_inline]] explicit Wavefront(const Ends& ends) noexcept
        : input(ends.run.input), gain(FloatQuad::all(static_cast<float>(ends.run.design.outputGain))) {
        for (int part = 0; part < Parts; ++part) sections[part].load(ends.run, part * Vector::Width);
        for (int i = 0; i < Lag; ++i)
            flight[i] = FloatQuad::of(ends.line[2 * Lag + i], ends.line[Lag + i], ends.line[i], 0.0F);
    }

    /// Moves every band on by a sample. Band 0 takes sample `n`, the `turn`th of a round.
    [[gnu::always_inline]] void step(int n, int turn) noexcept {
        const FloatQuad samples = flight[turn].shiftedUp(gain, input + n);
        Vector y[Parts];
#pragma GCC unroll 2
        for (int part = 0; part < Parts; ++part) y[part] = sections[part].step(Vector::widened(samples, part));
        flight[turn] = Vector::narrowed(y);
    }

    /// The Lag samples that band 3 has finished in the last round.
    [[gnu::always_inline]] [[nodiscard]] FloatQuad finished() const noexcept {
        return FloatQuad::highest(flight);
    }

    /// Leaves the end of the block to others.
    [[gnu::always_inline]] void handOver(Ends& ends) const noexcept {
        for (int part = 0; part < Parts; ++part) sections[part].storeStates(ends.run, part * Vector::Width);
        for (int i = 0; i < Lag; ++i) {
            float bands[BandCount];
            flight[i].store(bands);
            for (int band = 0; band < BandCount - 1; ++band) ends.line[InFlight - (band + 1) * Lag + i] = bands[band];
        }
    }

private:
    static constexpr int Parts = BandCount / Vector::Width;

    const float* input;
    FloatQuad gain;
    Sections<Vector> sections[Parts];
    FloatQuad flight[Lag]; ///< what each band has made of a sample, on its way to the next band
};

/// A crossfade over a block, four samples at a time. All weights are exact.
template <typename Vector>
class Crossfade {
public:
    [[gnu::always_inline]] FloatQuad operator()(FloatQuad from, FloatQuad to) noexcept {
        Vector blended[Parts];
#pragma GCC unroll 2
        for (int part = 0; part < Parts; ++part) {
            Vector& r = weights[part];
            blended[part] = (Vector::all(1.0) - r) * Vector::widened(from, part) + r * Vector::widened(to, part);
            r = r + Vector::all(4.0 / BlockSize);
        }
        return Vector::narrowed(blended);
    }

    Crossfade() noexcept {
        const double first[] = {0.5 / BlockSize, 1.5 / BlockSize, 2.5 / BlockSize, 3.5 / BlockSize};
        for (int part = 0; part < Parts; ++part) weights[part] = Vector::load(first + part * Vector::Width);
    }

private:
    static constexpr int Parts = 4 / Vector::Width;
    Vector weights[Parts];
};

/// Sweeps over a block with any number of runs at once, whose chains then wait side by side. `put` gets the finished
/// samples, four of each run at a time, in their order.
template <typename Vector, typename Put, typename... Run>
void sweep(Put put, Run... ends) noexcept {
    int n = 0;
    [&](auto... fronts) {
        for (; n < BlockSize - InFlight; n += Lag) {
#pragma GCC unroll 4
            for (int turn = 0; turn < Lag; ++turn) (fronts.step(n + InFlight + turn, turn), ...);
            put(n, fronts.finished()...);
        }
        (fronts.handOver(ends), ...);
    }(Wavefront<Vector>(ends)...);
    (ends.drain(), ...);
    for (; n < BlockSize; n += Lag) put(n, ends.drained(n)...);
}

template <typename Vector>
struct WavefrontKernel {
    static void filter(const FilterRun& run, float* output) noexcept {
        sweep<Vector>([=](int n, FloatQuad y) { y.store(output + n); }, Ends(run));
    }

    static void filterTwo(const FilterRun& first, float* firstOutput, const FilterRun& second,
                          float* secondOutput) noexcept {
        const auto put = [=](int n, FloatQuad y, FloatQuad z) {
            y.store(firstOutput + n);
            z.store(secondOutput + n);
        };
        sweep<Vector>(put, Ends(first), Ends(second));
    }

    static void change(const FilterRun& before, const FilterRun& after, float* output) noexcept {
        const auto put = [=, blend = Crossfade<Vector>()](int n, FloatQuad from, FloatQuad to) mutable {
            blend(from, to).store(output + n);
        };
        sweep<Vector>(put, Ends(before), Ends(after));
    }

    static void fadeIn(const FilterRun& run, float* output) noexcept {
        const auto put = [=, dry = run.input, blend = Crossfade<Vector>()](int n, FloatQuad wet) mutable {
            blend(FloatQuad::load(dry + n), wet).store(output + n);
        };
        sweep<Vector>(put, Ends(run));
    }

    static void fadeOut(const FilterRun& run, float* output) noexcept {
        const auto put = [=, dry = run.input, blend = Crossfade<Vector>()](int n, FloatQuad wet) mutable {
            blend(wet, FloatQuad::load(dry + n)).store(output + n);
        };
        sweep<Vector>(put, Ends(run));
    }

    static constexpr BlockKernel named(const char* name) noexcept {
        return {name, filter, filterTwo, change, fadeIn, fadeOut};
    }
};

} // namespace
