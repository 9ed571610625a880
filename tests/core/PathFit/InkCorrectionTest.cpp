// Pen strokes corrected from the samples that they keep.
#include "core/PathFit/InkCorrection.h"
#include "core/PathObject/PathObjects.h"
#include "core/RasterStroke/PressureCurve.h"
#include "tests/support/Paths.h"

namespace {

/// A wave with a tremor, as a mouse draws it.
TInkSamples MakeSamples() {
    TInkSamples samples;
    samples.param.BrushRadius = 12;
    samples.param.CurveStrength = 0;
    for (int n = 0; n <= 150; ++n)
        samples.input.vPoints.push_back({400 + 16 * n,
                                         static_cast<int32_t>(900 + 300 * std::sin(n / 20.0)) + n * 7 % 11,
                                         static_cast<uint32_t>(500 + 3 * n), UPRIGHT});
    return samples;
}

boost::shared_ptr<COpenPathObject> Copy(const COpenPathObject& path) {
    const auto spCopy = boost::make_shared<COpenPathObject>();
    CDeserializer reader(path.Serialize());
    spCopy->Deserialize(reader);
    return spCopy;
}

} // namespace

TEST(InkCorrection, SmoothingAndToleranceChangeTheShape) {
    const auto spPath = MakeInk(MakeSamples());
    ASSERT_TRUE(spPath);
    COpenPathStream& stream = spPath->GetStream();
    const size_t nRough = stream.ControlPointCount();
    const TBytes vRough = BytesOf(*spPath);
    CorrectInk(stream, {.uSmoothing = 16, .uTolerance = {}});
    spPath->Update();
    EXPECT_LT(stream.ControlPointCount(), nRough / 2) << "the tremor is gone";
    EXPECT_EQ(stream.GetSamples()->param.CurveStrength, 16u);
    EXPECT_NEAR(stream.RectIncludingPath(STATE_COMMITTED).right, 400 + 16 * 150 + 48, 12) << "the end is not";
    CorrectInk(stream, {.uSmoothing = 0, .uTolerance = 400});
    EXPECT_LE(stream.ControlPointCount(), 8u);
    CorrectInk(stream, {.uSmoothing = {}, .uTolerance = 35});
    spPath->Update();
    EXPECT_EQ(BytesOf(*spPath), vRough) << "as if nothing had been";
}

TEST(InkCorrection, TheUsersWidthWaveAndFlatEndsStay) {
    const auto spPath = MakeInk(MakeSamples());
    COpenPathStream& stream = spPath->GetStream();
    const uint32_t uWidth = stream.GetWidth();
    stream.SetWidth(uWidth * 2);
    stream.SetWave(true, {64, 8});
    stream.SetTerm(CreateOpenPathTerm(TERM_FLAT, false));
    CorrectInk(stream, {.uSmoothing = 8, .uTolerance = {}});
    EXPECT_NEAR(stream.GetWidth(), uWidth * 2, 5) << "twice the tolerance of a half-width";
    EXPECT_TRUE(stream.HasWave() && stream.GetWave().uStep == 64);
    EXPECT_EQ(stream.GetTerm(false)->GetType(), TERM_FLAT);
    EXPECT_EQ(stream.GetTerm(true)->GetType(), TERM_ROUND);
}

TEST(InkSamples, FollowMappingsAndLeaveWithTheShape) {
    const auto spPath = MakeInk(MakeSamples());
    COpenPathStream& stream = spPath->GetStream();
    const auto move = [](CPoint pt) { return CPoint{pt.x + 80, pt.y - 16}; };
    spPath->Transform(move, 1);
    ASSERT_TRUE(stream.GetSamples());
    EXPECT_EQ(stream.GetSamples()->input.vPoints[0].x, 480);
    CPathObject::TransformLive({spPath}, move, 1);
    spPath->CommitDrag();
    ASSERT_TRUE(stream.GetSamples());
    EXPECT_EQ(stream.GetSamples()->input.vPoints[0].x, 560);
    const auto spUndo = spPath->CreateSnapshot();
    stream.GetControlPoint(0)->SetAnchor(CDualValue<CPoint>({0, 0}));
    spPath->Update();
    EXPECT_FALSE(stream.GetSamples());
    EXPECT_FALSE(Copy(*spPath)->GetStream().GetSamples());
    spPath->ApplySnapshot(*spUndo);
    EXPECT_TRUE(stream.GetSamples());
    stream.AddWidthPoint(100);
    EXPECT_FALSE(stream.GetSamples()) << "a correction would lose the point";
}

TEST(InkSamples, AreStoredAndDamagedOnesAreLeftOut) {
    const auto spPath = MakeInk(MakeSamples());
    const auto spCopy = Copy(*spPath);
    ASSERT_TRUE(spCopy->GetStream().GetSamples());
    EXPECT_EQ(spCopy->GetStream().GetSamples()->input, spPath->GetStream().GetSamples()->input);
    EXPECT_EQ(BytesOf(*spCopy), BytesOf(*spPath));
    // Of an ordinary, smoothed stroke.
    CorrectInk(spPath->GetStream(), {.uSmoothing = 8, .uTolerance = {}});
    CSerializer without = spPath->Serialize();
    const size_t nWith = without.GetWhole().size();
    without.Detach(TInkSamples::CHUNK_TAG);
    const size_t nSamples = nWith - without.GetWhole().size();
    EXPECT_LE(nSamples / 151, 60u);
    EXPECT_LE(without.GetWhole().size(), 1500u);
    // More samples than bytes, and none at all.
    for (const int32_t nCount : {1000000, -1}) {
        CSerializer damaged;
        damaged.SetTag(TInkSamples::CHUNK_TAG, 0);
        for (int n = 0; n < 19; ++n) damaged.WriteInt32(nCount);
        CDeserializer reader(damaged);
        EXPECT_FALSE(TInkSamples::Deserialize(reader));
    }
}
