#include "engine/kernels/Kernels.h"

#include "engine/kernels/Wavefront.h"

namespace eq {

namespace {

struct Vector {
    static constexpr int Width = 2;
    __m128d lanes;

    static Vector all(double value) noexcept { return {_mm_set1_pd(value)}; }
    static Vector load(const double* source) noexcept { return {_mm_loadu_pd(source)}; }
    void store(double* target) const noexcept { _mm_storeu_pd(target, lanes); }

    static Vector widened(FloatQuad floats, int part) noexcept {
        return {_mm_cvtps_pd(part == 0 ? floats.lanes : _mm_movehl_ps(floats.lanes, floats.lanes))};
    }
    static FloatQuad narrowed(const Vector (&parts)[2]) noexcept {
        return {_mm_movelh_ps(_mm_cvtpd_ps(parts[0].lanes), _mm_cvtpd_ps(parts[1].lanes))};
    }

    friend Vector operator+(Vector a, Vector b) noexcept { return {_mm_add_pd(a.lanes, b.lanes)}; }
    friend Vector operator-(Vector a, Vector b) noexcept { return {_mm_sub_pd(a.lanes, b.lanes)}; }
    friend Vector operator*(Vector a, Vector b) noexcept { return {_mm_mul_pd(a.lanes, b.lanes)}; }
};

} // namespace

const BlockKernel Sse2Kernel = WavefrontKernel<Vector>::named("SSE2");

} // namespace eq
