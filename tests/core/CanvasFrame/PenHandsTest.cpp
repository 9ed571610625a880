// Hands whose events are lost, doubled and reordered at random. VELLUM_HANDS=N plays so many of them.
#include "core/RasterBuffer/PlaneKind.h"
#include "session/seam/SessionPen.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"

namespace {

constexpr CSize CANVAS{400, 300};
constexpr int HANDS_A_SESSION = 50;
constexpr int STEP = 3;   // pixels that a hand moves from event to event at most
constexpr int STRAY = 24; // pixels from the hand at which no loss of a few events puts ink
constexpr int APART = 120;

enum class EKind { Enter, Leave, Packet, Escape };

struct TEvent {
    EKind kind;
    CPoint pt;
    uint32_t uPressure = 0;
};

/// A session of hands, each far from the one before.
class CHands : CScriptedSession {
public:
    explicit CHands(uint32_t uSeed) : m_random(uSeed) {
        CTestMain::Open(MakePage(CANVAS));
        m_spFrame = g_wpActiveFrame.lock();
        m_spFrame->SetZoom(48);
        g_pMainFrame->SwitchTool(TOOL_BRUSH);
    }
    ~CHands() { m_scope.Run(); }

    void Play() {
        bool bLeft = true;
        for (int n = 0; n < HANDS_A_SESSION && !testing::Test::HasFailure(); ++n) bLeft = PlayHand(!bLeft);
        Send({EKind::Leave, {}});
        EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_BRUSH);
        Pass(1000);
        Clear();
        const CPoint ptWindow = m_spFrame->GetView().ToWindow(m_pt);
        for (const EMessage id : {EMessage::LButtonDown, EMessage::LButtonUp})
            Tell(id, MOUSE_LEFT, PackPoint(ptWindow.x, ptWindow.y));
        EXPECT_TRUE(!Ink().empty()) << "the mouse is dead";
    }

private:
    struct CTestMain : CSessionScope {
        explicit CTestMain(const TPlatform& platform) : CSessionScope(platform) { CreateMainFrame(); }
        static void Open(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
            g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
        }
    };
    int Draw(int n) { return static_cast<int>(m_random() % static_cast<uint32_t>(n)); }
    CPoint Step() {
        m_pt = m_pt + CPoint{Draw(2 * STEP + 1) - STEP, Draw(2 * STEP + 1) - STEP};
        m_pt = {std::clamp(m_pt.x, 0, CANVAS.cx - 1), std::clamp(m_pt.y, 0, CANVAS.cy - 1)};
        return m_pt;
    }
    CRasterLayerBuffer& Layer() const {
        return dynamic_cast<CRasterLayerBuffer&>(*m_spFrame->GetCanvas()->GetActiveLayer());
    }
    void Clear() {
        m_spFrame->GetCanvas()->CompleteWork();
        Layer().SetRaster(CreatePlane(true, CANVAS, DEFAULT_BLOCKSIZE));
    }
    std::vector<CPoint> Ink() {
        m_spFrame->GetCanvas()->CompleteWork();
        std::vector<CPoint> v;
        for (int32_t n = 0; n < CANVAS.cx * CANVAS.cy; ++n)
            if (const CPoint pt{n % CANVAS.cx, n / CANVAS.cx}; PixelAt(*Layer().GetRaster(), pt) >> 24)
                v.push_back(pt);
        return v;
    }

    // The hand comes, touches several times and goes; its events are lost, doubled and exchanged.
    std::vector<TEvent> MakeHand() {
        std::vector<TEvent> v;
        const auto moves = [&](int nMost, bool bContact) {
            for (int n = Draw(nMost) + 1; n > 0; --n) {
                v.push_back({EKind::Packet, Step(), bContact ? static_cast<uint32_t>(Draw(900) + 100) : 0});
                if (Draw(40) == 0) v.push_back({EKind::Escape, m_pt});
                m_vPath.push_back(m_pt);
                const int nSpoil = Draw(10);
                if (nSpoil == 0) v.pop_back();
                if (nSpoil == 1) v.push_back(TEvent(v.back()));
                if (nSpoil == 2 && v.size() > 1) std::swap(v.back(), v[v.size() - 2]);
            }
        };
        for (int n = Draw(3) + 1; n > 0; --n) {
            moves(6, false);
            moves(20, true);
        }
        moves(6, false);
        return v;
    }

    // True when the hand's leave was told; otherwise the next one's enter is.
    bool PlayHand(bool bEnter) {
        const CPoint ptBefore = m_pt;
        do m_pt = {Draw(CANVAS.cx), Draw(CANVAS.cy)};
        while (std::hypot(m_pt.x - ptBefore.x, m_pt.y - ptBefore.y) < APART);
        m_uCursor = Draw(4) == 0 ? 2 : 1;
        // A stroke that the hand before left open is complete only now.
        if (!bEnter) m_vPath.clear();
        m_vPath.push_back(m_pt);
        const CPoint ptFirst = m_pt;
        std::vector<TEvent> v = MakeHand();
        const bool bLeave = Draw(2) != 0;
        if (bEnter || Draw(2) != 0) v.insert(v.begin(), {EKind::Enter, ptFirst});
        if (bLeave) v.push_back({EKind::Leave, m_pt});
        for (const TEvent& event : v) Send(event);
        Pass(400);
        EXPECT_TRUE(!bLeave || g_wpActiveTool.lock()->GetState() == STATE_IDLE);
        for (const CPoint pt : Ink()) {
            const auto isNear = [&](CPoint at) { return std::hypot(pt.x - at.x, pt.y - at.y) < STRAY; };
            if (!std::ranges::any_of(m_vPath, isNear) && !testing::Test::HasFailure())
                ADD_FAILURE() << "ink at " << pt.x << ", " << pt.y;
        }
        Clear();
        return bLeave;
    }

    void Pass(uint32_t uMilliseconds) {
        for (; uMilliseconds > 0; uMilliseconds -= std::min(uMilliseconds, 100u)) {
            dynamic_cast<CVirtualClock&>(m_session.GetPlatform().clock)
                .Advance(std::min(uMilliseconds, 100u));
            Tell(EMessage::Timer, 17);
        }
    }
    // A stroke is open exactly while the tool draws, and only then the window has the pointer.
    void Tell(EMessage id, int64_t wParam = 0, int64_t lParam = 0) {
        SendMessage({m_spFrame->GetWindow(), id, wParam, lParam});
        const bool bDraws = g_wpActiveTool.lock()->GetState() != STATE_IDLE;
        EXPECT_EQ(Layer().HasStroke(), bDraws);
        EXPECT_EQ(m_spFrame->GetWindow()->HasCapture(), bDraws);
    }
    void Send(const TEvent& event) {
        const CPoint pt = m_spFrame->GetView().ToWindow8({event.pt.x * 8, event.pt.y * 8}) +
                          m_spFrame->GetWindow()->GetClientOrigin();
        if (event.kind == EKind::Packet) {
            dynamic_cast<CSessionPen&>(m_session.GetPlatform().pen)
                .Push({0, m_uCursor, 0xFFFF, pt.x * 8, pt.y * 8, event.uPressure, 0, 900, 0});
            Tell(EMessage::PenPacket);
        } else if (event.kind == EKind::Escape) {
            Tell(EMessage::KeyDown, VK_Escape);
        } else {
            Tell(EMessage::PenProximity, event.kind == EKind::Enter, m_uCursor);
        }
        Pass(5);
    }

    CSessionPlatform m_session{m_parts, {"s", {}}};
    CTestMain m_scope{m_session.GetPlatform()};
    boost::shared_ptr<CCanvasFrame> m_spFrame;
    std::mt19937 m_random;
    CPoint m_pt{200, 150};
    std::vector<CPoint> m_vPath;
    uint32_t m_uCursor = 1;
};

} // namespace

TEST(PenHands, NothingIsLostOrStraysWhateverHappensToTheEvents) {
    const char* pszHands = std::getenv("VELLUM_HANDS");
    const int nHands = pszHands ? std::atoi(pszHands) : 300;
    for (int n = 0; n * HANDS_A_SESSION < nHands && !testing::Test::HasFailure(); ++n) {
        SCOPED_TRACE(n);
        CHands(static_cast<uint32_t>(n)).Play();
    }
}
