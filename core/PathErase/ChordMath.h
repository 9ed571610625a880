// Distances and crossings of straight chords, in floating point with the same result on every machine.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

struct TVector {
    double x = 0;
    double y = 0;

    friend TVector operator+(TVector a, TVector b) { return {a.x + b.x, a.y + b.y}; }
    friend TVector operator-(TVector a, TVector b) { return {a.x - b.x, a.y - b.y}; }
    friend TVector operator*(TVector a, double d) { return {a.x * d, a.y * d}; }
};

inline double Dot(TVector a, TVector b) { return a.x * b.x + a.y * b.y; }
/// Positive when `b` lies clockwise of `a` on the screen.
inline double Cross(TVector a, TVector b) { return a.x * b.y - a.y * b.x; }
inline double Length(TVector a) { return std::sqrt(Dot(a, a)); }

struct TChord {
    TVector from;
    TVector to;

    TVector At(double f) const { return from + (to - from) * f; }
};

/// The fraction of a chord that is nearest to a point.
inline double NearestOn(const TChord& chord, TVector pt) {
    const TVector way = chord.to - chord.from;
    const double dSquare = Dot(way, way);
    return dSquare > 0 ? std::clamp(Dot(pt - chord.from, way) / dSquare, 0.0, 1.0) : 0;
}

/// The fractions at which two chords cross, their ends included; nullopt for parallel ones.
inline std::optional<std::array<double, 2>> CrossingOf(const TChord& a, const TChord& b) {
    const TVector wayA = a.to - a.from, wayB = b.to - b.from, away = b.from - a.from;
    const double dArea = Cross(wayA, wayB);
    if (dArea == 0) return {};
    const double fA = Cross(away, wayB) / dArea, fB = Cross(away, wayA) / dArea;
    if (fA < 0 || fA > 1 || fB < 0 || fB > 1) return {};
    return std::array{fA, fB};
}

/// The nearest places of two chords.
struct TNearest {
    double fFirst;
    double fSecond;
    double dDistance;
};

inline TNearest NearestOf(const TChord& a, const TChord& b) {
    if (const auto crossing = CrossingOf(a, b)) return {(*crossing)[0], (*crossing)[1], 0};
    TNearest best{0, 0, HUGE_VAL};
    const auto offer = [&](double fA, double fB) {
        const double d = Length(a.At(fA) - b.At(fB));
        if (d < best.dDistance) best = {fA, fB, d};
    };
    for (const double f : {0.0, 1.0}) {
        offer(f, NearestOn(b, a.At(f)));
        offer(NearestOn(a, b.At(f)), f);
    }
    return best;
}
