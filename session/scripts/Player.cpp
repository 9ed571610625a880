#include "session/scripts/Player.h"

#include "core/AppModule/MessageQueue.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/MainFrame/MainFrame.h"
#include "session/seam/InputNames.h"
#include "session/seam/SessionDialogs.h"
#include "session/seam/VirtualClock.h"

#include <nlohmann/json.hpp>

#include <algorithm>

CPlayer::CPlayer(TScript script, TStage stage) : m_script(std::move(script)), m_stage(std::move(stage)) {}

void CPlayer::Prepare() {
    m_bPreparing = true;
    while (!IsPlayed() && m_script.vSteps[m_idxNext].kind == EStepKind::Prepares && !m_stage.log.HasFailed())
        PlayStep(m_script.vSteps[m_idxNext++]);
    m_bPreparing = false;
}

bool CPlayer::TakeReply() {
    // A dialog that stays open may have shown an error box.
    while (!IsPlayed() && m_script.vSteps[m_idxNext].kind == EStepKind::Expects && m_stage.log.HasErrors())
        PlayStep(m_script.vSteps[m_idxNext++]);
    if (IsPlayed() || m_script.vSteps[m_idxNext].kind != EStepKind::Replies) return false;
    const TStep& step = m_script.vSteps[m_idxNext++];
    m_stage.log.Enter(step.nLine);
    step.fnPlay(*this);
    return true;
}

bool CPlayer::TakeCancel() {
    if (IsPlayed() || m_script.vSteps[m_idxNext].kind != EStepKind::Cancels) return false;
    m_stage.log.Enter(m_script.vSteps[m_idxNext++].nLine);
    return true;
}

void CPlayer::Advance() {
    CSessionLog& log = m_stage.log;
    if (m_uWait > 0 && !log.HasFailed()) {
        PassTime();
        return;
    }
    if (IsPlayed() || m_script.vSteps[m_idxNext].kind != EStepKind::Expects) log.FailOnError();
    if (IsPlayed() || log.HasFailed())
        Close();
    else
        PlayStep(m_script.vSteps[m_idxNext++]);
}

void CPlayer::PassTime() {
    // Stops at every timer, so that its message is handled at its due time.
    const uint32_t uStep = std::min(m_uWait, std::max(m_stage.fnUntilTimer(), 1u));
    m_stage.clock.Advance(uStep);
    m_uWait -= uStep;
}

void CPlayer::PlayStep(const TStep& step) {
    m_stage.log.Enter(step.nLine);
    try {
        if (step.kind == EStepKind::Replies) throw step_failure("nothing has asked for this reply");
        if (m_fnWatch && !step.strPast.empty()) m_fnWatch(step.strPast);
        step.fnPlay(*this);
    } catch (const step_failure& e) {
        m_stage.log.Fail(e.what());
    } catch (const std::exception& e) {
        m_stage.log.Fail(ToUtf8(DescribeException(e)));
    }
}

void CPlayer::Close() {
    IWindow* pMain = m_stage.fnMainWindow();
    // The script's queued answers may serve the first attempt's prompts, but not those of a second one.
    m_stage.log.SetClosing();
    if (m_stage.log.HasFailed() || m_nCloseAttempts > 0) m_stage.dialogs.Clear();
    if (pMain && m_nCloseAttempts < 2) {
        ++m_nCloseAttempts;
        m_stage.platform.queue.Post({pMain, EMessage::Close});
        return;
    }
    if (pMain) pMain->Destroy();
    m_stage.platform.queue.PostQuit();
}

void CPlayer::SendCommand(int nId) {
    if (!TryCommand(nId)) throw step_failure("command " + WriteCommandId(nId).dump() + " is disabled");
}

bool CPlayer::TryCommand(int nId) {
    IWindow* pMain = m_stage.fnMainWindow();
    if (!pMain || !g_pMainFrame) throw step_failure("there is no main window");
    SendMessage({pMain, EMessage::InitMenuPopup});
    if (!g_pMainFrame->IsCommandEnabled(nId)) return false;
    SendMessage({pMain, EMessage::Command, nId});
    return true;
}
