// Hands whose events are lost, doubled and reordered at random. VELLUM_HANDS=N plays so many of them.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/RasterBuffer/PlaneKind.h"
#include "session/seam/SessionPen.h"
#include "session/seam/VirtualClock.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace {

constexpr CSize CANVAS{400, 300};
constexpr int HANDS_A_SESSION = 50;
constexpr int STEP = 3;   // pixels that a hand moves from event to event at most
constexpr int STRAY = 24; // pixels from the hand at which no loss of a few events puts ink
constexpr int APART = 120;

enum class EKind { Enter, Leave, Packet, Barrel, Escape, Lost, Tool, Window, MouseDown, MouseMove, MouseUp };

struct TEvent {
    EKind kind;
    CPoint pt;
    uint32_t uPressure = 0;
};

/// A session of hands, each far from the one before.
class CHands : CScriptedSession {
public:
    explicit CHands(uint32_t uSeed) : m_random(uSeed) {
        OpenFrame(CreateCanvas({50, 50}));
        m_spFrame = OpenFrame(MakePage(CANVAS));
        m_spFrame->SetZoom(48);
        g_pMainFrame->SwitchTool(TOOL_BRUSH);
    }
    ~CHands() { m_scope.Run(); }

    void Play() {
        bool bLeft = true;
        for (int n = 0; n < HANDS_A_SESSION && !testing::Test::HasFailure(); ++n) bLeft = PlayHand(!bLeft);
        Send({EKind::Leave, {}});
        EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), m_nTool);
        // The mouse is not dead.
        Pass(1000);
        Clear();
        for (const EKind kind : {EKind::MouseDown, EKind::MouseUp}) Send({kind, m_pt});
        EXPECT_TRUE(HasInk());
    }

private:
    boost::shared_ptr<CCanvasFrame> OpenFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
        const auto spFrame = CreateCanvasFrame(spCanvas);
        g_pMainFrame->OpenFrame(spFrame);
        return spFrame;
    }
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
    template <class Function>
    void ForEachInked(Function fn) {
        m_spFrame->GetCanvas()->CompleteWork();
        CRasterBuffer& raster = *Layer().GetRaster();
        raster.ForEachBlock([&](CPoint ptBlock) {
            const auto spTile = raster.GetBlock(ptBlock, false);
            if (!spTile) return;
            const CPoint ptFirst = spTile->GetPosition();
            for (int32_t n = 0; n < 96 * 96; ++n)
                if (const CPoint pt{n % 96, n / 96}; spTile->GetPixelAlpha(pt) != 0) fn(pt + ptFirst);
        });
    }
    bool HasInk() {
        bool bAny = false;
        ForEachInked([&](CPoint) { bAny = true; });
        return bAny;
    }

    // The hand comes, touches several times and goes. Meanwhile the user may do other things.
    std::vector<TEvent> MakeHand() {
        std::vector<TEvent> v;
        const auto moves = [&](int nMost, bool bContact) {
            for (int n = Draw(nMost) + 1; n > 0; --n) {
                v.push_back({EKind::Packet, Step(), bContact ? static_cast<uint32_t>(Draw(900) + 100) : 0});
                if (Draw(40) != 0) continue;
                v.push_back({static_cast<EKind>(static_cast<int>(EKind::Barrel) + Draw(5)), m_pt});
                if (Draw(3) == 0)
                    for (const EKind kind : {EKind::MouseDown, EKind::MouseMove, EKind::MouseUp})
                        v.push_back({kind, Step()});
            }
        };
        for (int n = Draw(3) + 1; n > 0; --n) {
            moves(6, false);
            moves(20, true);
        }
        moves(6, false);
        return v;
    }

    // Loses, doubles and exchanges events; the mouse's keep their order.
    void Spoil(std::vector<TEvent>& v) {
        std::vector<TEvent> vSpoilt;
        for (const TEvent& event : v) {
            const int n = event.kind >= EKind::MouseDown ? 9 : Draw(10);
            if (n == 0) continue;
            vSpoilt.push_back(event);
            if (n == 1) vSpoilt.push_back(event);
            if (n == 2 && vSpoilt.size() > 1) std::swap(vSpoilt.back(), vSpoilt[vSpoilt.size() - 2]);
        }
        v.swap(vSpoilt);
    }

    // True when the hand's leave was told; otherwise the next one's enter is.
    bool PlayHand(bool bEnter) {
        const CPoint ptBefore = m_pt;
        do m_pt = {Draw(CANVAS.cx), Draw(CANVAS.cy)};
        while (std::hypot(m_pt.x - ptBefore.x, m_pt.y - ptBefore.y) < APART);
        m_uCursor = Draw(4) == 0 ? 2 : 1;
        const CPoint ptFirst = m_pt;
        std::vector<TEvent> v = MakeHand();
        // A stroke that the hand before left open is complete only now.
        if (!bEnter) m_vPath.clear();
        m_vPath.push_back(ptFirst);
        for (const TEvent& event : v) m_vPath.push_back(event.pt);
        Spoil(v);
        const bool bLeave = Draw(2) != 0;
        if (bEnter || Draw(2) != 0) v.insert(v.begin(), {EKind::Enter, ptFirst});
        if (bLeave) v.push_back({EKind::Leave, m_pt});
        for (const TEvent& event : v) {
            Send(event);
            Pass(5);
        }
        Pass(400);
        EXPECT_TRUE(!bLeave || g_wpActiveTool.lock()->GetState() == STATE_IDLE);
        ForEachInked([&](CPoint pt) {
            const bool bNear = std::ranges::any_of(
                m_vPath, [&](CPoint ptHand) { return std::hypot(pt.x - ptHand.x, pt.y - ptHand.y) < STRAY; });
            if (!bNear && !testing::Test::HasFailure()) ADD_FAILURE() << "ink at " << pt.x << ", " << pt.y;
        });
        Clear();
        return bLeave;
    }

    void Pass(uint32_t uMilliseconds) {
        for (; uMilliseconds > 0; uMilliseconds -= std::min(uMilliseconds, 100u)) {
            dynamic_cast<CVirtualClock&>(m_session.GetPlatform().clock)
                .Advance(std::min(uMilliseconds, 100u));
            Tell(EMessage::Timer, 17);
        }
        Check();
    }
    void Tell(EMessage id, int64_t wParam = 0, int64_t lParam = 0) {
        SendMessage({m_spFrame->GetWindow(), id, wParam, lParam});
    }
    void Tell(const TEvent& event) {
        const CPoint ptWindow = m_spFrame->GetView().ToWindow8({event.pt.x * 8, event.pt.y * 8});
        const CPoint ptScreen = ptWindow + m_spFrame->GetWindow()->GetClientOrigin();
        const auto packet = [&](uint32_t uButtons) {
            dynamic_cast<CSessionPen&>(m_session.GetPlatform().pen)
                .Push({0, m_uCursor, uButtons, ptScreen.x * 8, ptScreen.y * 8, event.uPressure, 0, 900, 0});
            Tell(EMessage::PenPacket);
        };
        const auto mouse = [&](EMessage id, int64_t nKeys) {
            Tell(id, nKeys, PackPoint(ptWindow.x, ptWindow.y));
        };
        const auto switchTool = [&] {
            if (m_uCursor == 2) return;
            m_nTool = Draw(2) ? TOOL_PENCIL : TOOL_BRUSH;
            g_pMainFrame->SwitchTool(m_nTool);
        };
        const auto visitOtherWindow = [&] {
            for (const auto& spFrame : {g_lstCanvasFrame.front(), m_spFrame})
                spFrame->GetWindow()->Activate();
        };
        const std::map<EKind, std::function<void()>> ACTIONS{
            {EKind::Enter, [&] { Tell(EMessage::PenProximity, 1, m_uCursor); }},
            {EKind::Leave, [&] { Tell(EMessage::PenProximity, 0, m_uCursor); }},
            {EKind::Packet, [&] { packet(0xFFFF); }},
            {EKind::Barrel, [&] { packet(0x20001); }},
            {EKind::Escape, [&] { Tell(EMessage::KeyDown, VK_Escape); }},
            {EKind::Lost, [&] { Tell(EMessage::CaptureChanged); }},
            {EKind::Tool, switchTool},
            {EKind::Window, visitOtherWindow},
            {EKind::MouseDown, [&] { mouse(EMessage::LButtonDown, MOUSE_LEFT); }},
            {EKind::MouseMove, [&] { mouse(EMessage::MouseMove, MOUSE_LEFT); }},
            {EKind::MouseUp, [&] { mouse(EMessage::LButtonUp, 0); }}};
        ACTIONS.at(event.kind)();
    }
    void Send(const TEvent& event) {
        Tell(event);
        Check();
    }
    // A stroke is open exactly while the tool draws, and only then the window has the pointer.
    void Check() {
        const bool bDraws = g_wpActiveTool.lock()->GetState() != STATE_IDLE;
        EXPECT_EQ(Layer().HasStroke(), bDraws);
        EXPECT_EQ(m_spFrame->GetWindow()->HasCapture(), bDraws);
    }

    CSessionPlatform m_session{m_parts, {"s", {}}};
    struct CMainScope : CSessionScope {
        explicit CMainScope(const TPlatform& platform) : CSessionScope(platform) { CreateMainFrame(); }
    } m_scope{m_session.GetPlatform()};
    boost::shared_ptr<CCanvasFrame> m_spFrame;
    std::mt19937 m_random;
    CPoint m_pt{200, 150};
    std::vector<CPoint> m_vPath;
    uint32_t m_uCursor = 1;
    int m_nTool = TOOL_BRUSH;
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
