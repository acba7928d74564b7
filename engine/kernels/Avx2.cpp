#include "engine/kernels/Kernels.h"

#include "engine/kernels/Wavefront.h"

#include <immintrin.h>

namespace eq {

namespace {

struct Vector {
    static constexpr int Width = 4;
    __m256d lanes;

    static Vector all(double value) noexcept { return {_mm256_set1_pd(value)}; }
    static Vector load(const double* source) noexcept { return {_mm256_loadu_pd(source)}; }
    void store(double* target) const noexcept { _mm256_storeu_pd(target, lanes); }

    static Vector widened(FloatQuad floats, int) noexcept { return {_mm256_cvtps_pd(floats.lanes)}; }
    static FloatQuad narrowed(const Vector (&parts)[1]) noexcept { return {_mm256_cvtpd_ps(parts[0].lanes)}; }

    friend Vector operator+(Vector a, Vector b) noexcept { return {_mm256_add_pd(a.lanes, b.lanes)}; }
    friend Vector operator-(Vector a, Vector b) noexcept { return {_mm256_sub_pd(a.lanes, b.lanes)}; }
    friend Vector operator*(Vector a, Vector b) noexcept { return {_mm256_mul_pd(a.lanes, b.lanes)}; }
};

} // namespace

const BlockKernel Avx2Kernel = WavefrontKernel<Vector>::named("AVX2");

} // namespace eq
