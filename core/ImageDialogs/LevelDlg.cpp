#include "core/ImageDialogs/LevelDlg.h"

#include "core/Base/Decimal.h"
#include "core/Base/Failure.h"
#include "core/ImageOperation/LevelHistogram.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace {

enum EField : int {
    ID_PREVIEW = 1401,
    ID_HISTOGRAM = 1404,
    ID_SLIDER,
    ID_LOW,
    ID_GAMMA,
    ID_HIGH,
    ID_CHANNEL,
    ID_ZOOM,
    ID_RESET,
};

struct TChannelRow {
    const wchar_t* pszText;
    uint32_t uChannels;
};

constexpr TChannelRow COLOR_ROWS[] = {{L"RGB", 14}, {L"R", 8}, {L"G", 4}, {L"B", 2}, {L"α", 1}};
constexpr TChannelRow GREY_ROWS[] = {{L"グレー", 2}, {L"α", 1}};

std::span<const TChannelRow> ChannelRows(bool bColor) {
    return bColor ? std::span<const TChannelRow>(COLOR_ROWS) : std::span<const TChannelRow>(GREY_ROWS);
}

constexpr int TOP_LEVEL = 255;
constexpr float MIN_GAMMA = 0.1F, MAX_GAMMA = 4.0F;
constexpr CSize HISTOGRAM_SIZE{LEVEL_WIDTH, 140};
constexpr CSize SLIDER_SIZE{LEVEL_WIDTH, 18};
constexpr CSize EDIT_SIZE{64, 0};

} // namespace

CLevelDlg::CLevelDlg(const TPreviewSource& source)
    : CPreviewDialog(source, ID_PREVIEW, ID_ZOOM), m_source(source) {
    using enum TPanelControl::EKind;
    std::vector<std::wstring> vRows;
    for (const TChannelRow& row : ChannelRows(IsColor())) vRows.emplace_back(row.pszText);
    const auto edit = [](TPanelControl::EKind kind, int nId, const wchar_t* pszLabel, const char* pszName) {
        return TPanelControl{.kind = kind,
                             .nId = nId,
                             .strLabel = pszLabel,
                             .nMin = 0,
                             .nMax = TOP_LEVEL,
                             .szView = EDIT_SIZE,
                             .strName = pszName};
    };
    const TPanelControl aControls[] = {
        {.kind = Combo, .nId = ID_CHANNEL, .strLabel = L"チャンネル", .vRows = vRows, .strName = "channel"},
        {.kind = View, .nId = ID_HISTOGRAM, .szView = HISTOGRAM_SIZE, .pView = &m_wndHistogram},
        {.kind = View, .nId = ID_SLIDER, .szView = SLIDER_SIZE, .pView = &m_wndSlider},
        edit(Number, ID_LOW, L"下限", "low"),
        edit(Text, ID_GAMMA, L"ガンマ", "gamma"),
        edit(Number, ID_HIGH, L"上限", "high"),
        {.kind = Button, .nId = ID_RESET, .strText = L"元に戻す"}};
    m_vControls.insert(m_vControls.end(), std::begin(aControls), std::end(aControls));
    UpdateHistogram();
    ShowLevels();
}

uint32_t CLevelDlg::GetChosenChannels() {
    const auto rows = ChannelRows(IsColor());
    const auto nRow = static_cast<size_t>(std::max(0, Find(ID_CHANNEL).nValue));
    return rows[std::min(nRow, rows.size() - 1)].uChannels;
}

void CLevelDlg::UpdateHistogram() {
    CRasterBuffer& plane = *m_source.rstPreview;
    TLevelCounts aCounts = CountPicture(plane, m_source.rstSelect.get(), GetChosenChannels());
    LimitCounts(aCounts, plane.GetSize());
    m_wndHistogram.SetCounts(aCounts);
}

void CLevelDlg::ShowLevels() {
    Find(ID_LOW).strText = std::to_wstring(m_levels.byLow);
    Find(ID_HIGH).strText = std::to_wstring(m_levels.byHigh);
    Find(ID_GAMMA).strText = FormatNumber(L"%5.3f", m_levels.fGamma);
    GetPreview().SetOperation(LevelOperation(MakeLevelTable(m_levels), GetChosenChannels()));
}

void CLevelDlg::ReadEdit(const TPanelControl& control) {
    const auto number = ParseNumber(control.strText);
    if (!number) throw refused_error(L"数字を入力してください。");
    const auto level = [&](int nMin, int nMax) {
        return static_cast<uint8_t>(std::clamp(std::floor(*number + 0.5), double(nMin), double(nMax)));
    };
    if (control.nId == ID_LOW)
        m_levels.byLow = level(0, m_levels.byHigh - 1);
    else if (control.nId == ID_HIGH)
        m_levels.byHigh = level(m_levels.byLow + 1, TOP_LEVEL);
    else
        m_levels.fGamma = std::clamp(static_cast<float>(*number), MIN_GAMMA, MAX_GAMMA);
}

void CLevelDlg::OnValue(TPanelControl& control) {
    switch (control.nId) {
    case ID_CHANNEL:
        UpdateHistogram();
        break;
    case ID_LOW:
    case ID_GAMMA:
    case ID_HIGH:
        ReadEdit(control);
        break;
    case ID_RESET:
        m_levels = {};
        break;
    default:
        return;
    }
    ShowLevels();
}

void CLevelDlg::OnPointer(int nView, EMessage id, CPoint pt) {
    CPreviewDialog::OnPointer(nView, id, pt);
    if (nView == ID_SLIDER && m_wndSlider.OnPointer(id, pt)) ShowLevels();
}

void CLevelDlg::OnKey(int nView, int nKey) {
    if (nView == ID_SLIDER && m_wndSlider.OnKey(nKey)) ShowLevels();
}

bool CLevelDlg::OnOk(IWindow*) {
    m_byLut = MakeLevelTable(m_levels);
    m_uChannels = GetChosenChannels();
    return true;
}
