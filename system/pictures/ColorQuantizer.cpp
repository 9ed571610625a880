// Median cut (Heckbert 1982) over a histogram of 5 bits a channel, then error diffusion with the weights of
// Floyd and Steinberg, rows in alternating direction.
#include "system/pictures/ColorQuantizer.h"

#include "core/Platform/Progress.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <numeric>
#include <unordered_map>
#include <vector>

namespace {

constexpr int MAX_COLORS = 256;
constexpr QRgb OPAQUE = 0xFF000000u;

QImage MakeIndexed(const QImage& image, const QList<QRgb>& lstColors) {
    QImage imageIndexed(image.size(), QImage::Format_Indexed8);
    if (imageIndexed.isNull()) throw std::bad_alloc();
    imageIndexed.setColorTable(lstColors);
    return imageIndexed;
}

const QRgb* Row(const QImage& image, int y) { return reinterpret_cast<const QRgb*>(image.constScanLine(y)); }

// Null when there are more than 256 colours.
QImage KeepColors(const QImage& image) {
    std::unordered_map<QRgb, uint8_t> mapIndex;
    QList<QRgb> lstColors;
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* pRow = Row(image, y);
        for (int x = 0; x < image.width(); ++x) {
            if ((x > 0 && pRow[x] == pRow[x - 1]) || mapIndex.contains(pRow[x] | OPAQUE)) continue;
            if (lstColors.size() == MAX_COLORS) return {};
            mapIndex[pRow[x] | OPAQUE] = static_cast<uint8_t>(lstColors.size());
            lstColors.append(pRow[x] | OPAQUE);
        }
    }
    QImage imageIndexed = MakeIndexed(image, lstColors);
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* pRow = Row(image, y);
        uint8_t* pOut = imageIndexed.scanLine(y);
        for (int x = 0; x < image.width(); ++x)
            pOut[x] = x > 0 && pRow[x] == pRow[x - 1] ? pOut[x - 1] : mapIndex[pRow[x] | OPAQUE];
    }
    return imageIndexed;
}

using TChannels = std::array<int, 3>;

TChannels ChannelsOf(QRgb color) { return {qRed(color), qGreen(color), qBlue(color)}; }

// All pixels of one histogram cell.
struct TCell {
    uint64_t nPixels = 0;
    std::array<uint64_t, 3> vSums{};

    double Mean(int nChannel) const {
        return static_cast<double>(vSums[static_cast<size_t>(nChannel)]) / static_cast<double>(nPixels);
    }
};

std::vector<TCell> CountCells(const QImage& image) {
    std::vector<TCell> vCells(size_t{1} << 15);
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* pRow = Row(image, y);
        for (int x = 0; x < image.width(); ++x) {
            const TChannels color = ChannelsOf(pRow[x]);
            TCell& cell =
                vCells[static_cast<size_t>(color[0] >> 3 << 10 | color[1] >> 3 << 5 | color[2] >> 3)];
            ++cell.nPixels;
            for (size_t n = 0; n < 3; ++n) cell.vSums[n] += static_cast<uint64_t>(color[n]);
        }
    }
    std::erase_if(vCells, [](const TCell& cell) { return cell.nPixels == 0; });
    return vCells;
}

// A run of cells, and its priority for splitting: its longest side times its pixels.
struct TBox {
    size_t nBegin = 0;
    size_t nEnd = 0;
    int nLongest = 0;
    double dWeight = 0;
};

TBox MakeBox(const std::vector<TCell>& vCells, size_t nBegin, size_t nEnd) {
    TBox box{nBegin, nEnd, 0, 0};
    double dLongest = -1;
    uint64_t nPixels = 0;
    for (size_t i = nBegin; i < nEnd; ++i) nPixels += vCells[i].nPixels;
    for (int n = 0; n < 3; ++n) {
        const auto less = [n](const TCell& a, const TCell& b) { return a.Mean(n) < b.Mean(n); };
        const auto [itMin, itMax] = std::minmax_element(vCells.begin() + static_cast<ptrdiff_t>(nBegin),
                                                        vCells.begin() + static_cast<ptrdiff_t>(nEnd), less);
        const double dSide = itMax->Mean(n) - itMin->Mean(n);
        if (dSide <= dLongest) continue;
        dLongest = dSide;
        box.nLongest = n;
    }
    box.dWeight = nEnd - nBegin > 1 ? dLongest * static_cast<double>(nPixels) : 0;
    return box;
}

// Splits a box into two with about the same number of pixels, at least one cell each.
size_t CutBox(std::vector<TCell>& vCells, const TBox& box) {
    const auto itBegin = vCells.begin() + static_cast<ptrdiff_t>(box.nBegin);
    const auto itEnd = vCells.begin() + static_cast<ptrdiff_t>(box.nEnd);
    std::sort(itBegin, itEnd,
              [&](const TCell& a, const TCell& b) { return a.Mean(box.nLongest) < b.Mean(box.nLongest); });
    const uint64_t nHalf = std::accumulate(itBegin, itEnd, uint64_t{0},
                                           [](uint64_t n, const TCell& cell) { return n + cell.nPixels; }) /
                           2;
    uint64_t nPixels = vCells[box.nBegin].nPixels;
    size_t nCut = box.nBegin + 1;
    while (nCut + 1 < box.nEnd && nPixels < nHalf) nPixels += vCells[nCut++].nPixels;
    return nCut;
}

QList<QRgb> ChooseColors(const QImage& image) {
    std::vector<TCell> vCells = CountCells(image);
    std::vector<TBox> vBoxes{MakeBox(vCells, 0, vCells.size())};
    while (vBoxes.size() < MAX_COLORS) {
        auto& box = *std::ranges::max_element(vBoxes, {}, &TBox::dWeight);
        if (box.dWeight == 0) break;
        const size_t nEnd = box.nEnd;
        const size_t nCut = CutBox(vCells, box);
        box = MakeBox(vCells, box.nBegin, nCut);
        vBoxes.push_back(MakeBox(vCells, nCut, nEnd));
    }
    QList<QRgb> lstColors;
    for (const TBox& box : vBoxes) {
        TCell cell;
        for (size_t i = box.nBegin; i < box.nEnd; ++i) {
            cell.nPixels += vCells[i].nPixels;
            for (size_t n = 0; n < 3; ++n) cell.vSums[n] += vCells[i].vSums[n];
        }
        lstColors.append(qRgb(qRound(cell.Mean(0)), qRound(cell.Mean(1)), qRound(cell.Mean(2))));
    }
    return lstColors;
}

// Finds the palette's nearest colour; caches recent results.
class CNearest {
public:
    explicit CNearest(const QList<QRgb>& lstColors) : m_vMemory(size_t{1} << 15) {
        for (const QRgb color : lstColors) m_vColors.push_back(ChannelsOf(color));
    }

    int Find(const TChannels& color) {
        const uint32_t uKey = qRgb(color[0], color[1], color[2]);
        TMemory& memory = m_vMemory[(uKey * 2654435761u) >> 17];
        if (memory.uKey != uKey) memory = {uKey, Search(color)};
        return memory.nIndex;
    }
    const TChannels& GetColor(int nIndex) const { return m_vColors[static_cast<size_t>(nIndex)]; }

private:
    struct TMemory {
        uint32_t uKey = 0; // not an opaque colour
        int nIndex = 0;
    };

    int Search(const TChannels& color) const {
        int nBest = 0;
        int nBestDistance = INT32_MAX;
        for (size_t i = 0; i < m_vColors.size(); ++i) {
            int nDistance = 0;
            for (size_t n = 0; n < 3; ++n)
                nDistance += (color[n] - m_vColors[i][n]) * (color[n] - m_vColors[i][n]);
            if (nDistance >= nBestDistance) continue;
            nBestDistance = nDistance;
            nBest = static_cast<int>(i);
        }
        return nBest;
    }

    std::vector<TChannels> m_vColors;
    std::vector<TMemory> m_vMemory;
};

} // namespace

QImage QuantizeColors(const QImage& image, IProgress& progress) {
    progress.Begin(L"色を減らしています", static_cast<uint64_t>(image.height()));
    QImage imageIndexed = KeepColors(image);
    if (!imageIndexed.isNull()) return imageIndexed;
    const QList<QRgb> lstColors = ChooseColors(image);
    imageIndexed = MakeIndexed(image, lstColors);
    CNearest nearest(lstColors);
    const int nWidth = image.width();
    // The errors for this row and the next, in sixteenths, with a margin of one pixel on both sides.
    std::vector<TChannels> vRest(static_cast<size_t>(nWidth) + 2);
    std::vector<TChannels> vRestNext(vRest.size());
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* pRow = Row(image, y);
        uint8_t* pOut = imageIndexed.scanLine(y);
        const int nStep = y % 2 == 0 ? 1 : -1;
        for (int x = nStep > 0 ? 0 : nWidth - 1; x >= 0 && x < nWidth; x += nStep) {
            const size_t nHere = static_cast<size_t>(x) + 1;
            const size_t nAhead = static_cast<size_t>(x + 1 + nStep);
            const size_t nBehind = static_cast<size_t>(x + 1 - nStep);
            TChannels color = ChannelsOf(pRow[x]);
            for (size_t n = 0; n < 3; ++n) color[n] = std::clamp(color[n] + vRest[nHere][n] / 16, 0, 255);
            const int nIndex = nearest.Find(color);
            pOut[x] = static_cast<uint8_t>(nIndex);
            for (size_t n = 0; n < 3; ++n) {
                const int nError = color[n] - nearest.GetColor(nIndex)[n];
                vRest[nAhead][n] += nError * 7;
                vRestNext[nBehind][n] += nError * 3;
                vRestNext[nHere][n] += nError * 5;
                vRestNext[nAhead][n] += nError;
            }
        }
        vRest.swap(vRestNext);
        std::ranges::fill(vRestNext, TChannels{});
        progress.Advance();
    }
    return imageIndexed;
}
