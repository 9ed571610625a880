#include "core/PathToolBase/PathCut.h"
#include "core/PathToolBase/PathValues.h"
#include "tests/support/Paths.h"

namespace {

/// The largest difference of half-widths from the whole stroke's, over the piece, in path units.
double WidthError(const COpenPathObject& whole, const COpenPathObject& piece, const TKeptStretch& kept) {
    const CStrokeLine lineWhole(whole.GetStream()), linePiece(piece.GetStream());
    const double dStart = lineWhole.At(kept.tFirst).dLength;
    double dError = 0;
    for (int n = 0; n <= 400; ++n) {
        const auto t = static_cast<uint32_t>(uint64_t{linePiece.GetLast()} * static_cast<uint32_t>(n) / 400);
        // The place of the whole stroke at the same length.
        uint32_t tLow = kept.tFirst, tHigh = kept.tLast;
        while (tLow + 1 < tHigh) {
            const uint32_t tMiddle = tLow + (tHigh - tLow) / 2;
            (lineWhole.At(tMiddle).dLength - dStart < linePiece.At(t).dLength ? tLow : tHigh) = tMiddle;
        }
        const auto adWhole = lineWhole.WidthsAt(tHigh), adPiece = linePiece.WidthsAt(t);
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
            dError = std::max(dError, std::abs(adWhole[side] - adPiece[side]));
    }
    return dError;
}

// Five anchors, half-widths from 0 to 120, and these ends.
boost::shared_ptr<COpenPathObject> MakeVaried(EPathTerm term, bool bMarks) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    for (int n = 0; n < 5; ++n) AddAnchor(stream, {400 * n, n % 2 * 300}, {-150, 0}, {150, 0});
    stream.SetWidth(40);
    const uint32_t auMultiples[] = {0x8000, 0x30000, 0, 0x18000};
    for (uint32_t n = 0; bMarks && n < 4; ++n) {
        const auto spMark = stream.AddWidthPoint(0x8000 + 0xF000 * n);
        spMark->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(auMultiples[n]));
        spMark->SetMultiple(SIDE_RIGHT, CDualValue<uint32_t>(auMultiples[3 - n]));
    }
    for (const bool b : {true, false}) stream.SetTerm(CreateOpenPathTerm(term, b));
    if (const auto pFlat = dynamic_cast<COpenPathFlatTerm*>(stream.GetTerm(true).get()))
        pFlat->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(0x28000));
    spPath->Update();
    return spPath;
}

} // namespace

TEST(PathCut, ALineHasTheStrokesWidthsAndLengths) {
    for (const EPathTerm term : {TERM_SHARP, TERM_ROUND, TERM_FLAT})
        for (const bool bMarks : {false, true}) {
            const auto spPath = MakeVaried(term, bMarks);
            const CStrokeLine line(spPath->GetStream());
            for (uint32_t t = 0; t <= line.GetLast(); t += 0x1700) {
                const auto adWidth = line.WidthsAt(t);
                const auto auWidth = spPath->GetStream().GetWidthsAt(t, STATE_COMMITTED);
                for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
                    EXPECT_NEAR(adWidth[side], auWidth[side], 1) << term << ' ' << bMarks << ' ' << t;
                const CPoint pt = spPath->GetStream().PointAt(t, STATE_COMMITTED);
                EXPECT_LE(std::hypot(line.At(t).x - pt.x, line.At(t).y - pt.y), 1.6);
            }
            uint64_t uLength = 0;
            for (const CBezier& bez : spPath->GetStream().GetSegments(STATE_COMMITTED))
                uLength += bez.ArcLength();
            EXPECT_NEAR(line.GetLength(), static_cast<double>(uLength), 8);
        }
}

TEST(PathCut, OpacitiesStayAsTheyWereWhereverTheCutFalls) {
    const auto spWhole = MakeVaried(TERM_ROUND, true);
    COpenPathStream& stream = spWhole->GetStream();
    for (const auto& [t, uAlpha] : {std::pair{0x6000u, 40u}, {0x1C000u, 240u}, {0x30000u, 10u}})
        stream.AddAlphaPoint(t)->SetAlpha(CDualValue<uint32_t>(uAlpha));
    spWhole->Update();
    const CStrokeLine line(stream);
    // Before, between and behind the marks, across one, and the whole of it.
    for (const auto& [tFirst, tLast] : {std::pair{0u, 0x4000u},
                                        {0x9000u, 0x15000u},
                                        {0x32000u, 0x40000u},
                                        {0x12345u, 0x2A000u},
                                        {0x1000u, 0x3F000u}}) {
        const auto spPiece = CutPath(*spWhole, line, {tFirst, tLast, TCutEnd(), TCutEnd()});
        const TPathStretch map(tFirst, tLast);
        EXPECT_LE(spPiece->GetStream().GetAlphaPoints().size(), 18u);
        for (uint32_t n = 0; n <= 20; ++n) {
            const uint32_t t = tFirst + (tLast - tFirst) / 20 * n;
            EXPECT_NEAR(spPiece->GetStream().GetAlphaAt(map.Map(t), STATE_COMMITTED),
                        stream.GetAlphaAt(t, STATE_COMMITTED), 4)
                << tFirst << ' ' << t;
        }
    }
}

TEST(PathCut, WidthsStayAsTheyWereWhereverTheCutFalls) {
    double dWorst = 0;
    size_t nMost = 0;
    for (const EPathTerm term : {TERM_SHARP, TERM_ROUND, TERM_FLAT})
        for (const bool bMarks : {false, true}) {
            const auto spWhole = MakeVaried(term, bMarks);
            const CStrokeLine line(spWhole->GetStream());
            for (const uint32_t t :
                 {0x1800u, 0x4800u, 0x9100u, 0x10000u, 0x14000u, 0x21234u, 0x37000u, 0x3F000u})
                for (const bool bHead : {true, false}) {
                    TKeptStretch kept{bHead ? 0 : t, bHead ? t : line.GetLast(), {}, {}};
                    (bHead ? kept.end : kept.begin) = TCutEnd();
                    const auto spPiece = CutPath(*spWhole, line, kept);
                    dWorst = std::max(dWorst, WidthError(*spWhole, *spPiece, kept));
                    nMost = std::max(nMost, spPiece->GetStream().GetWidthPoints().size());
                    EXPECT_EQ(spPiece->GetStream().GetTerm(bHead)->GetType(), term);
                    EXPECT_EQ(spPiece->GetStream().GetTerm(!bHead)->GetType(), TERM_ROUND);
                }
            const TKeptStretch middle{0x6000, 0x33000, TCutEnd(), TCutEnd()};
            dWorst = std::max(dWorst, WidthError(*spWhole, *CutPath(*spWhole, line, middle), middle));
        }
    EXPECT_LE(dWorst, 2);
    EXPECT_LE(nMost, 14u);
}
