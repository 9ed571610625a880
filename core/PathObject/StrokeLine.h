// A stroke's centre line as short chords, with its lengths and half-widths: for tests of what lies near it.
#pragma once

#include "core/PathObject/OpenPathStream.h"

/// A place of the centre line; all lengths in path units.
struct TLinePoint {
    double x = 0;
    double y = 0;
    double dLength = 0; ///< along the line from its start
    uint32_t t = 0;     ///< path parameter
};

/// A stretch of a stroke between the two cuts of a pair, which is not painted.
struct THiddenStretch {
    uint32_t tFirst;
    uint32_t tLast;
    uint32_t uFirstAngle; ///< of the cuts, degrees, 90 square
    uint32_t uLastAngle;
};

/// A copy of a path's committed state, which does not follow later changes. Chords lie within half a path
/// unit of the curve. Without the wave. Results are the same on every machine.
class CStrokeLine {
public:
    /// A stroke with at least one anchor.
    explicit CStrokeLine(const COpenPathStream& stream);
    /// Any other line, at least one segment; its half-widths are 0.
    explicit CStrokeLine(const std::vector<CBezier>& vSegments);

    /// The chords' ends; at least two, for a path of one anchor twice the same.
    const std::vector<TLinePoint>& GetPoints() const { return m_vPoints; }
    uint32_t GetLast() const { return m_vPoints.back().t; }
    double GetLength() const { return m_vPoints.back().dLength; }
    /// The place on the chords, `t` clamped to the line.
    TLinePoint At(uint32_t t) const;
    /// The half-widths by side, tapered towards the ends as these shape them.
    std::array<double, 2> WidthsAt(uint32_t t) const;
    /// The larger one of them.
    double WidthAt(uint32_t t) const;
    /// No half-width is larger.
    double GetMaxWidth() const { return m_dMaxWidth; }
    /// The distance by which the paint of an end reaches beyond the line.
    double GetEndReach(bool bBegin) const { return m_adEndReach[bBegin ? 0 : 1]; }
    /// Sorted.
    const std::vector<THiddenStretch>& GetHidden() const { return m_vHidden; }
    /// The box of CHORDS_OF_BOX chords from `nBox` times as many on: left, top, right and bottom.
    const std::vector<std::array<double, 4>>& GetBoxes() const { return m_vBoxes; }

    static constexpr size_t CHORDS_OF_BOX = 8;

private:
    struct TMark {
        double dLength;
        uint32_t t;
        std::array<double, 2> adWidth;
    };
    struct TTaper {
        std::array<std::array<double, 2>, 4> adPoints{}; ///< a curve of half-width over length from the end
    };

    void AddPoints(const std::vector<CBezier>& vSegments);
    void AddBoxes();
    void AddMarks(const COpenPathStream& stream);
    void AddEnds(const COpenPathStream& stream);
    void AddHidden(const COpenPathStream& stream);

    std::vector<TLinePoint> m_vPoints;
    std::vector<std::array<double, 4>> m_vBoxes;
    std::vector<TMark> m_vMarks;                    ///< sorted; none for a line without width
    std::array<std::array<TTaper, 2>, 2> m_aTapers; ///< by end (0 the beginning) and side
    std::array<double, 2> m_adEndReach{};
    std::vector<THiddenStretch> m_vHidden;
    double m_dMaxWidth = 0;
};
