#include "core/MainFrame/StatusLine.h"

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Platform/System.h"
#include "core/Platform/Window.h"
#include "core/Tools/Tools.h"

#include <boost/algorithm/string/replace.hpp>

#include <utility>

namespace {

constexpr int PANE_TEXT = 0;
constexpr int PANE_POSITION = 2;
constexpr uint32_t POSITION_MS = 50;
constexpr std::pair<int, uint32_t> MODIFIERS[] = {
    {VK_Control, POINTER_CONTROL}, {VK_Shift, POINTER_SHIFT}, {VK_Alt, POINTER_ALT}};
/// As the hints of tools name the keys that others of the set stand beside.
constexpr std::pair<int, const wchar_t*> HELD[] = {{VK_Alt, L"Alt"}, {VK_Space, L"スペース"}};

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

const std::wstring& CStatusLine::NameHeldKeys(const wchar_t* pszHint) {
    if (pszHint == m_pszHint && m_shortcutsNamed == m_shortcuts) return m_strHint;
    m_pszHint = pszHint;
    m_shortcutsNamed = m_shortcuts;
    m_strHint = pszHint;
    for (const auto& [nKey, pszName] : HELD) {
        const std::wstring strKeys = NamesOfKeys(m_keys.GetKeysBeside(nKey));
        if (!strKeys.empty())
            boost::replace_all(m_strHint, pszName + std::wstring(L": "), pszName + (L"・" + strKeys) + L": ");
    }
    return m_strHint;
}

void CStatusLine::Update(IMainWindow& window, CCanvasFrame* pFrame, const std::wstring& strTold) {
    const std::wstring& strText = strTold.empty() ? NameHeldKeys(FindHint(pFrame)) : strTold;
    if (m_strText != strText) window.SetStatusText(PANE_TEXT, m_strText = strText);

    const uint32_t uNow = m_clock.GetTickCount();
    if (uNow - m_uPositionTick < POSITION_MS) return;
    const auto ptPixel = pFrame ? pFrame->GetPointedPixel() : std::nullopt;
    std::wstring strPosition;
    if (ptPixel) strPosition = std::to_wstring(ptPixel->x) + L", " + std::to_wstring(ptPixel->y);
    if (strPosition == m_strPosition) return;
    window.SetStatusText(PANE_POSITION, m_strPosition = strPosition);
    m_uPositionTick = uNow;
}
