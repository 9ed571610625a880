#include "core/RasterStroke/RasterStroke.h"

#include "core/Base/StableMath.h"
#include "core/Platform/System.h"
#include "core/RasterStroke/SegmentWalk.h"
#include "core/RasterStroke/StrokePrediction.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr uint32_t UPDATE_BUDGET = 1; // milliseconds
constexpr uint32_t PREDICT_BUDGET = 5;
// The wobble widens no line beyond the largest brush.
constexpr double WIDEST = MAX_BRUSH_RADIUS << 12;

boost::shared_ptr<CStrokePlane> MakePlane(const TStrokeSetup& setup) {
    boost::shared_ptr<CStrokePlane> spPlane;
    if (setup.bDouble)
        spPlane = boost::make_shared<CDoubleAlphaBuffer>();
    else
        spPlane = boost::make_shared<CStrokePlane>();
    spPlane->Create(setup.szCanvas, DEFAULT_BLOCKSIZE);
    spPlane->SetErase(setup.bErase);
    if (!setup.bErase) spPlane->SetColor(setup.color);
    return spPlane;
}

} // namespace

CRasterStroke::CRasterStroke(const TStrokeSetup& setup)
    : m_strName(setup.strName), m_param(setup.param), m_pressure(PressureParamOf(setup.param)),
      m_clock(setup.clock), m_randomWobble(setup.random.Twister()()),
      m_randomStamps(setup.random.Twister()()), m_nPredict(setup.nPredict), m_spMain(MakePlane(setup)),
      m_target(*m_spMain), m_nScale(m_spMain->GetResolutionScale()), m_window(setup.param.CurveStrength),
      m_windowWave(setup.param.WaveSmooth), m_vPressures(FULL_PRESSURE + 1) {
    SELF_CHECK(invalid_argument, m_param.BrushRadius <= MAX_BRUSH_RADIUS);
}

CRasterStroke::~CRasterStroke() = default;

// A prediction being drawn, on a plane of its own.
struct CRasterStroke::TPrediction {
    explicit TPrediction(const boost::shared_ptr<CStrokePlane>& sp) : spPlane(sp), target(*sp) {}
    boost::shared_ptr<CStrokePlane> spPlane;
    CStampTarget target;
    std::vector<TCtlPoint> vPoints;
    CStrokeRandom random;
    uint32_t uStep = 0;
    uint32_t uRest = 0;
    TCtlPoint ptPrev{};
};

// The prediction must not change the line itself: meanwhile the prediction's random numbers are used.
class CRasterStroke::CPredicting : boost::noncopyable {
public:
    CPredicting(CRasterStroke& stroke, TPrediction& prediction) : m_stroke(stroke), m_prediction(prediction) {
        Turn(true);
    }
    ~CPredicting() { Turn(false); }

private:
    void Turn(bool bPredicting) {
        std::swap(m_stroke.m_randomStamps, m_prediction.random);
        m_stroke.m_bPredicting = bPredicting;
    }
    CRasterStroke& m_stroke;
    TPrediction& m_prediction;
};

void CRasterStroke::EvaluatePressure(uint32_t& uRadius, uint8_t& byAlpha, uint32_t pressure,
                                     int nScale) const {
    if (nScale != m_nScale) {
        ::EvaluatePressure(m_pressure, uRadius, byAlpha, pressure, nScale);
        return;
    }
    TPressure& known = m_vPressures[std::min(pressure, FULL_PRESSURE)];
    if (!known.bKnown) {
        ::EvaluatePressure(m_pressure, known.uRadius, known.byAlpha, pressure, nScale);
        known.bKnown = true;
    }
    uRadius = known.uRadius;
    byAlpha = known.byAlpha;
}

void CRasterStroke::AddCtlPoint(CPoint pt, uint32_t pressure, uint32_t altitude) {
    if (IsFinished()) return;
    m_pPrediction.reset();
    pressure = FadeInPressure(pressure, static_cast<uint32_t>(m_vCtl.size()), m_param.CurveStrength);
    m_vCtl.push_back({pt.x, pt.y, pressure, altitude});
    if (IsFinished()) {
        // No more points are expected: the line is shown in its final form.
        if (m_spPredict) FlagDifferences(*m_spMain, *m_spPredict);
        m_spPredict.reset();
        return;
    }
    uint32_t uRadius = 0;
    uint8_t byAlpha = 0;
    EvaluatePressure(uRadius, byAlpha, pressure, 1);
    m_wobble.Append(m_param, pressure, uRadius, m_randomWobble);
}

void CRasterStroke::AddTap(CPoint pt, uint32_t pressure, uint32_t altitude) {
    m_vCtl.assign(1, {pt.x, pt.y, pressure, altitude});
    m_nTapPasses = m_param.WaveEnable ? CWobble::PASSES : 1;
    m_bTap = true;
}

bool CRasterStroke::DrawTap() {
    const TCtlPoint& pt = m_vCtl.front();
    for (; m_nTapPasses > 0; --m_nTapPasses)
        Stamp(m_target, {pt.x * m_nScale, pt.y * m_nScale}, pt.pressure, pt.altitude);
    return true;
}

// A window is never wider than there are points.
const CResampleWindow& CRasterStroke::WindowFor(CResampleWindow& window, uint32_t uWindow, size_t nCount) {
    const auto uWidth = static_cast<uint32_t>(std::min<size_t>(uWindow, nCount));
    if (window.GetWindow() != uWidth) window = CResampleWindow(uWidth);
    return window;
}

bool CRasterStroke::Update() {
    if (m_bTap) return DrawTap();
    const bool bFinished = IsFinished();
    const size_t nCount = m_vCtl.size() - (bFinished ? 1 : 0);
    if (nCount == 0) return true;
    if (!m_spContext) {
        m_spContext = std::make_unique<TRasterContext>();
        std::fill_n(m_spContext->aptPrev, CWobble::PASSES, m_vCtl.front());
    }
    const uint32_t uStart = m_clock.GetTickCount();
    const size_t nReach = WindowFor(m_window, m_param.CurveStrength, nCount).GetReach();
    const size_t nLast = bFinished ? nCount : nCount > nReach ? nCount - nReach : 0;
    while (m_spContext->uStep <= nLast * STEPS_PER_POINT) {
        m_pPrediction.reset();
        DrawStep(nCount);
        ++m_spContext->uStep;
        if (m_clock.GetTickCount() - uStart > UPDATE_BUDGET) return false;
    }
    return m_nPredict == 0 || bFinished || Predict();
}

void CRasterStroke::DrawStep(size_t nCount) {
    const uint32_t uStep = m_spContext->uStep;
    const TCtlPoint pt = m_window.PointAt(m_vCtl.data(), nCount, uStep);
    // A step uses the wobble only of the points that it needs: the number of further points depends on the
    // time.
    const size_t nSeen = (uStep + STEPS_PER_POINT - 1) / STEPS_PER_POINT + m_window.GetReach();
    for (size_t nPass = 0; nPass < CWobble::PASSES; ++nPass) {
        const CWobble::TList& lst = m_wobble.GetLists()[nPass];
        if (lst.empty()) continue;
        const size_t nWave = std::min(lst.size(), nSeen);
        const TCtlPoint offset =
            WindowFor(m_windowWave, m_param.WaveSmooth, nWave).PointAt(lst.data(), nWave, uStep);
        // A strongly wobbling line must not become thinner than its offset.
        const double dSquare =
            static_cast<double>(offset.x) * offset.x + static_cast<double>(offset.y) * offset.y;
        const double dRadius = std::sqrt(dSquare) * 1024 / ((m_param.BlurLevel / 100 + 1) * 0.5);
        m_uMinRadius = static_cast<uint32_t>(std::min(dRadius, WIDEST));
        DrawPass(nPass, {pt.x + offset.x, pt.y + offset.y, pt.pressure, pt.altitude});
        m_uMinRadius = 0;
    }
}

void CRasterStroke::DrawPass(size_t nPass, const TCtlPoint& pt) {
    TCtlPoint& ptPrev = m_spContext->aptPrev[nPass];
    uint32_t& uRest = m_spContext->auRest[nPass];
    if (m_spContext->uStep == 1 && ptPrev.pressure != 0)
        uRest +=
            Stamp(m_target, {ptPrev.x * m_nScale, ptPrev.y * m_nScale}, ptPrev.pressure, ptPrev.altitude);
    uRest = DrawSegment(m_target, ptPrev, pt, uRest);
    ptPrev = pt;
}

uint32_t CRasterStroke::DrawSegment(CStampTarget& target, const TCtlPoint& ptFrom, const TCtlPoint& ptTo,
                                    uint32_t uRest) {
    const CSegmentWalk walk(ptFrom, ptTo, m_nScale);
    if (walk.GetLength() == 0) return uRest;
    uint32_t uAt = uRest;
    while (uAt < walk.GetLength()) {
        const TCtlPoint pt = walk.PointAt(uAt);
        uAt += Stamp(target, CPoint{pt.x, pt.y} + Scatter(pt.pressure), pt.pressure, pt.altitude);
    }
    return uAt - walk.GetLength();
}

// The spray of a stamp. The angle covers only half a turn: rough lines lean downwards. The numbers are
// drawn even without a spray.
CPoint CRasterStroke::Scatter(uint32_t pressure) {
    constexpr double PI = 3.14159265358979323846;
    constexpr double LARGEST = CStrokeRandom::RAND_LARGEST;
    const int nDistance = m_randomStamps.Rand();
    const int nAngle = m_randomStamps.Rand();
    if (m_param.Spray == 0) return {};
    uint32_t uRadius = 0;
    uint8_t byAlpha = 0;
    EvaluatePressure(uRadius, byAlpha, pressure, m_nScale);
    const double d = std::min(
        static_cast<double>(uRadius / 1024) * m_param.Spray * (nDistance / LARGEST) / 100.0, m_nScale * 32.0);
    const TSinCos direction = StableSinCos(nAngle / LARGEST * PI);
    return {static_cast<int32_t>(d * direction.dCos), static_cast<int32_t>(d * direction.dSin)};
}

uint32_t CRasterStroke::Stamp(CStampTarget& target, CPoint pt, uint32_t pressure, uint32_t altitude) {
    const CPoint ptPixel{pt.x >> 3, pt.y >> 3};
    TBrushData brush;
    GetBrush(brush, pt.x & 7, pt.y & 7, pressure, altitude, m_nScale, ptPixel.x, ptPixel.y);
    if (brush.byAlpha != 0) target.Draw(brush.pBuffer, brush.uBufferSize, ptPixel, brush.byAlpha);
    return brush.uStep;
}

// Work beyond the budget continues with the next call, unless the line has moved on.
bool CRasterStroke::Predict() {
    if (!m_pPrediction) {
        auto pPrediction = std::make_unique<TPrediction>(MakePredictPlane(*m_spMain, m_spPredict.get()));
        m_target.ForgetTiles();
        pPrediction->vPoints = PredictPoints(m_vCtl, m_nPredict, m_param.CurveStrength);
        pPrediction->random = m_randomStamps;
        pPrediction->uStep = m_spContext->uStep;
        pPrediction->uRest = m_spContext->auRest[0];
        pPrediction->ptPrev = m_spContext->aptPrev[0];
        m_pPrediction = std::move(pPrediction);
    }
    if (!DrawPrediction(*m_pPrediction)) return false;
    m_spPredict = m_pPrediction->spPlane;
    m_pPrediction.reset();
    m_spMain->GetDirty().Fill(false); // the display plane has copied its flags
    return true;
}

bool CRasterStroke::DrawPrediction(TPrediction& prediction) {
    const CPredicting predicting(*this, prediction);
    const uint32_t uStart = m_clock.GetTickCount();
    const std::vector<TCtlPoint>& vPoints = prediction.vPoints;
    const CResampleWindow& window = WindowFor(m_window, m_param.CurveStrength, vPoints.size());
    const size_t nLast = vPoints.size() > window.GetReach() ? vPoints.size() - window.GetReach() : 0;
    while (prediction.uStep <= nLast * STEPS_PER_POINT) {
        const TCtlPoint pt = window.PointAt(vPoints.data(), vPoints.size(), prediction.uStep);
        prediction.uRest = DrawSegment(prediction.target, prediction.ptPrev, pt, prediction.uRest);
        prediction.ptPrev = pt;
        prediction.uStep += STEPS_PER_POINT;
        if (m_clock.GetTickCount() - uStart > PREDICT_BUDGET) return false;
    }
    if (m_nPredict == 1) DrawSegment(prediction.target, prediction.ptPrev, vPoints.back(), prediction.uRest);
    return true;
}
