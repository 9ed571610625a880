// The centre line of a stroke, segment by segment, with its lengths.
#pragma once

#include "core/PathOutline/OutlineMemo.h"
#include "core/PathOutline/WidthProfile.h"

/// Curves round toward zero: a segment is relative to its own first anchor, so that it has the same outline
/// at every position. Lengths of the same curves as in the centre line before are taken over.
class CCentreLine {
public:
    /// Raises boost::numeric::bad_numeric_cast when a point leaves 32 bits.
    void SetAnchors(const TOutlinePoints& vAnchors);
    const std::vector<CBezier>& GetSegments() const { return m_vSegments; }
    const std::vector<uint32_t>& GetLengths() const { return m_vLengths; }
    /// All pieces, in the path's direction.
    std::vector<TCentrePiece> Divide(const std::vector<TOutlineWidth>& vWidths);

private:
    struct TLength {
        CBezier bez;
        uint32_t uLength;
    };
    struct TParts {
        CBezier bez;
        std::vector<TCentrePiece> vPieces; ///< with the ends' fractions
    };

    std::vector<CBezier> m_vSegments;
    std::vector<uint32_t> m_vLengths;
    COutlineMemo<TLength> m_memoLength;
    COutlineMemo<TParts> m_memoParts;
};
