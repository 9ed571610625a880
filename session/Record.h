// A session's record while it is written: the lines of a script that does the same.
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

/// Takes one whole line with its line end and keeps it at once. False when it cannot; then nothing more
/// comes.
using TWriteLine = std::function<bool(std::string_view)>;

/// Knows what a player of the lines so far would have: its time, the clipboard's picture, the keys held, the
/// active window and its view. What differs is written in front of the next line.
class CRecord : boost::noncopyable {
public:
    CRecord(const TPlatform& platform, TWriteLine fnWrite)
        : m_platform(platform), m_fnWrite(std::move(fnWrite)) {}

    /// What stands before the session: settings that differ from the defaults, the tablet. Nothing is written
    /// before that.
    void WriteHead();

    /// Writes the time that has passed.
    void FollowTime();
    /// Writes the time that has passed, another program's picture on the clipboard, keys, the active window
    /// and its view.
    void Follow();
    /// Writes that the user changed to another window, also when he changes back at once.
    void Activate(const CCanvasFrame& frame);
    /// What was handled may change a player's view in another way: it is written again.
    void DoubtView() { m_view = {m_view.pFrame, {}, {}, {}}; }
    /// A window goes; another may come to have its place in memory.
    void ForgetView() { m_view = {}; }
    /// Follow before a key's own line, which will bring that key to its state.
    void FollowToKey(int nKey, bool bDown, bool bRepeat);

    /// Writes the picture that another program has put on the clipboard since, or that its picture is gone.
    void FollowClipboard();
    /// The application itself put a picture or a text there: so does a player's.
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
    uint32_t m_uClipboard = 0; ///< the clipboard's count of changes that a player has, too
    bool m_bPicture = false;   ///< a player's clipboard holds a picture
    TKeys m_keys;
    TView m_view;
};

/// The lines "set" for every setting of the session's store and every switch that differs from its default,
/// except places of windows and what is about sessions themselves.
void WriteSettings(CRecord& record, const TPlatform& platform);
