// A stroke in progress: renders control points as coverage, on planes of its own until it is merged.
#pragma once

#include "core/Base/Color.h"
#include "core/RasterStamp/StampTarget.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/CtlPoint.h"
#include "core/RasterStroke/PressureCurve.h"
#include "core/RasterStroke/ResampleWindow.h"
#include "core/RasterStroke/StrokeRandom.h"
#include "core/RasterStroke/Wobble.h"

#include <memory>
#include <string>
#include <vector>

class IClock;
class IImageCodecs;

/// The setup of a stroke. Clock and codecs must outlive it; it draws two random numbers as seeds.
struct TStrokeSetup {
    CSize szCanvas{};
    TColor color = 0;
    bool bErase = false;
    bool bDouble = false;   ///< use a plane of twice the resolution
    std::wstring strName{}; ///< of the undo record
    TBrushParam param{};
    IClock& clock;
    CStrokeRandom& random;
    int nPredict = 0;                ///< 0 (off) to 3
    IImageCodecs* pCodecs = nullptr; ///< for the paper textures of pencils; unused by others
};

/// The picture depends only on the control points, the parameters and the random numbers: not on the clock,
/// the number of calls of Update, or whether the prediction is shown. One thread.
class CRasterStroke : boost::noncopyable {
public:
    explicit CRasterStroke(const TStrokeSetup& setup);
    virtual ~CRasterStroke();

    /// Adds a point (canvas eighths; pressure 0 to 1024, FINAL_PRESSURE ends the stroke; altitude in
    /// degrees). The first points are faded in; points behind the end are ignored.
    void AddCtlPoint(CPoint pt, uint32_t pressure, uint32_t altitude);
    /// Makes the stroke a dot: one stamp in each pass, without wobble, spray and fade-in. Requires a stroke
    /// without points; the point that ends it follows.
    void AddTap(CPoint pt, uint32_t pressure, uint32_t altitude);
    /// Renders the available points, at least one step. True when no work is left; false after slightly
    /// more than 1 ms (5 ms for the prediction), to be called again.
    bool Update();

    /// The plane that is merged at the end.
    CAlphaBufferBase& GetMain() { return *m_spMain; }
    /// The plane to be shown meanwhile: a new one after each Update with a prediction, the main one from
    /// the last point on.
    CAlphaBufferBase& GetDisplay() { return m_spPredict ? *m_spPredict : *m_spMain; }
    const std::wstring& GetName() const { return m_strName; }
    const TBrushParam& GetParam() const { return m_param; }
    /// The points added, faded in.
    const std::vector<TCtlPoint>& GetPoints() const { return m_vCtl; }
    /// The wobble's offsets: one entry for each point, none for the end.
    const CWobble& GetWobble() const { return m_wobble; }
    /// The free function with this stroke's parameters.
    void EvaluatePressure(uint32_t& uRadius, uint8_t& byAlpha, uint32_t pressure, int nScale) const;

protected:
    /// One stamp as the renderer needs it.
    struct TBrushData {
        const uint16_t* pBuffer = nullptr; ///< stored as in StampShape.h; valid until the next GetBrush
        uint32_t uBufferSize = 0;          ///< half the stamp's side in plane pixels
        uint32_t uStep = 0;                ///< distance to the next stamp, in eighths of a plane pixel
        uint8_t byAlpha = 0;
    };
    /// The stamp for plane pixel (`ix`, `iy`) and the position `fx`, `fy` (0 to 7 eighths) within it.
    virtual void GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t altitude, int nScale,
                          int ix, int iy) = 0;

    /// The lower limit of the radius (8192ths of a canvas pixel) in the present step, 0 without a wobble.
    uint32_t GetMinRadius() const { return m_uMinRadius; }
    CStrokeRandom& GetRandom() { return m_randomStamps; }
    /// True while the prediction is drawn, which is only shown.
    bool IsPredicting() const { return m_bPredicting; }

private:
    // The state of the walk along the points.
    struct TRasterContext {
        uint32_t uStep = 1;
        uint32_t auRest[CWobble::PASSES] = {};
        TCtlPoint aptPrev[CWobble::PASSES] = {};
    };
    struct TPrediction;
    class CPredicting;
    struct TPressure {
        uint32_t uRadius;
        uint8_t byAlpha;
        bool bKnown;
    };

    bool IsFinished() const { return !m_vCtl.empty() && m_vCtl.back().pressure == FINAL_PRESSURE; }
    static const CResampleWindow& WindowFor(CResampleWindow& window, uint32_t uWindow, size_t nCount);
    bool DrawTap();
    void DrawStep(size_t nCount);
    void DrawPass(size_t nPass, const TCtlPoint& pt);
    uint32_t DrawSegment(CStampTarget& target, const TCtlPoint& ptFrom, const TCtlPoint& ptTo,
                         uint32_t uRest);
    uint32_t Stamp(CStampTarget& target, CPoint pt, uint32_t pressure, uint32_t altitude);
    CPoint Scatter(uint32_t pressure);
    bool Predict();
    bool DrawPrediction(TPrediction& prediction);

    const std::wstring m_strName;
    const TBrushParam m_param;
    const TPressureParam m_pressure;
    IClock& m_clock;
    // A generator of its own, because the clock decides the order in which points arrive and stamps are
    // drawn.
    CStrokeRandom m_randomWobble;
    CStrokeRandom m_randomStamps;
    const int m_nPredict;
    boost::shared_ptr<CStrokePlane> m_spMain;
    boost::shared_ptr<CStrokePlane> m_spPredict;
    CStampTarget m_target;
    int m_nScale;
    std::vector<TCtlPoint> m_vCtl;
    bool m_bTap = false;     ///< the first point is a dot
    size_t m_nTapPasses = 0; ///< remaining passes of the dot
    CWobble m_wobble;
    CResampleWindow m_window;
    CResampleWindow m_windowWave;
    std::unique_ptr<TRasterContext> m_spContext;
    std::unique_ptr<TPrediction> m_pPrediction; ///< begun and not finished by the last Update
    uint32_t m_uMinRadius = 0;
    bool m_bPredicting = false;
    mutable std::vector<TPressure> m_vPressures; ///< by pressure, for m_nScale
};
