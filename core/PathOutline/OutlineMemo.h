// Results of earlier builds of an outline that the next ones take over where they are made of the same
// values.
#pragma once

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

/// Results along a path, one for each index of a build. An index without a result is allowed. Of each index
/// the last few different results are kept: a drag goes back and forth between the same shapes.
template <class TResult>
class COutlineMemo {
public:
    /// Begins a build of `nResults`.
    void Begin(size_t nResults) {
        if (nResults != m_vKept.size()) Align(nResults);
        m_uMade = 0;
    }
    /// The kept result for which `isSame` holds, or else what `make` returns. It is valid until the second
    /// next build begins.
    template <class IsSame, class Make>
    const TResult& Get(size_t idx, IsSame isSame, Make make) {
        TKept& kept = m_vKept[idx];
        auto it = std::ranges::find_if(kept, [&](const auto& sp) { return sp && isSame(*sp); });
        if (it == kept.end()) {
            ++m_uMade;
            const auto spMade = boost::make_shared<const TResult>(make());
            it = std::prev(kept.end());
            *it = spMade;
        }
        std::rotate(kept.begin(), it, std::next(it)); // the last used one comes first
        return *kept.front();
    }
    /// The results of the current build that were not taken over.
    size_t CountMade() const { return m_uMade; }

private:
    static constexpr size_t MOST_KEPT = 12;
    using TKept = std::array<boost::shared_ptr<const TResult>, MOST_KEPT>; ///< the last used one first

    // Anchors that were inserted or removed move the indices behind them: an index gets what was used last at
    // those that may have moved to it.
    void Align(size_t nResults) {
        std::vector<TKept> vKept(nResults);
        if (m_vKept.empty()) return m_vKept.swap(vKept);
        const size_t nMoves = std::max(nResults, m_vKept.size()) - std::min(nResults, m_vKept.size());
        for (size_t idx = 0; idx < nResults; ++idx) {
            size_t nKept = 0;
            for (size_t n = 0; n <= nMoves && nKept < MOST_KEPT; ++n) {
                const size_t idxBefore = nResults > m_vKept.size() ? idx - n : idx + n;
                if (idxBefore < m_vKept.size()) vKept[idx][nKept++] = m_vKept[idxBefore].front();
            }
        }
        m_vKept.swap(vKept);
    }

    std::vector<TKept> m_vKept;
    size_t m_uMade = 0;
};
