#include "core/PathFit/EaseFit.h"

#include "core/PathFit/InkVector.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

/// Arc lengths between marks must stay in 32 bits of the outline's units.
constexpr double MOST_LENGTH = 1 << 26;
/// From an end so many samples are tried first.
constexpr size_t FIRST_STEP = 16;

enum class EShape { Level, Sharp, Ease };

// The weight of the farther value at a share of the length.
double ShareOf(EShape shape, double x) {
    if (shape == EShape::Level) return 1;
    return shape == EShape::Sharp ? SharpShare(x) : (3 - 2 * x) * x * x;
}

// Whole values of a mark.
struct TValues {
    double dLow;
    double dHigh;
    bool IsEmpty() const { return dLow > dHigh; }
    double NearestTo(double d) const { return std::clamp(Nearest(d), dLow, dHigh); }
};

class CEaseFit {
public:
    CEaseFit(const std::vector<TEaseSample>& vSamples, TEaseEnds ends) : m_vSamples(vSamples), m_ends(ends) {}

    std::vector<TFittedMark> Run() {
        const size_t idxLast = m_vSamples.size() - 1;
        const EShape begin = m_ends.bSharpBegin ? EShape::Sharp : EShape::Level;
        const EShape end = m_ends.bSharpEnd ? EShape::Sharp : EShape::Level;
        const auto fromBegin = [&](size_t n) { return ValuesAt(begin, 0, n, 0); };
        const auto fromEnd = [&](size_t n) { return ValuesAt(end, idxLast, idxLast - n, 0); };
        const size_t idxFirst = Farthest(idxLast, fromBegin);
        const size_t idxEnd = idxLast - Farthest(idxLast, fromEnd);
        if (idxFirst >= idxEnd && TrySingle(begin, end, idxEnd, idxFirst)) return m_vMarks;
        size_t idx = std::min(idxFirst, idxEnd);
        double dValue = fromBegin(idx).NearestTo(m_vSamples[idx].dValue);
        Append(idx, dValue);
        // The last mark's value must lead to the end too.
        while (idx < idxEnd || !IsIn(fromEnd(idxLast - idx), dValue)) {
            const size_t idxGoal = std::max(idxEnd, idx);
            const auto fromHere = [&](size_t n) {
                TValues values = ValuesAt(EShape::Ease, idx, idx + n, dValue);
                if (idx + n >= idxGoal) values = Common(values, fromEnd(idxLast - idx - n));
                return values;
            };
            const size_t nStep =
                Farthest(std::max(idxGoal, idx + 1 < idxLast ? idx + 1 : idxLast) - idx, fromHere);
            if (idx == idxLast) break;
            const TValues values = fromHere(std::max<size_t>(nStep, 1));
            idx += std::max<size_t>(nStep, 1);
            dValue =
                values.IsEmpty() ? Nearest(m_vSamples[idx].dValue) : values.NearestTo(m_vSamples[idx].dValue);
            Append(idx, dValue);
        }
        return m_vMarks;
    }

private:
    static bool IsIn(const TValues& values, double d) { return d >= values.dLow && d <= values.dHigh; }
    static TValues Common(const TValues& a, const TValues& b) {
        return {std::max(a.dLow, b.dLow), std::min(a.dHigh, b.dHigh)};
    }

    // The values that a mark may have so that all samples between it and another place, with its value there,
    // are met.
    TValues ValuesAt(EShape shape, size_t idxFrom, size_t idx, double dFrom) const {
        const TEaseSample& from = m_vSamples[idxFrom];
        const TEaseSample& to = m_vSamples[idx];
        const double dLength = std::abs(to.dLength - from.dLength);
        double dLow = std::max(to.dValue - to.dTolerance, 0.0), dHigh = to.dValue + to.dTolerance;
        if (dLength > MOST_LENGTH) return {1, 0};
        const auto [idxFirst, idxLast] = std::minmax(idxFrom, idx);
        for (size_t i = idxFirst; i <= idxLast && dLow <= dHigh; ++i) {
            const TEaseSample& sample = m_vSamples[i];
            const double x = dLength > 0 ? std::abs(sample.dLength - from.dLength) / dLength : 1;
            const double g = ShareOf(shape, x);
            const double dRest = dFrom * (1 - g) - sample.dValue;
            if (g * (dHigh + sample.dValue) < 1e-6 * sample.dTolerance) {
                if (std::abs(dRest) > sample.dTolerance) return {1, 0};
                continue;
            }
            dLow = std::max(dLow, (-sample.dTolerance - dRest) / g);
            dHigh = std::min(dHigh, (sample.dTolerance - dRest) / g);
        }
        return {std::ceil(dLow - 1e-9), std::floor(dHigh + 1e-9)};
    }

    // The most steps, up to `nMost`, that leave a value.
    template <class Values>
    size_t Farthest(size_t nMost, Values values) const {
        if (nMost == 0 || !values(nMost).IsEmpty()) return nMost;
        size_t nGood = 0, nBad = nMost;
        size_t n = std::min(FIRST_STEP, nMost - 1);
        while (n > nGood && n < nBad) {
            if (values(n).IsEmpty())
                nBad = n;
            else
                nGood = n;
            n = nBad == nMost && 2 * n < nMost && nGood == n ? 2 * n : (nGood + nBad) / 2;
        }
        return nGood;
    }

    // One mark for the whole line.
    bool TrySingle(EShape begin, EShape end, size_t idxFirst, size_t idxLast) {
        constexpr size_t TRIES = 8;
        for (size_t n = 0; n <= TRIES; ++n) {
            const size_t idx = idxFirst + (idxLast - idxFirst) * ((n + TRIES / 2) % (TRIES + 1)) / TRIES;
            const TValues values =
                Common(ValuesAt(begin, 0, idx, 0), ValuesAt(end, m_vSamples.size() - 1, idx, 0));
            if (values.IsEmpty()) continue;
            Append(idx, values.NearestTo(m_vSamples[idx].dValue));
            return true;
        }
        return false;
    }

    void Append(size_t idx, double dValue) {
        const TFittedMark mark{m_vSamples[idx].t, static_cast<uint32_t>(dValue)};
        if (!m_vMarks.empty() && m_vMarks.back().t >= mark.t)
            m_vMarks.back() = mark;
        else
            m_vMarks.push_back(mark);
    }

    const std::vector<TEaseSample>& m_vSamples;
    TEaseEnds m_ends;
    std::vector<TFittedMark> m_vMarks;
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
