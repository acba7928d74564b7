#pragma once

#include "engine/kernels/Plain.h"

#include <emmintrin.h>

// A template of kernels, for instruction sets whose vectors hold two or four doubles.
//
// In a section, each sample waits for the previous sample: k*s2, +x, -c*s1, c*b, +s1 are a chain of five operations.
// Without one of these operations, or in another order, the result would be rounded differently. The plain kernel waits
// for this chain four times, once per band. But each band can start as soon as the previous band has finished its first
// samples. This kernel therefore runs the bands side by side, one band per lane of a vector, each band Lag samples
// after the previous one:
//
//     sample      0   4   8   12  16  20  ...  2032 2036 2040 2044
//
//     band 0      s   s   s   1   2   3   ...   .    .   N-1   N
//     band 1      s   s   1   2   3   .   ...   .   N-1   N    d
//     band 2      s   1   2   3   .   .   ...  N-1   N    d    d
//     band 3      1   2   3   .   .   .   ...   N    d    d    d
//
// Each mark is a group of Lag samples of one band. One round of the loop computes the groups with the same number: a
// slanting front that sweeps over the block. At the two ends of the block the front does not fit, and the plain section
// computes the triangles s (start-up) and d (drain). Between two bands the front always holds Lag samples, each rounded
// to float as in a block.
//
// With a lag of 1 the samples would be correct, too. But the path from the input of one band to the input of the next
// band (six operations, two conversions and a shuffle) would then be a second chain, longer than the first. A lag of
// four samples hides this path, and matches the vectors of four floats for input and output.

namespace eq {

// The code of this file is in an unnamed namespace, so that each instruction set has its own copy of every function.
// Otherwise the linker could use a function that was compiled for a new processor in the kernel for an old one. For the
// same reason, this file uses nothing from the standard library.
namespace {

constexpr int BlockSize = BlockKernel::BlockSize;
constexpr int Lag = 4;
/// The distance from the first band to the last band, in samples: Lag samples between each band and the next band.
constexpr int InFlight = (BandCount - 1) * Lag;

static_assert(BandCount == 4, "one lane per band");
static_assert(BlockSize % Lag == 0 && BlockSize > InFlight);

/// Four floats: one sample of each band, or four consecutive samples.
struct FloatQuad {
    __m128 lanes;

    static FloatQuad load(const float* source) noexcept { return {_mm_loadu_ps(source)}; }
    static FloatQuad all(float value) noexcept { return {_mm_set1_ps(value)}; }
    static FloatQuad of(float a, float b, float c, float d) noexcept { return {_mm_setr_ps(a, b, c, d)}; }
    void store(float* target) const noexcept { _mm_storeu_ps(target, lanes); }

    /// Returns the lanes moved up by one. The lowest lane of the result is the product of `sample` and the lowest lane
    /// of `gain`.
    [[nodiscard]] FloatQuad shiftedUp(FloatQuad gain, const float* sample) const noexcept {
        const __m128 rotated = _mm_shuffle_ps(lanes, lanes, _MM_SHUFFLE(2, 1, 0, 3));
        return {_mm_move_ss(rotated, _mm_mul_ss(_mm_load_ss(sample), gain.lanes))};
    }

    /// Returns the highest lane of each quad, in the order of the quads.
    static FloatQuad highest(const FloatQuad (&quads)[4]) noexcept {
        return {_mm_movehl_ps(_mm_unpackhi_ps(quads[2].lanes, quads[3].lanes),
                              _mm_unpackhi_ps(quads[0].lanes, quads[1].lanes))};
    }
};

/// The start-up and the drain of a run, which the plain section computes.
class Ends {
public:
    /// Computes the start-up.
    explicit Ends(const FilterRun& filterRun) noexcept : run(filterRun) {
        for (int i = 0; i < InFlight; ++i) line[i] = run.input[i];
        applyGain(line, static_cast<float>(run.design.outputGain), InFlight);
        for (int band = 0; band < BandCount - 1; ++band) runBand(line, InFlight - band * Lag, run, band);
    }

    /// Computes the drain.
    void drain() noexcept {
        for (int band = 1; band < BandCount; ++band) runBand(line + InFlight - band * Lag, band * Lag, run, band);
    }

    /// Returns Lag samples of the drain from `n` onward. `n` is one of the last InFlight samples of the block.
    [[nodiscard]] FloatQuad drained(int n) const noexcept {
        return FloatQuad::load(line + (n - (BlockSize - InFlight)));
    }

    const FilterRun& run;
    /// The samples between the bands: the next Lag inputs of band 3, then of band 2, then of band 1.
    float line[InFlight];
};

/// The sections of adjacent bands, one band per lane of a `Vector`.
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

    /// Runs each section over one sample, and returns the results. Each band has its own sample.
    [[gnu::always_inline]] Vector step(Vector x) noexcept {
        const Vector a = x + k * s2;
        const Vector b = a - c * s1;
        const Vector e = s2 - k * a; // the output of the allpass for x
        const Vector u = x - e;
        const Vector y = u * h + x;
        s2 = s1 + c * b;
        s1 = b;
        return y;
    }

private:
    [[gnu::always_inline]] static Vector loadState(const FilterRun& run, int firstBand, int index) noexcept {
        double values[Vector::Width];
        for (int i = 0; i < Vector::Width; ++i) values[i] = run.states[firstBand + i][index];
        return Vector::load(values);
    }

    [[gnu::always_inline]] static void storeState(const FilterRun& run, int firstBand, int index, Vector s) noexcept {
        double values[Vector::Width];
        s.store(values);
        for (int i = 0; i < Vector::Width; ++i) run.states[firstBand + i][index] = values[i];
    }

    Vector c, k, h;
    Vector s1, s2;
};

/// The front: four bands side by side. No code takes the address of a front, so the compiler can keep the front in
/// registers.
template <typename Vector>
class Wavefront {
public:
    /// Loads the states and the samples that the start-up computed.
    [[gnu::always_inline]] explicit Wavefront(const Ends& ends) noexcept
        : input(ends.run.input), gain(FloatQuad::all(static_cast<float>(ends.run.design.outputGain))) {
        for (int part = 0; part < Parts; ++part) sections[part].load(ends.run, part * Vector::Width);
        for (int i = 0; i < Lag; ++i)
            flight[i] = FloatQuad::of(ends.line[2 * Lag + i], ends.line[Lag + i], ends.line[i], 0.0F);
    }

    /// Runs every band over one sample. Band 0 processes sample `n` of the block, the sample `turn` (0 to Lag - 1) of
    /// its round.
    [[gnu::always_inline]] void step(int n, int turn) noexcept {
        const FloatQuad samples = flight[turn].shiftedUp(gain, input + n);
        Vector y[Parts];
#pragma GCC unroll 2
        for (int part = 0; part < Parts; ++part) y[part] = sections[part].step(Vector::widened(samples, part));
        flight[turn] = Vector::narrowed(y);
    }

    /// Returns the Lag samples that band 3 finished in the last round.
    [[gnu::always_inline]] [[nodiscard]] FloatQuad finished() const noexcept {
        return FloatQuad::highest(flight);
    }

    /// Stores the states in the run, and the samples between the bands in `ends`, where the drain completes them.
    [[gnu::always_inline]] void store(Ends& ends) const noexcept {
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
    FloatQuad flight[Lag]; ///< the last Lag outputs of each band, which are the next inputs of the following band
};

/// A crossfade over a block, four samples per call. All weights are exact in binary, so they equal the weights of the
/// plain kernel.
template <typename Vector>
class Crossfade {
public:
    Crossfade() noexcept {
        const double first[] = {0.5 / BlockSize, 1.5 / BlockSize, 2.5 / BlockSize, 3.5 / BlockSize};
        for (int part = 0; part < Parts; ++part) weights[part] = Vector::load(first + part * Vector::Width);
    }

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

private:
    static constexpr int Parts = 4 / Vector::Width;
    Vector weights[Parts];
};

/// Moves a front over the block. The caller passes the front by value, so that the compiler can keep it in registers.
template <typename Vector, typename Put>
void sweep(Wavefront<Vector> front, Ends& ends, Put& put) noexcept {
    for (int n = 0; n < BlockSize - InFlight; n += Lag) {
#pragma GCC unroll 4
        for (int turn = 0; turn < Lag; ++turn) front.step(n + InFlight + turn, turn);
        put(n, front.finished());
    }
    front.store(ends);
}

/// Filters a block. Each call of `put` receives four finished samples and the index of the first of them. The calls are
/// in the order of the samples.
template <typename Vector, typename Put>
void filter(const FilterRun& run, Put put) noexcept {
    Ends ends(run);
    sweep(Wavefront<Vector>(ends), ends, put);
    ends.drain();
    for (int n = BlockSize - InFlight; n < BlockSize; n += Lag) put(n, ends.drained(n));
}

/// Filters two blocks together. The chains of the two fronts are independent, so the processor computes one chain while
/// the other chain waits.
template <typename Vector, typename Put>
void filterTwo(const FilterRun& first, const FilterRun& second, Put put) noexcept {
    Ends firstEnds(first);
    Ends secondEnds(second);
    Wavefront<Vector> firstFront(firstEnds);
    Wavefront<Vector> secondFront(secondEnds);
    int n = 0;
    for (; n < BlockSize - InFlight; n += Lag) {
#pragma GCC unroll 4
        for (int turn = 0; turn < Lag; ++turn) {
            firstFront.step(n + InFlight + turn, turn);
            secondFront.step(n + InFlight + turn, turn);
        }
        put(n, firstFront.finished(), secondFront.finished());
    }
    firstFront.store(firstEnds);
    secondFront.store(secondEnds);
    firstEnds.drain();
    secondEnds.drain();
    for (; n < BlockSize; n += Lag) put(n, firstEnds.drained(n), secondEnds.drained(n));
}

template <typename Vector>
struct WavefrontKernel {
    static void filterBlock(const FilterRun& run, float* output) noexcept {
        filter<Vector>(run, [=](int n, FloatQuad y) { y.store(output + n); });
    }

    static void filterTwoBlocks(const FilterRun& first, float* firstOutput, const FilterRun& second,
                                float* secondOutput) noexcept {
        filterTwo<Vector>(first, second, [=](int n, FloatQuad y, FloatQuad z) {
            y.store(firstOutput + n);
            z.store(secondOutput + n);
        });
    }

    static void change(const FilterRun& before, const FilterRun& after, float* output) noexcept {
        filterTwo<Vector>(before, after,
                          [=, crossfade = Crossfade<Vector>()](int n, FloatQuad from, FloatQuad to) mutable {
                              crossfade(from, to).store(output + n);
                          });
    }

    template <Fade Direction>
    static void fade(const FilterRun& run, float* output) noexcept {
        filter<Vector>(run, [=, input = run.input, crossfade = Crossfade<Vector>()](int n, FloatQuad wet) mutable {
            const FloatQuad dry = FloatQuad::load(input + n);
            const FloatQuad blended = Direction == Fade::In ? crossfade(dry, wet) : crossfade(wet, dry);
            blended.store(output + n);
        });
    }

    static constexpr BlockKernel named(const char* name) noexcept {
        return {name, filterBlock, filterTwoBlocks, change, fade<Fade::In>, fade<Fade::Out>};
    }
};

} // namespace

} // namespace eq
