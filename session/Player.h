// Plays a session script, one step whenever the session has nothing else to do.
#pragma once

#include "core/Platform/Platform.h"
#include "session/Script.h"

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

/// What a script is played on; all of it outlives the player.
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
    /// The longest wait that a script may ask for, in milliseconds: a script that slipped by some zeros must
    /// not run its timers for days.
    static constexpr int64_t MAX_WAIT = 3600000;

    CPlayer(TScript script, TStage stage);

    /// Plays the lines at the script's head that prepare the session. Once, before it begins.
    void Prepare();
    bool IsPreparing() const { return m_bPreparing; }
    /// Takes the answer that stands right behind the line being played; false when there is none.
    bool TakeReply();
    /// Hears every line that acts past the platform's seam, before it is played.
    void SetWatch(boost::function<void(const std::string&)> fnWatch) { m_fnWatch = std::move(fnWatch); }

    /// Plays what comes next: a part of a wait, a step, or, after the last step or a failure, the session's
    /// end: the main window is asked to close, in the end destroyed, and the message loop ended. Never
    /// blocks.
    void Advance();
    /// True when every step was played.
    bool IsPlayed() const { return m_idxNext == m_script.vSteps.size(); }
    /// Line of the next step; only before the last one was played.
    int GetNextLine() const { return m_script.vSteps[m_idxNext].nLine; }

    /// For verbs: what they work on.
    const TStage& GetStage() const { return m_stage; }
    /// For verbs: no further step before `uMilliseconds` have passed on the session's clock.
    void Wait(uint32_t uMilliseconds) { m_uWait = uMilliseconds; }
    /// For verbs: gives a command the way a menu does. Raises step_failure when it is disabled.
    void SendCommand(int nId);
    /// For verbs: the same, but a disabled command is left alone; false then.
    bool TryCommand(int nId);
    /// For verbs: states of documents by the names that the script gives them, as JSON.
    std::map<std::string, std::string> m_mapMarks;

private:
    void PassTime();
    void Close();

    void PlayStep(const TStep& step);

    TScript m_script;
    TStage m_stage;
    size_t m_idxNext = 0;
    uint32_t m_uWait = 0; ///< milliseconds that are still to pass
    int m_nCloseAttempts = 0;
    bool m_bPreparing = false;
    boost::function<void(const std::string&)> m_fnWatch;
};
