// Paths for tests: strokes with all their features, and seeded random paths.
#pragma once

#include "core/PathObject/PathObjects.h"

#include <boost/make_shared.hpp>

#include <random>

inline TBytes BytesOf(const CPathObject& path) { return path.Serialize().GetWhole(); }

/// Appends an anchor; a handle of zero is none.
inline boost::shared_ptr<CPathControlPoint> AddAnchor(CPathStream& stream, CPoint pt, CPoint back = {},
                                                      CPoint fore = {}) {
    const auto spPoint = stream.AppendControlPoint(pt);
    spPoint->SetBack(CDualValue<CPoint>(back));
    spPoint->SetFore(CDualValue<CPoint>(fore));
    return spPoint;
}

/// A curved stroke of half-width 40: three anchors, two width points, a pair of cuts, a round and a flat
/// end.
inline boost::shared_ptr<COpenPathObject> MakeStroke() {
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    stream.SetWidth(40);
    AddAnchor(stream, {80, 72}, {}, {160, 0});
    AddAnchor(stream, {480, 240}, {-80, -60}, {80, 60});
    AddAnchor(stream, {800, 400});
    stream.AddWidthPoint(0x8000)->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(0x12345));
    stream.AddWidthPoint(0x14000)->SetMultiple(SIDE_RIGHT, CDualValue<uint32_t>(0x8000));
    stream.AddTransPoint(0x18000);
    stream.AddTransPoint(0x1A000)->SetAngle(CDualValue<uint32_t>(60));
    const auto spRound = boost::make_shared<COpenPathRoundTerm>(true);
    spRound->SetGrow(CDualValue<uint32_t>(0x18003));
    stream.SetTerm(spRound);
    const auto spFlat = boost::make_shared<COpenPathFlatTerm>(false);
    spFlat->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(0x14001));
    spFlat->SetAngle(CDualValue<uint32_t>(75));
    stream.SetTerm(spFlat);
    spPath->Update();
    return spPath;
}

/// A straight horizontal stroke of half-width 40 with anchors 800 apart, from 0, 0 to the right.
inline boost::shared_ptr<COpenPathObject> MakeLevelStroke(int nAnchors) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    spPath->GetStream().SetWidth(40);
    for (int n = 0; n < nAnchors; ++n) AddAnchor(spPath->GetStream(), {800 * n, 0});
    spPath->Update();
    return spPath;
}

/// A straight stroke of half-width 40 with round ends, 960 to the right; its parameter is even: 0x4000 lies
/// at a quarter.
inline boost::shared_ptr<COpenPathObject> MakeEvenStroke(CPoint pt = {}) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    spPath->GetStream().SetWidth(40);
    for (const int n : {0, 480, 960}) AddAnchor(spPath->GetStream(), pt + CPoint{n, 0}, {-160, 0}, {160, 0});
    for (const bool b : {true, false}) spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, b));
    spPath->Update();
    return spPath;
}

/// A path of either kind at a random place of a canvas; strokes have all their features.
inline boost::shared_ptr<CPathObject> MakeRandomPath(CSize sz, std::mt19937& random) {
    const auto below = [&](int32_t n) { return static_cast<int32_t>(random() % static_cast<uint32_t>(n)); };
    const auto addAnchors = [&](CPathStream& stream) {
        for (int n = 2 + below(4); n >= 0; --n) {
            const CPoint pt{below(sz.cx * 8), below(sz.cy * 8)}, back{below(200) - 100, below(200) - 100};
            AddAnchor(stream, pt, back, random() % 2 ? CPoint{-back.x, -back.y} : CPoint{});
        }
    };
    if (random() % 2) {
        const auto spShape = boost::make_shared<CClosedPathObject>();
        addAnchors(spShape->GetStream());
        spShape->Update();
        return spShape;
    }
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    addAnchors(stream);
    stream.SetWidth(static_cast<uint32_t>(below(60)));
    for (int n = below(4); n > 0; --n)
        stream.AddWidthPoint(random() % 0x20000)
            ->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(random() % 0x20000));
    for (int n = random() % 3 ? 0 : 2; n > 0; --n) stream.AddTransPoint(random() % 0x20000);
    for (const bool bBegin : {false, true}) stream.SetTerm(CreateOpenPathTerm(1 + random() % 3, bBegin));
    stream.SetWave(random() % 4 == 0, {32, 4});
    spPath->Update();
    return spPath;
}
