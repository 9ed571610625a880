// The record of a session: the lines of a script that reproduces it.
#pragma once

#include "core/GDIBuffer/ScreenMap.h"
#include "core/Platform/Platform.h"

#include <boost/noncopyable.hpp>
#include <nlohmann/json_fwd.hpp>

#include <bitset>
#include <functional>
#include <string>
#include <string_view>

class CCanvasFrame;

/// Writes one whole line with its line end at once. False when it cannot; then it is not called again.
using TWriteLine = std::function<bool(std::string_view)>;

/// Tracks the state that a player of the lines so far would have: its time, the clipboard's picture, the
/// keys held, the active window and its view. Differences are written before the next line.
class CRecord : boost::noncopyable {
public:
    CRecord(const TPlatform& platform, TWriteLine fnWrite)
        : m_platform(platform), m_fnWrite(std::move(fnWrite)) {}

    /// Writes the initial state: settings that differ from the defaults, the tablet. Nothing is written
    /// before that.
    void WriteHead();

    /// Writes the time that has passed.
    void FollowTime();
    /// Writes the time that has passed, another program's picture on the clipboard, keys, the active window
    /// and its view.
    void Follow();
    /// Writes that the user switched to another window, also when he switches back at once.
    void Activate(const CCanvasFrame& frame);
    /// Writes the view again next time, because the handled message may change a player's view differently.
    void DoubtView() { m_view = {m_view.pFrame, {}, {}, {}}; }
    /// Called when a window is destroyed; another may get its address.
    void ForgetView() { m_view = {}; }
    /// Same as Follow, before the line of a key that itself brings that key to its state.
    void FollowToKey(int nKey, bool bDown, bool bRepeat);

    /// Writes the picture or the strokes that another program has copied since, or that these were removed.
    void FollowClipboard();
    /// Called when the application itself copies a picture, strokes or a text, as it does in a player too.
    void KnowClipboard(bool bPicture);

    void Write(const char* pszVerb, const nlohmann::json& value);
    void WriteLine(std::string strLine);
    /// True once a line could not be written.
    bool HasFailed() const { return m_bFailed; }

private:
    using TKeys = std::bitset<256>;
    struct TView {
        const CCanvasFrame* pFrame = nullptr;
        CSize szClient;
        TViewState state;
        CPoint ptScroll;
        friend bool operator==(const TView&, const TView&) = default;
    };

    TKeys ReadKeys() const;
    void FollowKeys(const TKeys& keys);
    void FollowView();

    const TPlatform& m_platform;
    TWriteLine m_fnWrite;
    bool m_bBegun = false;
    bool m_bFailed = false;
    uint32_t m_uTime = 0;
    uint32_t m_uClipboard = 0; ///< the clipboard's change count that a player also knows
    bool m_bPicture = false;   ///< a player's clipboard holds a picture or strokes
    TKeys m_keys;
    TView m_view;
};

/// Writes a line "set" for every setting of the session's store and every switch that differs from its
/// default, except window positions and settings about sessions themselves.
void WriteSettings(CRecord& record, const TPlatform& platform);
