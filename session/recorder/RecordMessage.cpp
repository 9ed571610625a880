#include "session/recorder/RecordMessage.h"

#include "core/AppModule/AppModule.h"
#include "core/Base/Text.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/RecentDocumentList.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/Pen.h"
#include "session/recorder/Record.h"
#include "session/scripts/Taken.h"
#include "session/seam/ControlAct.h"
#include "session/seam/InputNames.h"
#include "session/seam/PacketParts.h"

#include <nlohmann/json.hpp>

#include <algorithm>

using nlohmann::json;

namespace {

constexpr int MAX_KEY = 254;
constexpr uint32_t CURSOR_ERASER = 2;

const TInputName& NameOfButtons(uint32_t uButtons) {
    const auto names = GetInputNames();
    const auto it = std::find_if(names.begin(), names.end(),
                                 [&](const TInputName& name) { return name.uButtons == uButtons; });
    // The application also treats unknown changes as a move.
    return it == names.end() || uButtons == 0 ? names.front() : *it;
}

ICanvasWindow* GetActiveWindow() {
    const auto spFrame = g_wpActiveFrame.lock();
    return spFrame ? spFrame->GetWindow() : nullptr;
}

int FindPanel(const IWindow* pWindow) {
    return g_pMainFrame ? g_pMainFrame->GetPanels().FindCommand(pWindow) : 0;
}

void RecordOpen(const TRecordTo& to, const std::wstring& strPath) {
    to.record.FollowTime();
    to.record.Write("open", ToUtf8(strPath));
}

void RecordCommand(const TRecordTo& to, int nId) {
    // The chosen zoom line is recorded as the view's new state.
    if (nId == IDC_ZOOM_COMBO) return;
    if (!g_pMainFrame || !g_pMainFrame->IsCommandEnabled(nId)) return;
    if (nId >= ID_FILE_MRU_FIRST && nId <= ID_FILE_MRU_LAST) {
        // Record the file instead of the user's list entry.
        CRecentDocumentList recent(CRecentDocumentList::FindStore(to.platform),
                                   CRecentDocumentList::FindPath(to.platform.locations));
        const auto idx = static_cast<size_t>(nId - ID_FILE_MRU_FIRST);
        if (idx < recent.GetPaths().size()) RecordOpen(to, recent.GetPaths()[idx]);
        return;
    }
    to.record.Follow();
    to.record.Write("command", WriteCommandId(nId));
    // Each platform arranges windows at sizes of its own.
    to.record.DoubtView();
}

void RecordKey(const TRecordTo& to, const TMessage& msg) {
    if (msg.wParam < 1 || msg.wParam > MAX_KEY) return;
    const bool bDown = msg.id == EMessage::KeyDown || msg.id == EMessage::SysKeyDown;
    to.record.FollowToKey(static_cast<int>(msg.wParam), bDown, msg.lParam == 1);
    to.record.Write("key", {{bDown ? "down" : "up", msg.wParam}});
}

void RecordPointer(const TRecordTo& to, const TInputName& name, const TMessage& msg) {
    if (msg.pWindow != GetActiveWindow()) return;
    to.record.Follow();
    json line = json::object();
    if (name.id != EMessage::MouseMove) line["message"] = name.pszName;
    if (name.uButtons != 0) {
        line["x"] = PackedX(msg.lParam);
        line["y"] = PackedY(msg.lParam);
        const bool bLeft = msg.wParam & MOUSE_LEFT;
        if (bLeft != (name.id == EMessage::LButtonDown)) line["left"] = bLeft;
        if (IsRefused(false)) line["idle"] = true;
    }
    to.record.Write("pointer", line);
}

void RecordPanel(const TRecordTo& to, int nPanel, const TMessage& msg) {
    json line = WriteControlAct(msg, [&](int nView) { return to.fnViewSize(msg.pWindow, nView); });
    if (line.empty()) return;
    line["id"] = WriteCommandId(nPanel);
    to.record.Follow();
    to.record.Write("panel", line);
}

// True when another window or widget covers the position, as only a real window can tell. The position is
// in 1 / `nUnits` of a client pixel.
bool IsCovered(const ICanvasWindow& window, CPoint pt, int32_t nUnits) {
    const CSize sz = window.GetClientSize();
    const CPoint ptPixel{pt.x / nUnits, pt.y / nUnits};
    const bool bInside = pt.x >= 0 && pt.y >= 0 && ptPixel.x < sz.cx && ptPixel.y < sz.cy;
    return bInside && !window.IsAt(ptPixel + window.GetClientOrigin());
}

void RecordClose(const TRecordTo& to, const TMessage& msg) {
    to.record.FollowTime();
    if (msg.pWindow == g_AppModule.GetMainWindow()) return to.record.Write("close", "main");
    for (const auto& spFrame : g_lstCanvasFrame) {
        if (!spFrame->GetWindow() || spFrame->GetWindow() != msg.pWindow) continue;
        if (!spFrame->IsActive()) to.record.Activate(*spFrame);
        to.record.Write("close", "frame");
    }
}

} // namespace

void RecordMessage(const TRecordTo& to, const TMessage& msg) {
    if (!msg.pWindow) return;
    if (const int nPanel = FindPanel(msg.pWindow); nPanel && msg.id != EMessage::Command)
        return RecordPanel(to, nPanel, msg);
    // The page's rows are the user's own files: the command that a click stands for is recorded.
    if (g_pMainFrame && msg.pWindow == g_pMainFrame->GetStartPage().GetWindow())
        if (const int nCommand = g_pMainFrame->GetStartPage().FindCommand(msg))
            return RecordCommand(to, nCommand);
    if (const TInputName* pName = FindInputName(msg.id)) return RecordPointer(to, *pName, msg);
    switch (msg.id) {
    case EMessage::Command:
        return RecordCommand(to, static_cast<int>(msg.wParam));
    case EMessage::KeyDown:
    case EMessage::KeyUp:
    case EMessage::SysKeyDown:
    case EMessage::SysKeyUp:
        return RecordKey(to, msg);
    case EMessage::Close:
        return RecordClose(to, msg);
    case EMessage::DropFiles:
    case EMessage::CopyData:
        if (!msg.strText.empty()) RecordOpen(to, msg.strText);
        return;
    case EMessage::MouseWheel:
        if (!GetActiveWindow()) return;
        to.record.Follow();
        return to.record.Write("wheel", msg.wParam);
    case EMessage::PenProximity:
        if (msg.pWindow != GetActiveWindow()) return;
        to.record.Follow();
        return to.record.Write("proximity", msg.wParam == 0               ? "leave"
                                            : msg.lParam == CURSOR_ERASER ? "eraser"
                                                                          : "enter");
    default:
        return;
    }
}

void RecordPacket(const TRecordTo& to, const TPenPacket& packet) {
    const ICanvasWindow* pWindow = GetActiveWindow();
    if (!pWindow) return;
    to.record.Follow();
    IPen& pen = to.platform.pen;
    const int32_t nUnits = std::max(1, pen.GetUnitsPerPixel());
    const CPoint ptOrigin = pWindow->GetClientOrigin();
    const CPoint pt{packet.x - ptOrigin.x * nUnits, packet.y - ptOrigin.y * nUnits};
    TPenPacket inClient = packet;
    inClient.x = pt.x;
    inClient.y = pt.y;
    inClient.uPressure -= static_cast<uint32_t>(pen.GetPressureAxis().nMin);
    json line = WritePacketParts(inClient);
    const TInputName& name = NameOfButtons(packet.uButtons);
    if (name.id != EMessage::MouseMove) line["message"] = name.pszName;
    if (packet.uStatus != 0) line["status"] = packet.uStatus;
    if (IsCovered(*pWindow, pt, nUnits)) line["covered"] = true;
    // Does not depend on the capture: an earlier packet, read in the same batch, may release it.
    if (IsBeside(*pWindow, pt, nUnits) || IsRefused(true)) line["idle"] = true;
    to.record.Write("packet", line);
}
