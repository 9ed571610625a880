// The stretches of a stroke that an eraser's disc touches on its way.
#pragma once

#include "core/PathErase/ChordMath.h"
#include "core/PathObject/StrokeLine.h"

/// The way of a disc from one pointer position to the next, path units.
struct TEraserWay {
    TChord way;
    double dRadius = 0;

    /// The box that it touches.
    CRect GetBox() const;
};

/// A stretch between two parameters, which may be equal.
struct TLineStretch {
    uint32_t tFirst;
    uint32_t tLast;

    friend bool operator==(const TLineStretch&, const TLineStretch&) = default;
};

/// The stretches whose paint the disc touches, sorted, apart from each other: the distance of the centre line
/// is at most the radius and the half-width of that side. Hidden stretches are left out.
std::vector<TLineStretch> FindTouched(const CStrokeLine& line, const TEraserWay& eraser);

/// The chord from one of the line's points to the next.
TChord ChordOf(const CStrokeLine& line, size_t idx);
