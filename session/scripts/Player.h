// Plays a session script, one step whenever the session is idle.
#pragma once

#include "core/Platform/Platform.h"
#include "session/scripts/Script.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <map>
#include <string>

class CSessionDialogs;
class CSessionKeys;
class CSessionLog;
class CSessionPen;
class CVirtualClock;
class IWindow;

/// The session parts that a script is played on; all of them outlive the player.
struct TStage {
    const TPlatform& platform;
    CSessionDialogs& dialogs;
    CSessionKeys& keys;
    CSessionPen& pen;
    CVirtualClock& clock;
    CSessionLog& log;
    boost::function<IWindow*()> fnMainWindow; ///< null when there is none
    boost::function<uint32_t()> fnUntilTimer; ///< milliseconds to the next timer, or UINT32_MAX
    boost::function<bool(const std::wstring&)> fnScreenshot; ///< false when it fails
};

class CPlayer : boost::noncopyable {
public:
    /// The longest wait that a script may request, in milliseconds: a mistyped number must not run timers
    /// for days.
    static constexpr int64_t MAX_WAIT = 3600000;

    CPlayer(TScript script, TStage stage);

    /// Plays the lines at the script's head that prepare the session. Called once, before it begins.
    void Prepare();
    bool IsPreparing() const { return m_bPreparing; }
    /// Plays the reply that directly follows the current line; false when there is none.
    bool TakeReply();
    /// True when the line that directly follows cancels the work that begins; that line is then done.
    bool TakeCancel();
    /// `fnWatch` is called with every line that bypasses the platform interface, before it is played.
    void SetWatch(boost::function<void(const std::string&)> fnWatch) { m_fnWatch = std::move(fnWatch); }

    /// Plays the next part: a part of a wait, a step, or, after the last step or a failure, the end of the
    /// session: requests the main window to close, destroys it if need be and ends the message loop. Never
    /// blocks.
    void Advance();
    /// True when every step was played.
    bool IsPlayed() const { return m_idxNext == m_script.vSteps.size(); }
    /// Line of the next step; only before the last one was played.
    int GetNextLine() const { return m_script.vSteps[m_idxNext].nLine; }

    /// For verbs: the parts that they work on.
    const TStage& GetStage() const { return m_stage; }
    /// For verbs: no further step before `uMilliseconds` have passed on the session's clock.
    void Wait(uint32_t uMilliseconds) { m_uWait = uMilliseconds; }
    /// For verbs: runs a command as a menu does. Raises step_failure when it is disabled.
    void SendCommand(int nId);
    /// For verbs: the same, but returns false for a disabled command.
    bool TryCommand(int nId);
    /// For verbs: states of documents as JSON, by the names that the script assigns.
    std::map<std::string, std::string> m_mapMarks;

private:
    void PassTime();
    void Close();

    void PlayStep(const TStep& step);

    TScript m_script;
    TStage m_stage;
    size_t m_idxNext = 0;
    uint32_t m_uWait = 0; ///< milliseconds still to wait
    int m_nCloseAttempts = 0;
    bool m_bPreparing = false;
    boost::function<void(const std::string&)> m_fnWatch;
};
