#include "core/Panels/PresetRows.h"

#include "core/Base/Failure.h"
#include "core/GDIBuffer/RowPicture.h"
#include "core/PanelViews/BrushView.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>

namespace {

constexpr CSize SAMPLE{112, 40};    ///< drawn at twice the size shown
constexpr size_t MAX_SAMPLES = 256; ///< of them the older half goes when there are more
constexpr wchar_t NAME_FORMAT[] = L"ブラシ%1%";

// The tool's settings as a preset without a name.
TBrushPreset PresetOf(const CRasterBrushBase& tool) {
    TBrushPreset preset{{}, tool.GetParam(), tool.GetFreehand()};
    preset.freehand.m_clrBrush = TFreehandParam().m_clrBrush;
    preset.freehand.m_clrBack = TFreehandParam().m_clrBack;
    return preset;
}

} // namespace

TBrushPreset* CPresetRows::Find(const CRasterBrushBase& tool, int nRow) {
    TBrushPresets& vPresets = m_presets.Get(tool.GetSection());
    return nRow < 0 || static_cast<size_t>(nRow) >= vPresets.size() ? nullptr
                                                                    : &vPresets[static_cast<size_t>(nRow)];
}

int CPresetRows::GetChosen(const CRasterBrushBase& tool) {
    const auto it = m_mapChosen.find(tool.GetSection());
    if (it != m_mapChosen.end() && Find(tool, it->second)) return it->second;
    const TBrushPresets& vPresets = m_presets.Get(tool.GetSection());
    const TBrushPreset present = PresetOf(tool);
    const auto itSame =
        std::ranges::find_if(vPresets, [&](const auto& preset) { return preset.SetsAs(present); });
    return itSame == vPresets.end() ? -1 : static_cast<int>(itSame - vPresets.begin());
}

std::vector<TTreeRow> CPresetRows::MakeRows(const CRasterBrushBase& tool) {
    std::vector<TTreeRow> vRows;
    for (const TBrushPreset& preset : m_presets.Get(tool.GetSection()))
        vRows.push_back({.strText = preset.strName,
                         .strNote = std::to_wstring(preset.param.BrushRadius) + L" px",
                         .spPicture = FindSample(tool.GetSection(), preset.param),
                         .bInk = true});
    const int nChosen = GetChosen(tool);
    if (const TBrushPreset* pChosen = Find(tool, nChosen); pChosen && !pChosen->SetsAs(PresetOf(tool)))
        vRows[static_cast<size_t>(nChosen)].strNote = L"変更あり";
    return vRows;
}

boost::shared_ptr<const TPicture> CPresetRows::FindSample(const std::wstring& strTool,
                                                          const TBrushParam& param) const {
    const auto it = std::ranges::find_if(m_vSamples, [&](const TSample& sample) {
        return sample.strTool == strTool && sample.param == param;
    });
    return it == m_vSamples.end() ? boost::shared_ptr<const TPicture>() : it->spPicture;
}

bool CPresetRows::DrawNextSample(const CRasterBrushBase& tool) {
    const std::wstring& strTool = tool.GetSection();
    for (const TBrushPreset& preset : m_presets.Get(strTool)) {
        if (FindSample(strTool, preset.param)) continue;
        TBrushParam param = preset.param;
        param.BrushRadius *= 2;
        const auto pBuffer =
            DrawBrushSample({.param = param, .nTool = tool.GetToolId()}, SAMPLE, m_clock, m_codecs);
        if (m_vSamples.size() >= MAX_SAMPLES)
            m_vSamples.erase(m_vSamples.begin(), m_vSamples.begin() + MAX_SAMPLES / 2);
        m_vSamples.push_back({strTool, preset.param, MakePicture(*pBuffer)});
        return true;
    }
    return false;
}

void CPresetRows::Choose(CRasterBrushBase& tool, int nRow) {
    const TBrushPreset* pPreset = Find(tool, nRow);
    if (!pPreset) return;
    TFreehandParam freehand = pPreset->freehand;
    freehand.m_clrBrush = tool.GetFreehand().m_clrBrush;
    freehand.m_clrBack = tool.GetFreehand().m_clrBack;
    tool.SetParams(pPreset->param, freehand);
    m_mapChosen[tool.GetSection()] = nRow;
}

void CPresetRows::Add(const CRasterBrushBase& tool) {
    TBrushPresets& vPresets = m_presets.Get(tool.GetSection());
    TBrushPreset preset = PresetOf(tool);
    const auto taken = [&](const TBrushPreset& other) { return other.strName == preset.strName; };
    int nNumber = 0;
    do preset.strName = FormatText(NAME_FORMAT, std::to_wstring(++nNumber));
    while (std::ranges::any_of(vPresets, taken));
    const int nRow = GetChosen(tool) + 1;
    vPresets.insert(vPresets.begin() + nRow, preset);
    m_mapChosen[tool.GetSection()] = nRow;
}

void CPresetRows::Update(const CRasterBrushBase& tool) {
    TBrushPreset* pPreset = Find(tool, GetChosen(tool));
    if (!pPreset) return;
    const std::wstring strName = pPreset->strName;
    *pPreset = PresetOf(tool);
    pPreset->strName = strName;
}

void CPresetRows::RemoveChosen(const CRasterBrushBase& tool) {
    const int nRow = GetChosen(tool);
    if (!Find(tool, nRow)) return;
    TBrushPresets& vPresets = m_presets.Get(tool.GetSection());
    vPresets.erase(vPresets.begin() + nRow);
    m_mapChosen.erase(tool.GetSection());
}

void CPresetRows::Rename(const CRasterBrushBase& tool, int nRow, const std::wstring& strName) {
    const std::wstring strTrimmed = boost::algorithm::trim_copy(strName);
    TBrushPreset* pPreset = Find(tool, nRow);
    if (pPreset && !strTrimmed.empty()) pPreset->strName = strTrimmed;
}

void CPresetRows::Move(const CRasterBrushBase& tool, int nFrom, int nTo, EDropAt at) {
    if (!Find(tool, nFrom) || nTo < 0) return;
    TBrushPresets& vPresets = m_presets.Get(tool.GetSection());
    const int nChosen = GetChosen(tool);
    int nRow = std::min(at == EDropAt::Above ? nTo : nTo + 1, static_cast<int>(vPresets.size()));
    if (nFrom < nRow) --nRow;
    const TBrushPreset preset = vPresets[static_cast<size_t>(nFrom)];
    vPresets.erase(vPresets.begin() + nFrom);
    vPresets.insert(vPresets.begin() + nRow, preset);
    // The same preset stays chosen.
    if (nChosen == nFrom)
        m_mapChosen[tool.GetSection()] = nRow;
    else if (nChosen >= 0)
        m_mapChosen[tool.GetSection()] = nChosen - (nFrom < nChosen) + (nRow <= nChosen - (nFrom < nChosen));
}

std::string CPresetRows::FormatFile(const std::wstring& strTool) {
    return FormatPresets({{strTool, m_presets.Get(strTool)}});
}
