#include "core/RasterBrush/FreehandTools.h"

#include "core/Platform/System.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "core/RasterStroke/RasterPencilStroke.h"

#include <boost/make_shared.hpp>

#include <utility>

bool CRasterBrush::OnKeyDown(int nKey) {
    IKeyState& keys = GetOutside().keys;
    if (nKey != 'X' || keys.IsKeyDown(VK_Control) || keys.IsKeyDown(VK_Alt))
        return CRasterBrushImpl::OnKeyDown(nKey);
    std::swap(m_freehand.m_clrBrush, m_freehand.m_clrBack);
    GetOutside().fnNotify(EToolNotice::ColorChanged);
    return false;
}

boost::shared_ptr<CRasterStroke> CRasterBrush::CreateStroke(const CCanvasBuffer& canvas) {
    TStrokeSetup setup = MakeSetup(canvas);
    setup.bDouble = WantsDoublePlane();
    return boost::make_shared<CRasterBrushStroke>(setup);
}

boost::shared_ptr<CRasterStroke> CRasterEraser::CreateStroke(const CCanvasBuffer& canvas) {
    TStrokeSetup setup = MakeSetup(canvas);
    setup.color = 0;
    setup.bErase = true;
    setup.bDouble = WantsDoublePlane();
    return boost::make_shared<CRasterBrushStroke>(setup);
}

CRasterPencil::CRasterPencil(const TToolOutside& outside) : CRasterBrushImpl(outside, L"RasterPencil") {
    CRasterPencil::Constrain();
}

void CRasterPencil::Constrain() {
    m_param.WaveEnable = true;
    m_param.Spray = 0;
}

boost::shared_ptr<CRasterStroke> CRasterPencil::CreateStroke(const CCanvasBuffer& canvas) {
    return boost::make_shared<CRasterPencilStroke>(MakeSetup(canvas));
}
