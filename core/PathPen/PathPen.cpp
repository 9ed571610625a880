#include "core/PathPen/PathPen.h"

#include "core/Base/Failure.h"
#include "core/Commands/CommandIds.h"
#include "core/PathCtlPtHandle/VectorTool.h"
#include "core/PathFit/InkCorrection.h"
#include "core/PathToolBase/PathToolHistory.h"
#include "core/RasterStroke/RasterBrushStroke.h"

#include <boost/make_shared.hpp>

#include <exception>

namespace {

constexpr uint8_t HARD_EDGE = 100;

} // namespace

CPathPen::CPathPen(const TToolOutside& outside)
    : CRasterBrushImpl(outside, L"PathPen"), m_penParam(TPathPenParam::Read(outside.config)),
      m_penParamRead(m_penParam) {
    CPathPen::Constrain();
}

CPathPen::~CPathPen() {
    try {
        CPathPen::KeepSettings();
    } catch (const std::exception&) {
        // The settings of the last time stay.
    }
}

void CPathPen::KeepSettings() {
    CRasterBrushImpl::KeepSettings();
    if (m_penParam == m_penParamRead) return;
    m_penParam.Write(GetOutside().config);
    m_penParamRead = m_penParam;
}

const wchar_t* CPathPen::GetRefusal() const { return GetVectorRefusal(GetLayer()); }

bool CPathPen::CanCommand(int nId) const {
    return (nId == ID_BRUSH_SMALLER || nId == ID_BRUSH_LARGER) && CRasterBrushImpl::CanCommand(nId);
}

// A path has neither soft edges nor the brush's wobble and scatter.
void CPathPen::Constrain() {
    m_param.BlurLevel = HARD_EDGE;
    m_param.WaveEnable = false;
    m_param.Spray = 0;
}

boost::shared_ptr<CVectorLayerBuffer> CPathPen::GetVectorLayer() const {
    return boost::dynamic_pointer_cast<CVectorLayerBuffer>(GetLayer());
}

boost::shared_ptr<CRasterStroke> CPathPen::CreateStroke(const CCanvasBuffer& canvas) {
    const auto spLayer = GetVectorLayer();
    if (!spLayer) throw internal_error(L"BeginStroke: VectorBuffer not found");
    Constrain();
    TStrokeSetup setup = MakeSetup(canvas);
    setup.color = spLayer->GetLayerColor();
    setup.bDouble = WantsDoublePlane();
    return boost::make_shared<CRasterBrushStroke>(setup);
}

void CPathPen::ShowStroke(const boost::shared_ptr<CRasterStroke>& spStroke) {
    if (const auto spLayer = GetVectorLayer()) spLayer->SetStroke(spStroke);
}

void CPathPen::FinishStroke(const boost::shared_ptr<CRasterStroke>& spStroke, const TStrokeInput& input) {
    const auto spLayer = GetVectorLayer();
    if (!spLayer) throw internal_error(L"CommitStroke: VectorBuffer not found");
    const TInkSamples samples{
        .input = input, .param = spStroke->GetParam(), .uTolerance = m_penParam.uTolerance};
    spLayer->SetStroke({}); // also when no path can be made
    const auto spPath = MakeInkOrRough(samples);
    if (!spPath) return; // pressed too lightly to draw
    spLayer->InsertPath(spPath);
    try {
        GetCanvas()->GetHistory().Register(boost::make_shared<CAddDelPathHistory<0>>(
            spLayer, spPath, static_cast<int>(spLayer->GetPaths().size()) - 1, GetName()));
    } catch (...) {
        spLayer->RemovePath(spPath);
        throw;
    }
    spLayer->SelectPath(spPath);
}
