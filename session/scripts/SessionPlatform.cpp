#include "session/scripts/SessionPlatform.h"

#include "core/AppModule/MessageQueue.h"
#include "session/scripts/Player.h"
#include "session/scripts/SessionPump.h"
#include "session/seam/SessionClipboard.h"
#include "session/seam/SessionDialogs.h"
#include "session/seam/SessionKeys.h"
#include "session/seam/SessionManual.h"
#include "session/seam/SessionPen.h"
#include "session/seam/SessionProgress.h"
#include "session/seam/SessionRecent.h"
#include "session/seam/SessionSnapshots.h"
#include "session/seam/SessionWindows.h"
#include "session/seam/VirtualClock.h"

#include <cstdint>

struct CSessionPlatform::TParts {
    TParts(const TSessionParts& parts, TScript script)
        : m_log(script.strName), m_dialogs(m_log),
          m_windows(m_queue, m_clock, parts.pWindows), m_platform{m_queue,
                                                                  m_windows,
                                                                  m_dialogs,
                                                                  m_dialogs,
                                                                  m_dialogs,
                                                                  parts.files,
                                                                  parts.locations,
                                                                  parts.modules,
                                                                  parts.codecs,
                                                                  m_clock,
                                                                  m_keys,
                                                                  parts.pClipboard ? *parts.pClipboard
                                                                                   : m_clipboard,
                                                                  parts.pSnapshots ? *parts.pSnapshots
                                                                                   : m_snapshots,
                                                                  m_pen,
                                                                  m_progress,
                                                                  m_manual,
                                                                  m_recent},
          m_player(std::move(script), MakeStage(parts)), m_pump(m_queue, m_windows, m_player, parts.pQueue) {}

    TStage MakeStage(const TSessionParts& parts) {
        TStage stage{m_platform, m_dialogs, m_keys, m_pen, m_clock, m_log, {}, {}, parts.fnScreenshot};
        stage.fnUntilTimer = [this] { return m_windows.UntilTimer().value_or(UINT32_MAX); };
        stage.fnMainWindow = [this]() -> IWindow* { return m_windows.GetMain(); };
        if (!stage.fnScreenshot)
            stage.fnScreenshot = [this](const std::wstring& strPath) {
                return m_windows.SavePicture(strPath, m_platform.codecs);
            };
        return stage;
    }

    CMessageQueue m_queue;
    CVirtualClock m_clock;
    CSessionKeys m_keys;
    CSessionClipboard m_clipboard;
    CSessionSnapshots m_snapshots;
    CSessionPen m_pen;
    CSessionProgress m_progress;
    CSessionManual m_manual;
    CSessionRecent m_recent;
    CSessionLog m_log;
    CSessionDialogs m_dialogs;
    CSessionWindows m_windows;
    TPlatform m_platform;
    CPlayer m_player;
    CSessionPump m_pump;
};

CSessionPlatform::CSessionPlatform(const TSessionParts& parts, TScript script)
    : m_pParts(std::make_unique<TParts>(parts, std::move(script))) {
    m_pParts->m_queue.SetPump(&m_pParts->m_pump);
    m_pParts->m_dialogs.SetReply([pPlayer = &m_pParts->m_player] { return pPlayer->TakeReply(); });
    m_pParts->m_progress.SetCancel([pPlayer = &m_pParts->m_player] { return pPlayer->TakeCancel(); });
    m_pParts->m_player.Prepare();
}

CSessionPlatform::~CSessionPlatform() { m_pParts->m_queue.SetPump(nullptr); }

const TPlatform& CSessionPlatform::GetPlatform() const { return m_pParts->m_platform; }
const CSessionLog& CSessionPlatform::GetLog() const { return m_pParts->m_log; }
void CSessionPlatform::SetWatch(boost::function<void(const std::string&)> fnWatch) {
    m_pParts->m_player.SetWatch(std::move(fnWatch));
}

CVirtualClock& CSessionPlatform::GetClock() { return m_pParts->m_clock; }
CSessionWindows& CSessionPlatform::GetWindows() { return m_pParts->m_windows; }
CSessionManual& CSessionPlatform::GetManual() { return m_pParts->m_manual; }

std::string CSessionPlatform::GetFailure() const {
    const std::string strFailure = m_pParts->m_log.GetFailure();
    if (!strFailure.empty() || m_pParts->m_player.IsPlayed()) return strFailure;
    return m_pParts->m_log.Describe(m_pParts->m_player.GetNextLine(),
                                    "the session had ended before this line");
}
