#include "core/MainFrame/StatusLine.h"

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Platform/System.h"
#include "core/Platform/Window.h"
#include "core/Tools/Tools.h"

#include <utility>

namespace {

constexpr int PANE_TEXT = 0;
constexpr int PANE_POSITION = 2;
constexpr uint32_t POSITION_MS = 50;
constexpr std::pair<int, uint32_t> MODIFIERS[] = {
    {VK_Control, POINTER_CONTROL}, {VK_Shift, POINTER_SHIFT}, {VK_Alt, POINTER_ALT}};

} // namespace

const wchar_t* CStatusLine::FindHint(CCanvasFrame* pFrame) const {
    const auto spTool = pFrame ? pFrame->GetInput().GetTool() : nullptr;
    if (!spTool) return L"";
    if (pFrame->GetInput().IsHand()) return L"ドラッグ: 画面を動かす";
    uint32_t uModifiers = 0;
    for (const auto& [nKey, uFlag] : MODIFIERS)
        if (m_keys.IsKeyDown(nKey)) uModifiers |= uFlag;
    return spTool->GetHint(uModifiers);
}

void CStatusLine::Update(IMainWindow& window, CCanvasFrame* pFrame, const std::wstring& strTold) {
    const wchar_t* pszText = strTold.empty() ? FindHint(pFrame) : strTold.c_str();
    if (m_strText != pszText) window.SetStatusText(PANE_TEXT, m_strText = pszText);

    const uint32_t uNow = m_clock.GetTickCount();
    if (uNow - m_uPositionTick < POSITION_MS) return;
    const auto ptPixel = pFrame ? pFrame->GetPointedPixel() : std::nullopt;
    std::wstring strPosition;
    if (ptPixel) strPosition = std::to_wstring(ptPixel->x) + L", " + std::to_wstring(ptPixel->y);
    if (strPosition == m_strPosition) return;
    window.SetStatusText(PANE_POSITION, m_strPosition = strPosition);
    m_uPositionTick = uNow;
}
