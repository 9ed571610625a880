#include "core/PathFit/EaseFit.h"

#include "core/PathFit/InkVector.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <limits>

namespace {

/// Arc lengths between marks must stay in 32 bits of the outline's units.
constexpr double MOST_LENGTH = 1 << 26;
/// So many places in a row that no mark can lead to end the search for farther ones.
constexpr int MOST_FAILURES = 24;
/// Whole values that are tried above and below the own one.
constexpr int SPREAD = 1;
/// The cost of a mark that leaves values outside their tolerances.
constexpr double BAD = 1000;
/// No mark leads on from a value that takes so many more than another one at its place.
constexpr double WORTH = 0.9;

constexpr std::optional<uint32_t> NOT_FIXED;

enum class EShape { Level, Sharp, Ease };

// The places where marks may stand: ends, the knots of the chain of straight lines through the values, and
// between them.
class CPlaces {
public:
    explicit CPlaces(const std::vector<TEaseSample>& vSamples) : m_vSamples(vSamples) {
        const size_t idxLast = vSamples.size() - 1;
        m_vPlaces.push_back(0);
        AddKnots(0, idxLast);
        if (idxLast > 0) m_vPlaces.push_back(idxLast);
        std::vector<size_t> vAll{0};
        for (size_t n = 1; n < m_vPlaces.size(); ++n) {
            const size_t idxFrom = m_vPlaces[n - 1], idxTo = m_vPlaces[n];
            for (size_t k = 1; k <= PARTS; ++k)
                if (const size_t idx = idxFrom + (idxTo - idxFrom) * k / PARTS; idx > vAll.back())
                    vAll.push_back(idx);
        }
        m_vPlaces = vAll;
    }
    const std::vector<size_t>& Get() const { return m_vPlaces; }

private:
    static constexpr size_t PARTS = 4;

    // By Douglas and Peucker, without recursion: the values of a long line may take many.
    void AddKnots(size_t idxFirst, size_t idxLast) {
        std::vector<std::pair<size_t, size_t>> vOpen{{idxFirst, idxLast}};
        while (!vOpen.empty()) {
            const auto [idxFrom, idxTo] = vOpen.back();
            vOpen.pop_back();
            const TEaseSample& from = m_vSamples[idxFrom];
            const TEaseSample& to = m_vSamples[idxTo];
            const double dLength = to.dLength - from.dLength;
            size_t idxMost = idxFrom;
            double dMost = 1;
            for (size_t i = idxFrom + 1; i < idxTo; ++i) {
                const TEaseSample& sample = m_vSamples[i];
                const double x = dLength > 0 ? (sample.dLength - from.dLength) / dLength : 0;
                const double dOff = std::abs(from.dValue + (to.dValue - from.dValue) * x - sample.dValue);
                if (dOff <= dMost * sample.dTolerance) continue;
                dMost = dOff / sample.dTolerance;
                idxMost = i;
            }
            if (idxMost == idxFrom) continue;
            m_vPlaces.push_back(idxMost);
            vOpen.emplace_back(idxFrom, idxMost);
            vOpen.emplace_back(idxMost, idxTo);
        }
        std::sort(m_vPlaces.begin(), m_vPlaces.end());
    }

    const std::vector<TEaseSample>& m_vSamples;
    std::vector<size_t> m_vPlaces;
};

// The fewest marks, by the shortest way over places and values.
class CEaseFit {
public:
    CEaseFit(const std::vector<TEaseSample>& vSamples, TEaseEnds ends)
        : m_vSamples(vSamples), m_vPlaces(CPlaces(vSamples).Get()), m_ends(ends) {}

    std::vector<TFittedMark> Run() {
        AddNodes();
        const auto shapeOf = [](bool bSharp) { return bSharp ? EShape::Sharp : EShape::Level; };
        const size_t idxLast = m_vSamples.size() - 1;
        if (m_ends.fixedBegin)
            Offer(SPREAD, NONE, 0);
        else
            LeadFrom(shapeOf(m_ends.bSharpBegin));
        for (size_t n = 0; n + 1 < m_vPlaces.size(); ++n)
            for (size_t v = 0; v < VALUES; ++v)
                if (m_vNodes[n * VALUES + v].dCost < CheapestAt(n) + WORTH) EaseFrom(n, v);
        if (m_ends.fixedEnd) return MarksTo((m_vPlaces.size() - 1) * VALUES + SPREAD);
        size_t nBest = (m_vPlaces.size() - 1) * VALUES;
        double dBest = std::numeric_limits<double>::max();
        for (size_t n = m_vPlaces.size(), nFailures = 0; n-- > 0 && nFailures < MOST_FAILURES;) {
            const TGood good = GoodAt(shapeOf(m_ends.bSharpEnd), idxLast, n, 0);
            nFailures = good.none() ? nFailures + 1 : 0;
            for (size_t v = VALUES; v-- > 0;) {
                const double dCost = m_vNodes[n * VALUES + v].dCost + (good[v] ? 0 : BAD);
                if ((!good[v] && n + 1 < m_vPlaces.size()) || dCost >= dBest) continue;
                dBest = dCost;
                nBest = n * VALUES + v;
            }
        }
        return MarksTo(nBest);
    }

private:
    static constexpr size_t VALUES = 2 * SPREAD + 1;
    static constexpr size_t NONE = std::numeric_limits<size_t>::max();

    // A value at a place; each place has VALUES of them.
    struct TNode {
        double dValue;
        double dOwn; ///< a little for its distance from the sample's
        double dCost = std::numeric_limits<double>::max();
        size_t nFrom = NONE;
    };

    void AddNodes() {
        for (const size_t idx : m_vPlaces) {
            const TEaseSample& sample = m_vSamples[idx];
            const auto& fixed = idx == 0                       ? m_ends.fixedBegin
                                : idx + 1 == m_vSamples.size() ? m_ends.fixedEnd
                                                               : NOT_FIXED;
            const double dOwn = fixed ? *fixed : Nearest(sample.dValue);
            for (int n = -SPREAD; n <= SPREAD; ++n) {
                const double dValue = std::max(dOwn + n, 0.0);
                m_vNodes.push_back(
                    {dValue, 0.01 * std::abs(dValue - sample.dValue) / (sample.dTolerance + 1)});
            }
        }
    }

    // Of a place's values those that meet all samples between it and another place with a value.
    using TGood = std::bitset<VALUES>;
    TGood GoodAt(EShape shape, size_t idxFrom, size_t nPlace, double dFrom) const {
        switch (shape) {
        case EShape::Level:
            return GoodAt([](double) { return 1.0; }, idxFrom, nPlace, dFrom);
        case EShape::Sharp:
            return GoodAt(SharpShare, idxFrom, nPlace, dFrom);
        default:
            return GoodAt([](double x) { return (3 - 2 * x) * x * x; }, idxFrom, nPlace, dFrom);
        }
    }
    // `shareOf` is the weight of the place's value at a share of the length.
    template <class Share>
    TGood GoodAt(Share shareOf, size_t idxFrom, size_t nPlace, double dFrom) const {
        const TEaseSample* pSamples = m_vSamples.data();
        const size_t idx = m_vPlaces[nPlace];
        const double dBegin = pSamples[idxFrom].dLength, dLength = pSamples[idx].dLength - dBegin;
        if (std::abs(dLength) > MOST_LENGTH) return {};
        const double dInverse = dLength != 0 ? 1 / dLength : 0;
        const TNode* pNodes = &m_vNodes[nPlace * VALUES];
        const std::array<double, VALUES> adMore{pNodes[0].dValue - dFrom, pNodes[1].dValue - dFrom,
                                                pNodes[2].dValue - dFrom};
        // The values that meet a sample, as bits.
        const auto goodAt = [&](size_t i) {
            const TEaseSample& sample = pSamples[i];
            const double g = shareOf(dLength != 0 ? (sample.dLength - dBegin) * dInverse : 1);
            const double dRest = dFrom - sample.dValue;
            const auto isMet = [&](unsigned v) {
                return unsigned{std::abs(dRest + adMore[v] * g) <= sample.dTolerance} << v;
            };
            static_assert(VALUES == 3);
            return isMet(0) | isMet(1) | isMet(2);
        };
        const auto [idxFirst, idxLast] = std::minmax(idxFrom, idx);
        unsigned uGood = (1U << VALUES) - 1;
        // Some places first: most spans that fail do so at many.
        constexpr size_t FIRST = 8;
        const size_t nStep = (idxLast - idxFirst) / FIRST;
        if (nStep > 1)
            for (size_t i = idxFirst; i <= idxLast && uGood != 0; i += nStep) uGood &= goodAt(i);
        for (size_t i = idxFirst; i <= idxLast && uGood != 0; ++i) uGood &= goodAt(i);
        return uGood;
    }

    void Offer(size_t nNode, size_t nFrom, double dCost) {
        TNode& node = m_vNodes[nNode];
        if (dCost + node.dOwn >= node.dCost) return;
        node.dCost = dCost + node.dOwn;
        node.nFrom = nFrom;
    }

    // From the line's end to its first mark.
    void LeadFrom(EShape shape) {
        int nFailures = 0;
        for (size_t n = 0; n < m_vPlaces.size() && nFailures < MOST_FAILURES; ++n) {
            const TGood good = GoodAt(shape, 0, n, 0);
            nFailures = good.none() ? nFailures + 1 : 0;
            for (size_t v = 0; v < VALUES; ++v)
                if (good[v] || n == 0) Offer(n * VALUES + v, NONE, good[v] ? 1 : BAD);
        }
    }

    double CheapestAt(size_t n) const {
        const TNode* pNodes = &m_vNodes[n * VALUES];
        return std::min({pNodes[0].dCost, pNodes[1].dCost, pNodes[2].dCost});
    }
    void EaseFrom(size_t nFrom, size_t nValue) {
        const size_t nNode = nFrom * VALUES + nValue;
        const TNode node = m_vNodes[nNode];
        if (node.dCost == std::numeric_limits<double>::max()) return;
        int nFailures = 0;
        for (size_t n = nFrom + 1; n < m_vPlaces.size() && nFailures < MOST_FAILURES; ++n) {
            const TGood good = GoodAt(EShape::Ease, m_vPlaces[nFrom], n, node.dValue);
            nFailures = good.none() ? nFailures + 1 : 0;
            for (size_t v = 0; v < VALUES; ++v)
                if (good[v] || n == nFrom + 1) Offer(n * VALUES + v, nNode, node.dCost + (good[v] ? 1 : BAD));
        }
    }

    std::vector<TFittedMark> MarksTo(size_t nNode) const {
        std::vector<TFittedMark> vMarks;
        for (size_t n = nNode; n != NONE; n = m_vNodes[n].nFrom) {
            const TFittedMark mark{m_vSamples[m_vPlaces[n / VALUES]].t,
                                   static_cast<uint32_t>(m_vNodes[n].dValue)};
            if (vMarks.empty() || mark.t < vMarks.back().t) vMarks.push_back(mark);
        }
        std::reverse(vMarks.begin(), vMarks.end());
        return vMarks;
    }

    const std::vector<TEaseSample>& m_vSamples;
    std::vector<size_t> m_vPlaces;
    TEaseEnds m_ends;
    std::vector<TNode> m_vNodes; ///< VALUES for each place
};

// The shares of a sharp end's width by those of its length, where its curve has equal parameters.
struct TSharpTable {
    static constexpr int STEPS = 64;
    std::array<double, STEPS + 1> adLength{};
    std::array<double, STEPS + 1> adWidth{};

    TSharpTable() {
        for (int n = 0; n <= STEPS; ++n) {
            const double t = static_cast<double>(n) / STEPS, s = 1 - t;
            adLength[static_cast<size_t>(n)] = 3 * s * s * t / 6 + 3 * s * t * t * 2 / 3 + t * t * t;
            adWidth[static_cast<size_t>(n)] = 3 * s * s * t / 3 + 3 * s * t * t + t * t * t;
        }
    }
};

} // namespace

double SharpShare(double dLength) {
    static const TSharpTable table;
    const auto it = std::upper_bound(table.adLength.begin(), table.adLength.end(), dLength);
    if (it == table.adLength.begin()) return 0;
    if (it == table.adLength.end()) return 1;
    const auto idx = static_cast<size_t>(it - table.adLength.begin());
    const double x = (dLength - table.adLength[idx - 1]) / (table.adLength[idx] - table.adLength[idx - 1]);
    return table.adWidth[idx - 1] + x * (table.adWidth[idx] - table.adWidth[idx - 1]);
}

std::vector<TFittedMark> FitEase(const std::vector<TEaseSample>& vSamples, TEaseEnds ends) {
    return CEaseFit(vSamples, ends).Run();
}
