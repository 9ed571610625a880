#include "core/RasterBrush/RasterBrushImpl.h"

#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"
#include "core/Tools/OverlayCircle.h"

#include <algorithm>
#include <exception>

namespace {

std::vector<std::pair<std::wstring, int32_t>> ListSettings(const TBrushParam& param,
                                                           const TFreehandParam& freehand) {
    auto vValues = ListBrushParam(param);
    const auto vFreehand = ListFreehandParam(freehand);
    vValues.insert(vValues.end(), vFreehand.begin(), vFreehand.end());
    return vValues;
}

} // namespace

CRasterBrushImpl::CRasterBrushImpl(const TToolOutside& outside, const std::wstring& strSection)
    : CRasterBrushBase(outside), m_strSection(strSection) {
    const auto spSection = outside.config.GetSection(L"BrushParam")->GetSection(strSection);
    const auto find = [&](const std::wstring& strKey, int32_t nDefault) {
        return spSection->GetInt(strKey, nDefault);
    };
    m_param = ReadBrushParam(find);
    m_freehand = ReadFreehandParam(find);
    m_paramRead = m_param;
    m_freehandRead = m_freehand;
    m_bTapDot = outside.config.GetSection(L"Tablet")->GetInt(L"TapDot", 1) != 0;
}

CRasterBrushImpl::~CRasterBrushImpl() {
    try {
        CRasterBrushImpl::KeepSettings();
    } catch (const std::exception&) {
        // If even that runs out of memory, the next tool has the previously saved settings.
    }
}

void CRasterBrushImpl::KeepSettings() {
    if (m_param == m_paramRead && m_freehand == m_freehandRead) return;
    // The store may be shared: values that this tool did not change are not written.
    const auto vRead = ListSettings(m_paramRead, m_freehandRead);
    auto vChanged = ListSettings(m_param, m_freehand);
    std::erase_if(vChanged, [&](const auto& value) { return std::ranges::count(vRead, value) != 0; });
    GetOutside().config.GetSection(L"BrushParam")->GetSection(m_strSection)->SetInts(vChanged);
    m_paramRead = m_param;
    m_freehandRead = m_freehand;
}

bool CRasterBrushImpl::OnKeyDown(int nKey) {
    if (nKey != VK_Alt) return CRasterBrushBase::OnKeyDown(nKey);
    SetPicking(true);
    return true;
}

bool CRasterBrushImpl::OnKeyUp(int nKey) {
    if (nKey != VK_Alt) return CRasterBrushBase::OnKeyUp(nKey);
    SetPicking(false);
    return true;
}

void CRasterBrushImpl::DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const {
    if (!m_bCursorValid) return;
    if (IsPicking()) {
        overlay.DrawPickIcon(mapper(m_ptCursor));
        return;
    }
    DrawCircle(overlay, mapper, m_ptCursor, static_cast<int32_t>(m_param.BrushRadius) * 4);
}

TStrokeSetup CRasterBrushImpl::MakeSetup(const CCanvasBuffer& canvas) const {
    return {.szCanvas = canvas.GetSize(),
            .color = m_freehand.m_clrBrush,
            .bErase = false,
            .bDouble = false,
            .strName = GetName(),
            .param = m_param,
            .clock = GetOutside().clock,
            .random = GetOutside().random,
            .nPredict = GetOutside().switches.m_nPredStroke,
            .pCodecs = &GetOutside().codecs};
}
