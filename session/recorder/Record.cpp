#include "session/recorder/Record.h"

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Platform/Pen.h"
#include "core/Platform/System.h"
#include "session/scripts/Player.h"
#include "system/pictures/Pictures.h"

#include <nlohmann/json.hpp>

#include <algorithm>

using nlohmann::json;

namespace {

constexpr int KEYS = 254; ///< the last key that a script can hold

} // namespace

void CRecord::WriteHead() {
    m_bBegun = true;
    WriteSettings(*this, m_platform);
    IPen& pen = m_platform.pen;
    if (pen.IsPresent())
        Write("tablet", {{"units", pen.GetUnitsPerPixel()},
                         {"pressure", pen.GetPressureAxis().nMax - pen.GetPressureAxis().nMin},
                         {"altitude", pen.GetAltitudeAxis().nMax}});
    m_uTime = m_platform.clock.GetTickCount();
}

void CRecord::FollowTime() {
    uint32_t uPassed = m_platform.clock.GetTickCount() - m_uTime;
    m_uTime += uPassed;
    for (uint32_t uPart = 0; uPassed > 0; uPassed -= uPart) {
        uPart = std::min(uPassed, static_cast<uint32_t>(CPlayer::MAX_WAIT));
        Write("wait", uPart);
    }
}

void CRecord::Follow() {
    FollowTime();
    FollowClipboard();
    FollowKeys(ReadKeys());
    FollowView();
}

void CRecord::FollowToKey(int nKey, bool bDown, bool bRepeat) {
    FollowTime();
    FollowClipboard();
    TKeys keys = ReadKeys();
    const auto idx = static_cast<size_t>(nKey);
    if (bDown) keys.set(idx, bRepeat);
    if (!bDown) keys.set(idx, m_keys.test(idx));
    FollowKeys(keys);
    FollowView();
    m_keys.set(idx, bDown);
}

void CRecord::FollowClipboard() {
    IClipboard& clipboard = m_platform.clipboard;
    if (!m_bBegun || clipboard.GetChangeCount() == m_uClipboard) return;
    const bool bHad = m_bPicture;
    const TStrokeBytes spStrokes = clipboard.GetStrokes();
    KnowClipboard(spStrokes || clipboard.HasPicture());
    if (!m_bPicture && !bHad) return;
    FollowTime();
    if (spStrokes) return Write("clipboard", {{"setStrokes", WriteStrokesText(*spStrokes)}});
    if (!m_bPicture) return Write("clipboard", {{"clear", true}});
    if (const TLoadedPicture picture = clipboard.GetPicture())
        return Write("clipboard", {{"set", WritePictureText(*picture)}});
    // A player must meet the same failure.
    const TDibBytes spBlock = clipboard.GetBlock();
    Write("clipboard", {{"setBlock", WriteBlockText(spBlock ? *spBlock : std::string())}});
}

void CRecord::KnowClipboard(bool bPicture) {
    m_uClipboard = m_platform.clipboard.GetChangeCount();
    m_bPicture = bPicture;
}

CRecord::TKeys CRecord::ReadKeys() const {
    TKeys keys;
    for (int nKey = 1; nKey <= KEYS; ++nKey)
        keys.set(static_cast<size_t>(nKey), m_platform.keys.IsKeyDown(nKey));
    return keys;
}

void CRecord::FollowKeys(const TKeys& keys) {
    if (keys == m_keys) return;
    m_keys = keys;
    json list = json::array();
    for (size_t idx = 0; idx < keys.size(); ++idx)
        if (keys.test(idx)) list.push_back(idx);
    Write("keys", list);
}

void CRecord::Activate(const CCanvasFrame& frame) {
    FollowTime();
    const auto it = std::find_if(g_lstCanvasFrame.begin(), g_lstCanvasFrame.end(),
                                 [&](const auto& spFrame) { return spFrame.get() == &frame; });
    if (it == g_lstCanvasFrame.end()) return;
    Write("activate", std::distance(g_lstCanvasFrame.begin(), it));
    m_view = {&frame, {}, {}, {}};
}

void CRecord::FollowView() {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame || !spFrame->GetWindow()) return;
    if (m_view.pFrame != spFrame.get() && g_lstCanvasFrame.size() > 1) Activate(*spFrame);
    const CCanvasView& view = spFrame->GetView();
    const TView shown{spFrame.get(), view.GetClient(), view.GetState(), view.GetScroll()};
    // A minimised window shows nothing and receives no input.
    if (shown == m_view || shown.szClient.cx < 1 || shown.szClient.cy < 1) return;
    m_view = shown;
    Write("view", {{"width", shown.szClient.cx},
                   {"height", shown.szClient.cy},
                   {"zoom", shown.state.uZoom},
                   {"angle", shown.state.uAngle},
                   {"flipH", shown.state.bFlipH},
                   {"flipV", shown.state.bFlipV},
                   {"scroll", {{"x", shown.ptScroll.x}, {"y", shown.ptScroll.y}}}});
}

void CRecord::Write(const char* pszVerb, const json& value) {
    WriteLine("{\"" + std::string(pszVerb) +
              "\":" + value.dump(-1, ' ', false, json::error_handler_t::replace) + "}");
}

void CRecord::WriteLine(std::string strLine) {
    // Do not start a file for a box without a session.
    if (!m_bBegun || m_bFailed) return;
    strLine += '\n';
    m_bFailed = !m_fnWrite(strLine);
}
