// Kernels that sample a picture between its pixels; all forms give the same results.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Fractions of a pixel that positions are told in.
constexpr int SAMPLE_PHASES = 256;
/// Pixels that contribute to a sample in each direction: two before the pixel of its position, and three
/// behind.
constexpr int SAMPLE_TAPS = 6;
constexpr int SAMPLE_BEFORE = 2;
/// Units of a prepared channel for a level of 8 bits, and of a sample's.
constexpr int PREPARED_LEVEL = 128;
constexpr int SAMPLED_LEVEL = 32;

/// Positions at which a window of a picture is sampled. The window holds prepared pixels, the channels of
/// each beside each other; all taps of all positions lie inside, and 8 values may be read behind the last.
struct TSampleRun {
    const int16_t* pWindow;
    ptrdiff_t nStride; ///< values from row to row
    const int32_t* pX; ///< in SAMPLE_PHASES of a pixel; 0 is the centre of the window's first
    const int32_t* pY;
    size_t nCount;
    int16_t* pDest; ///< the samples, channels beside each other
};

/// Positions in a line, a projective function of x: (u0 + u1 * x) / (w0 + w1 * x) across and with v down, for
/// x of `dFirst + (i + 0.5) * dStep`. No result may be negative.
struct TSampleLine {
    double dFirst, dStep;
    double u0, u1, v0, v1, w0, w1; ///< the divisor counts as LEAST_DIVISOR where it is less
    double dAcross, dDown;         ///< added to the quotients
    double dLow, dLowDown;         ///< less becomes this
    double dHigh, dHighDown;       ///< more becomes this
    int32_t* pX;                   ///< the results in SAMPLE_PHASES of a pixel, rounded
    int32_t* pY;
    size_t nCount;
    size_t iFirst = 0; ///< the first i
};
constexpr double LEAST_DIVISOR = 1e-9;

/// A row of samples that becomes pixels, which are limited to what pixels can be. One without alpha is 0 in
/// all planes.
struct TFinishRow {
    uint8_t* const* apPlanes; ///< one for each channel
    const int16_t* pSamples;
    const uint16_t* pCover; ///< the part of each pixel that is painted, 0 to 256; null for all of it
    size_t nCount;
};

/// The weights of the taps for each fraction, for 1, 2 and 4 channels beside each other.
struct TSampleWeights {
    static constexpr int ONE = 1 << 14; ///< the sum of a fraction's weights

    template <size_t CHANNELS>
    using TRows = std::array<std::array<int16_t, 8 * CHANNELS>, SAMPLE_PHASES>;
    alignas(64) TRows<1> one;
    alignas(64) TRows<2> two;
    alignas(64) TRows<4> four;

    template <size_t CHANNELS>
    const TRows<CHANNELS>& Get() const {
        if constexpr (CHANNELS == 1)
            return one;
        else if constexpr (CHANNELS == 2)
            return two;
        else
            return four;
    }
};
/// Those of the sinc function in a window of three of its lobes.
const TSampleWeights& SampleWeights();

struct TSampleKernels {
    void (*pLocate)(const TSampleLine& line);
    /// By channels: 1, 2 and 4. A product is rounded after each of the two directions:
    /// (value * weight + 2^14) >> 15.
    void (*pSample1)(const TSampleRun& run);
    void (*pSample2)(const TSampleRun& run);
    void (*pSample4)(const TSampleRun& run);
    void (*pFinish1)(const TFinishRow& row);
    void (*pFinish2)(const TFinishRow& row);
    void (*pFinish4)(const TFinishRow& row);
};

/// The definition.
const TSampleKernels& PlainSampleKernels();
/// The vector form, compiled for several instruction sets and selected at run time.
const TSampleKernels& VectorSampleKernels();
/// The form in use.
const TSampleKernels& SampleKernels();

/// Samples a picture of 1, 2 or 4 channels.
void SampleRow(const TSampleRun& run, size_t nChannels);
/// Prepares a row of straight-alpha pixels for sampling: channels by alpha, the alpha last. `apPlanes` has
/// `nChannels` byte planes of `nCount` pixels.
void PrepareRow(int16_t* pDest, const uint8_t* const* apPlanes, size_t nChannels, size_t nCount);
/// The opposite for samples.
void FinishRow(const TFinishRow& row, size_t nChannels);

/// Pixels on each side whose samples a reduction reads beside the pixel's own.
constexpr int REDUCE_REACH = 2;
/// Reduces a row of pixels that were sampled at `nFactor` (2 to 64) positions each to `nCount` pixels. The
/// samples begin REDUCE_REACH pixels before the first.
void ReduceAcross(int16_t* pDest, const int16_t* pSamples, int nFactor, size_t nChannels, size_t nCount);
/// The same for one row of `nCount` values from the rows below each other; the first is that of REDUCE_REACH
/// pixels above.
void ReduceDown(int16_t* pDest, const int16_t* pRows, int nFactor, size_t nCount);
