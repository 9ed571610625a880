#include "session/recorder/Recorder.h"

#include "core/AppModule/AppModule.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Platform/Pen.h"
#include "session/recorder/RecordClipboard.h"
#include "session/recorder/RecordDialogs.h"
#include "session/recorder/RecordMessage.h"
#include "session/recorder/RecordProgress.h"
#include "session/recorder/RecordWindows.h"

#include <algorithm>
#include <deque>

namespace {

bool IsSame(const TMessage& a, const TMessage& b) {
    return a.pWindow == b.pWindow && a.id == b.id && a.wParam == b.wParam && a.lParam == b.lParam &&
           a.strText == b.strText;
}

/// Separates external messages from those that the application posts to itself, which a player repeats
/// automatically.
class CRecordQueue : public IMessageQueue, boost::noncopyable {
public:
    CRecordQueue(IMessageQueue& queue, std::function<void(const TMessage&)> fnTaken)
        : m_queue(queue), m_fnTaken(std::move(fnTaken)) {}

    bool Peek() override {
        m_bOutside = true;
        const bool bWaits = m_queue.Peek();
        m_bOutside = false;
        return bWaits;
    }
    int Get(TMessage& msg) override {
        m_bOutside = true;
        const int nGot = m_queue.Get(msg);
        m_bOutside = false;
        if (nGot == 1 && !TakeOwn(msg)) m_fnTaken(msg);
        return nGot;
    }
    void Dispatch(const TMessage& msg) override { m_queue.Dispatch(msg); }
    void Post(const TMessage& msg) override {
        m_deqOwn.push_back(msg);
        m_queue.Post(msg);
    }
    void PostQuit() override { m_queue.PostQuit(); }
    void Forget(const IWindow* pWindow) override {
        std::erase_if(m_deqOwn, [&](const TMessage& msg) { return msg.pWindow == pWindow; });
        m_queue.Forget(pWindow);
    }
    /// True while external events are polled: any message that a window gets then is external.
    bool IsOutside() const { return m_bOutside; }

private:
    bool TakeOwn(const TMessage& msg) {
        const auto it = std::find_if(m_deqOwn.begin(), m_deqOwn.end(),
                                     [&](const TMessage& own) { return IsSame(own, msg); });
        if (it == m_deqOwn.end()) return false;
        // Messages keep their order: those before it were dropped with their windows.
        m_deqOwn.erase(m_deqOwn.begin(), it + 1);
        return true;
    }

    IMessageQueue& m_queue;
    std::function<void(const TMessage&)> m_fnTaken;
    std::deque<TMessage> m_deqOwn; ///< pending messages of the application itself
    bool m_bOutside = false;
};

/// Records the packets that the application reads.
class CRecordPen : public IPen, boost::noncopyable {
public:
    CRecordPen(IPen& pen, std::function<void(const TPenPacket&)> fnRead)
        : m_pen(pen), m_fnRead(std::move(fnRead)) {}

    bool IsPresent() override { return m_pen.IsPresent(); }
    TPenDevice GetDevice() override { return m_pen.GetDevice(); }
    TPenAxis GetPressureAxis() override { return m_pen.GetPressureAxis(); }
    TPenAxis GetAltitudeAxis() override { return m_pen.GetAltitudeAxis(); }
    void SetMouseCoord(bool bMouseCoord) override { m_pen.SetMouseCoord(bMouseCoord); }
    int32_t GetUnitsPerPixel() override { return m_pen.GetUnitsPerPixel(); }
    size_t GetPackets(TPenPacket* pPackets, size_t nMax) override {
        const size_t nPackets = m_pen.GetPackets(pPackets, nMax);
        for (size_t n = 0; n < nPackets; ++n) m_fnRead(pPackets[n]);
        return nPackets;
    }
    void Enable(bool bEnable) override { m_pen.Enable(bEnable); }

private:
    IPen& m_pen;
    std::function<void(const TPenPacket&)> m_fnRead;
};

} // namespace

struct CRecorder::TParts {
    TParts(const TPlatform& platform, TWriteLine fnWrite)
        : m_record(platform, std::move(fnWrite)),
          m_dialogs(m_record, platform), m_to{m_record, platform,
                                              [this](const IWindow* pPanel, int nView) {
                                                  return m_windows.GetViewSize(pPanel, nView);
                                              }},
          m_queue(platform.queue, [this](const TMessage& msg) { RecordMessage(m_to, msg); }),
          m_windows(
              platform.windows, [this] { m_record.WriteHead(); },
              [this](const TMessage& msg) { OnHeard(msg); }),
          m_clipboard(m_record, platform.clipboard),
          m_pen(platform.pen, [this](const TPenPacket& packet) { RecordPacket(m_to, packet); }),
          m_progress(m_record, platform.progress),
          m_platform{m_queue,         m_windows,          m_dialogs,          m_dialogs,       m_dialogs,
                     platform.files,  platform.locations, platform.modules,   platform.codecs, platform.clock,
                     platform.keys,   m_clipboard,        platform.snapshots, m_pen,           m_progress,
                     platform.manual, platform.recent} {}

    // The windows' own notifications and a player's commands do not pass the queue.
    void OnHeard(const TMessage& msg) {
        if (msg.id == EMessage::Destroy) m_record.ForgetView();
        if (!m_queue.IsOutside()) return;
        const bool bMain = msg.pWindow == g_AppModule.GetMainWindow();
        if (msg.id == EMessage::Command && bMain) RecordMessage(m_to, msg);
        if (msg.id != EMessage::MdiActivate || msg.wParam == 0) return;
        for (const auto& spFrame : g_lstCanvasFrame)
            if (spFrame->GetWindow() == msg.pWindow) m_record.Activate(*spFrame);
    }

    CRecord m_record;
    CRecordDialogs m_dialogs;
    TRecordTo m_to;
    CRecordQueue m_queue;
    CRecordWindows m_windows;
    CRecordClipboard m_clipboard;
    CRecordPen m_pen;
    CRecordProgress m_progress;
    TPlatform m_platform;
};

CRecorder::CRecorder(const TPlatform& platform, TWriteLine fnWrite)
    : m_pParts(std::make_unique<TParts>(platform, std::move(fnWrite))) {}
CRecorder::~CRecorder() = default;

const TPlatform& CRecorder::GetPlatform() const { return m_pParts->m_platform; }
bool CRecorder::HasFailed() const { return m_pParts->m_record.HasFailed(); }

void CRecorder::NoteLine(const std::string& strLine) {
    m_pParts->m_record.Follow();
    m_pParts->m_record.WriteLine(strLine);
}
