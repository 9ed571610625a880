// Results of one build of an outline that the next one takes over where they are made of the same values.
#pragma once

#include <boost/make_shared.hpp>

#include <cstddef>
#include <vector>

/// Results along a path, one for each index of a build. An index without a result is allowed.
template <class TResult>
class COutlineMemo {
public:
    /// Begins a build of `nResults`.
    void Begin(size_t nResults) {
        m_vBefore = std::move(m_vResults);
        m_vResults.assign(nResults, nullptr);
        m_uMade = 0;
    }
    /// The result of the build before for which `isSame` holds, at this index counted from the path's start
    /// or from its end, or else what `make` returns. It is valid until the second next build begins.
    template <class IsSame, class Make>
    const TResult& Get(size_t idx, IsSame isSame, Make make) {
        // Anchors that were inserted or removed at one place move all indices behind it alike.
        const size_t idxFromEnd = idx + m_vBefore.size() - m_vResults.size();
        for (const size_t idxBefore : {idx, idxFromEnd})
            if (idxBefore < m_vBefore.size() && m_vBefore[idxBefore] && isSame(*m_vBefore[idxBefore]))
                return *(m_vResults[idx] = m_vBefore[idxBefore]);
        ++m_uMade;
        return *(m_vResults[idx] = boost::make_shared<const TResult>(make()));
    }
    /// The results of the current build that were not taken over.
    size_t CountMade() const { return m_uMade; }

private:
    std::vector<boost::shared_ptr<const TResult>> m_vBefore;
    std::vector<boost::shared_ptr<const TResult>> m_vResults;
    size_t m_uMade = 0;
};
