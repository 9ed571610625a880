// Pictures of 16 million pixels resampled beside OpenCV, Qt and Cairo; one thread. Ours works as layers do:
// tile by tile, after the samples that a tile reads were copied from the tiles of the source. Straight alpha;
// Cairo's and one of Qt's pictures are premultiplied, and OpenCV does not know alpha. Argument 0 is a noisy
// picture with a soft outline, 1 is hatched lines.
#include "core/RasterBuffer/RasterBlockBuffer.h"
#include "core/RasterKernel/RescaleKernel.h"

#include <QImage>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr int32_t SIDE = DEFAULT_BLOCKSIZE.cx;
constexpr size_t PLANE = size_t{SIDE} * SIDE;
enum { CHANNELS = 4 };

// The planes of all tiles of a picture.
class CTiles {
public:
    explicit CTiles(int32_t nSide) : m_nSide(nSide), m_nAcross((nSide + SIDE - 1) / SIDE) {
        m_vBytes.resize(static_cast<size_t>(m_nAcross) * static_cast<size_t>(m_nAcross) * CHANNELS * PLANE);
    }
    int32_t GetSide() const { return m_nSide; }
    uint8_t* GetPlane(int32_t x, int32_t y, size_t nChannel) {
        return m_vBytes.data() +
               ((static_cast<size_t>(y) * static_cast<size_t>(m_nAcross) + static_cast<size_t>(x)) *
                    CHANNELS +
                nChannel) *
                   PLANE;
    }
    uint8_t& At(int32_t x, int32_t y, size_t nChannel) {
        return GetPlane(x / SIDE, y / SIDE, nChannel)[y % SIDE * SIDE + x % SIDE];
    }
    // The rectangle of a tile.
    CRect RectOf(int32_t x, int32_t y) const {
        return CRect({x * SIDE, y * SIDE}, {SIDE, SIDE}).Intersect({0, 0, m_nSide, m_nSide});
    }
    template <class Function>
    void ForEach(const Function& fnTile) const {
        for (int32_t y = 0; y < m_nAcross; ++y)
            for (int32_t x = 0; x < m_nAcross; ++x) fnTile(x, y);
    }
    // Copies the rows of a rectangle without padding.
    void Copy(const CRect& rc, std::array<std::vector<uint8_t>, CHANNELS>& planes) {
        for (size_t n = 0; n < CHANNELS; ++n) {
            planes[n].resize(static_cast<size_t>(rc.Width()) * static_cast<size_t>(rc.Height()));
            for (int32_t y = rc.top / SIDE; y * SIDE < rc.bottom; ++y)
                for (int32_t x = rc.left / SIDE; x * SIDE < rc.right; ++x) {
                    const CRect rcPart = RectOf(x, y).Intersect(rc);
                    const auto nWidth = static_cast<size_t>(rcPart.Width());
                    const uint8_t* pFrom = &At(rcPart.left, rcPart.top, n);
                    uint8_t* pTo = planes[n].data() + ptrdiff_t{rcPart.top - rc.top} * rc.Width() +
                                   (rcPart.left - rc.left);
                    for (int32_t v = rcPart.top; v < rcPart.bottom; ++v, pFrom += SIDE, pTo += rc.Width())
                        // A constant size makes this a few instructions.
                        nWidth == SIDE ? std::memcpy(pTo, pFrom, SIDE) : std::memcpy(pTo, pFrom, nWidth);
                }
        }
    }

private:
    int32_t m_nSide;
    int32_t m_nAcross;
    std::vector<uint8_t> m_vBytes;
};

// A noisy gradient whose outline is soft, or lines of two colours every 23 pixels.
std::array<uint8_t, CHANNELS> PixelAt(int32_t x, int32_t y, int32_t nSide, bool bLines, uint32_t uNoise) {
    const auto byte = [](double d) { return static_cast<uint8_t>(std::clamp(d, 0.0, 255.0)); };
    if (bLines) {
        const double dDistance = std::abs(std::remainder(x * 0.8 + y * 0.6, 23.0));
        const uint8_t uAlpha = byte((2.2 - dDistance) * 255);
        return {uAlpha, 0, uint8_t(uAlpha ? y / 8 : 0), uAlpha};
    }
    const auto noise = [&](int n) { return static_cast<double>(uNoise >> n * 8 & 31); };
    const double dOut = std::hypot(x - nSide / 2, y - nSide / 2) / (nSide / 2);
    return {byte(x * 224.0 / nSide + noise(0)), byte(y * 224.0 / nSide + noise(1)),
            byte((x + y) * 112.0 / nSide + noise(2)), byte((1.2 - dOut) * 900 + noise(3) - 16)};
}

template <class Function>
void ForEachPixel(int32_t nSide, bool bLines, const Function& fnPixel) {
    std::mt19937 random(1);
    for (int32_t y = 0; y < nSide; ++y)
        for (int32_t x = 0; x < nSide; ++x)
            fnPixel(x, y, PixelAt(x, y, nSide, bLines, static_cast<uint32_t>(random())));
}

void Ours(benchmark::State& state, int32_t nFrom, int32_t nTo, ERescaleMode mode) {
    CTiles from(nFrom), to(nTo);
    ForEachPixel(nFrom, state.range(0) != 0, [&](int32_t x, int32_t y, const auto& pixel) {
        for (size_t n = 0; n < CHANNELS; ++n) from.At(x, y, n) = pixel[n];
    });
    std::array<std::vector<uint8_t>, CHANNELS> planes;
    for (auto _ : state) {
        const CRescaleMap map({nFrom, nFrom}, {nTo, nTo}, mode);
        // A tile of the source that becomes whole pixels of the destination is read in place, as one part.
        const int32_t nPart = nFrom % nTo == 0 && SIDE % (nFrom / nTo) == 0 ? SIDE / (nFrom / nTo) : SIDE;
        to.ForEach([&](int32_t x, int32_t y) {
            const CRect rcTile = to.RectOf(x, y);
            for (int32_t nTop = rcTile.top; nTop < rcTile.bottom; nTop += nPart)
                for (int32_t nLeft = rcTile.left; nLeft < rcTile.right; nLeft += nPart) {
                    const CRect rcTo = CRect(nLeft, nTop, nLeft + nPart, nTop + nPart).Intersect(rcTile);
                    CRect rcFrom = map.GetSource(rcTo);
                    const CRect rcOne({rcFrom.left / SIDE * SIDE, rcFrom.top / SIDE * SIDE},
                                      DEFAULT_BLOCKSIZE);
                    const bool bOne = rcOne.Intersect(rcFrom) == rcFrom;
                    if (!bOne) from.Copy(rcFrom, planes);
                    uint8_t* apTo[CHANNELS];
                    const uint8_t* apFrom[CHANNELS];
                    for (size_t n = 0; n < CHANNELS; ++n) {
                        apTo[n] = &to.At(rcTo.left, rcTo.top, n);
                        apFrom[n] = bOne ? &from.At(rcOne.left, rcOne.top, n) : planes[n].data();
                    }
                    map.Render(apTo, SIDE, rcTo, apFrom, bOne ? rcOne : rcFrom, CHANNELS);
                }
        });
    }
}

cv::Mat Packed(int32_t nSide, bool bLines, bool bPremultiplied) {
    cv::Mat mat(nSide, nSide, CV_8UC4);
    ForEachPixel(nSide, bLines, [&](int32_t x, int32_t y, const auto& pixel) {
        uint8_t* p = mat.ptr(y) + ptrdiff_t{x} * CHANNELS;
        for (size_t n = 0; n < 3; ++n)
            p[2 - n] = bPremultiplied ? static_cast<uint8_t>(pixel[n] * pixel[3] / 255) : pixel[n];
        p[3] = pixel[3];
    });
    return mat;
}

void OpenCv(benchmark::State& state, int32_t nFrom, int32_t nTo, int nFlag) {
    cv::setNumThreads(1);
    const cv::Mat from = Packed(nFrom, state.range(0) != 0, false);
    cv::Mat to;
    for (auto _ : state) cv::resize(from, to, {nTo, nTo}, 0, 0, nFlag);
}

void QtImage(benchmark::State& state, int32_t nFrom, int32_t nTo, bool bPremultiplied) {
    const cv::Mat from = Packed(nFrom, state.range(0) != 0, bPremultiplied);
    const QImage image(from.data, nFrom, nFrom,
                       bPremultiplied ? QImage::Format_ARGB32_Premultiplied : QImage::Format_ARGB32);
    for (auto _ : state)
        benchmark::DoNotOptimize(image.scaled(nTo, nTo, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void Cairo(benchmark::State& state, int32_t nFrom, int32_t nTo, cairo_filter_t filter) {
    const cv::Mat from = Packed(nFrom, state.range(0) != 0, true);
    cairo_surface_t* pFrom =
        cairo_image_surface_create_for_data(from.data, CAIRO_FORMAT_ARGB32, nFrom, nFrom, nFrom * CHANNELS);
    cairo_surface_t* pTo = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, nTo, nTo);
    const double dScale = static_cast<double>(nTo) / nFrom;
    for (auto _ : state) {
        cairo_t* pCairo = cairo_create(pTo);
        cairo_scale(pCairo, dScale, dScale);
        cairo_set_source_surface(pCairo, pFrom, 0, 0);
        cairo_pattern_set_filter(cairo_get_source(pCairo), filter);
        cairo_set_operator(pCairo, CAIRO_OPERATOR_SOURCE);
        cairo_paint(pCairo);
        cairo_destroy(pCairo);
    }
    cairo_surface_destroy(pTo);
    cairo_surface_destroy(pFrom);
}

} // namespace

#define COMPARED(Function, name, ...)                                                                        \
    BENCHMARK_CAPTURE(Function, name, __VA_ARGS__)                                                           \
        ->Arg(0)                                                                                             \
        ->Arg(1)                                                                                             \
        ->MeasureProcessCPUTime()                                                                            \
        ->Unit(benchmark::kMillisecond)

COMPARED(Ours, half, 4000, 2000, ERescaleMode::Bilinear);
COMPARED(OpenCv, half, 4000, 2000, cv::INTER_AREA);
COMPARED(QtImage, half, 4000, 2000, false);
COMPARED(QtImage, half premultiplied, 4000, 2000, true);
COMPARED(Cairo, half, 4000, 2000, CAIRO_FILTER_BILINEAR); // at this ratio the mean of four
COMPARED(Ours, area, 4000, 1800, ERescaleMode::Bilinear);
COMPARED(OpenCv, area, 4000, 1800, cv::INTER_AREA);
COMPARED(QtImage, area, 4000, 1800, false);
COMPARED(QtImage, area premultiplied, 4000, 1800, true);
COMPARED(Cairo, area, 4000, 1800, CAIRO_FILTER_GOOD);
COMPARED(Ours, bilinear, 1800, 4000, ERescaleMode::Bilinear);
COMPARED(OpenCv, bilinear, 1800, 4000, cv::INTER_LINEAR);
COMPARED(QtImage, bilinear, 1800, 4000, false);
COMPARED(QtImage, bilinear premultiplied, 1800, 4000, true);
COMPARED(Cairo, bilinear, 1800, 4000, CAIRO_FILTER_BILINEAR);
COMPARED(Ours, bicubic, 1800, 4000, ERescaleMode::Bicubic);
COMPARED(OpenCv, bicubic, 1800, 4000, cv::INTER_CUBIC);
COMPARED(Cairo, bicubic, 1800, 4000, CAIRO_FILTER_BEST);
COMPARED(Ours, nearest, 1800, 4000, ERescaleMode::Nearest);
COMPARED(OpenCv, nearest, 1800, 4000, cv::INTER_NEAREST);

BENCHMARK_MAIN();
