#include "core/PathCtlPtHandle/ControlPointDrag.h"
#include "core/PathCtlPtHandle/AnchorDrag.h"
#include "tests/support/Paths.h"

namespace {

constexpr unsigned ALT = 4;

class ControlPointDrag : public testing::Test {
protected:
    TRegisterHistory GetRegister() {
        return [this](const boost::shared_ptr<CHistory>& spHistory) { m_vHistory.push_back(spHistory); };
    }
    template <class Point>
    boost::shared_ptr<CVectorHandle> Take(const boost::shared_ptr<CPathObject>& spPath,
                                          const boost::shared_ptr<Point>& spPoint, EPathHit part,
                                          unsigned flags = 0) {
        return CreateHandle(spPath, {part, spPoint}, flags, GetRegister());
    }
    CPathControlPoint& Anchor(size_t idx) { return *m_spPath->GetStream().GetControlPoint(idx); }

    boost::shared_ptr<COpenPathObject> m_spPath = MakeStroke();
    std::vector<boost::shared_ptr<CHistory>> m_vHistory;
};

} // namespace

TEST_F(ControlPointDrag, EveryPartIsOneActionThatIsUndoneToTheByte) {
    COpenPathStream& stream = m_spPath->GetStream();
    const auto spAlpha = stream.AddAlphaPoint(0xC000);
    spAlpha->SetAlpha(CDualValue<uint32_t>(100));
    stream.AddAlphaPoint(0x1C000);
    m_spPath->Update();
    const auto check = [&](const auto& spPoint, EPathHit part, unsigned flags, const wchar_t* pszLabel) {
        const TBytes vBefore = BytesOf(*m_spPath);
        const auto vOutline = stream.GetOutline(STATE_COMMITTED);
        m_vHistory.clear();
        const auto spGivenUp = Take(m_spPath, spPoint, part, flags);
        spGivenUp->OnDrag({90, -60}, flags);
        EXPECT_EQ(BytesOf(*m_spPath), vBefore);
        EXPECT_EQ(stream.GetOutline(STATE_COMMITTED), vOutline);
        const bool bOpacity = !AreSame(stream.GetOpacity(STATE_LIVE), stream.GetOpacity(STATE_COMMITTED));
        EXPECT_TRUE(stream.GetOutline(STATE_LIVE) != vOutline || bOpacity) << part;
        spGivenUp->OnCancel();
        EXPECT_EQ(stream.GetOutline(STATE_LIVE), vOutline);
        // Neither a press alone nor a way there and back is an action.
        Take(m_spPath, spPoint, part, flags)->OnCommit();
        const auto spBack = Take(m_spPath, spPoint, part, flags);
        for (const CPoint by : {CPoint{50, 90}, CPoint{0, 0}}) spBack->OnDrag(by, ALT);
        spBack->OnCommit();
        EXPECT_TRUE(part != HIT_ANCHOR || flags == ALT || m_vHistory.empty()) << pszLabel;
        m_vHistory.clear();
        const TBytes vStart = BytesOf(*m_spPath);
        const auto spHandle = Take(m_spPath, spPoint, part, flags);
        EXPECT_EQ(spHandle->GetPart().spPoint, spPoint);
        for (const CPoint by : {CPoint{-40, 70}, CPoint{90, -60}}) spHandle->OnDrag(by, flags);
        const auto vLive = stream.GetOutline(STATE_LIVE);
        spHandle->OnCommit();
        EXPECT_EQ(stream.GetOutline(STATE_COMMITTED), vLive);
        ASSERT_EQ(m_vHistory.size(), 1u) << pszLabel;
        EXPECT_EQ(m_vHistory[0]->GetName(), pszLabel);
        const TBytes vAfter = BytesOf(*m_spPath);
        m_vHistory[0]->Undo();
        EXPECT_EQ(BytesOf(*m_spPath), vStart);
        m_vHistory[0]->Redo();
        EXPECT_EQ(BytesOf(*m_spPath), vAfter);
        EXPECT_EQ(stream.GetOutline(STATE_COMMITTED), vLive);
        m_vHistory[0]->Undo();
    };
    check(stream.GetControlPoint(1), HIT_ANCHOR, 0, L"アンカーの移動");
    check(stream.GetControlPoint(1), HIT_BACK, 0, L"ハンドルの移動");
    check(stream.GetControlPoint(1), HIT_FORE, 0, L"ハンドルの移動");
    check(stream.GetControlPoint(0), HIT_ANCHOR, ALT, L"ハンドルの移動");
    check(stream.GetWidthPoints()[0], HIT_ANCHOR, 0, L"太さ記号の移動");
    check(stream.GetWidthPoints()[0], HIT_LEFT, 0, L"太さ記号の変形");
    check(stream.GetWidthPoints()[1], HIT_ANCHOR, ALT, L"太さ記号の変形");
    check(stream.GetTransPoints()[0], HIT_ANCHOR, 0, L"透明化制御点の移動");
    check(stream.GetTransPoints()[0], HIT_RIGHT, 0, L"透明化角度の変更");
    check(spAlpha, HIT_ANCHOR, 0, L"不透明度記号の移動");
    check(spAlpha, HIT_LEFT, 0, L"不透明度記号の変形");
    check(stream.GetTerm(true), HIT_GROW, 0, L"丸い先端の変形");
    check(stream.GetTerm(false), HIT_LEFT, 0, L"平らな先端の変形");
}

TEST_F(ControlPointDrag, AHandleTurnsTheOtherUntilAltIsPressed) {
    CPathControlPoint& anchor = Anchor(1); // back -80 -60, fore 80 60
    const auto spHandle = Take(m_spPath, m_spPath->GetStream().GetControlPoint(1), HIT_FORE);
    spHandle->OnDrag({-80, 40}, 0);
    EXPECT_EQ(anchor.GetFore(STATE_LIVE), (CPoint{0, 100}));
    EXPECT_EQ(anchor.GetBack(STATE_LIVE), (CPoint{0, -100}));
    spHandle->OnDrag({-80, -60}, 0); // to nothing: the other stays as it was turned
    EXPECT_EQ(anchor.GetBack(STATE_LIVE), (CPoint{0, -100}));
    spHandle->OnDrag({-80, 40}, ALT);
    spHandle->OnDrag({20, -60}, 0); // Alt holds to the end
    EXPECT_EQ(anchor.GetFore(STATE_LIVE), (CPoint{100, 0}));
    EXPECT_EQ(anchor.GetBack(STATE_LIVE), (CPoint{0, -100}));
    spHandle->OnCommit();
    // Now it is a corner, and stays one.
    const auto spOther = Take(m_spPath, m_spPath->GetStream().GetControlPoint(1), HIT_BACK);
    spOther->OnDrag({-100, 100}, 0);
    EXPECT_EQ(anchor.GetBack(STATE_LIVE), (CPoint{-100, 0}));
    EXPECT_EQ(anchor.GetFore(STATE_LIVE), (CPoint{100, 0}));
    spOther->OnCancel();
    EXPECT_EQ(anchor.GetBack(STATE_LIVE), (CPoint{0, -100}));
    m_vHistory[0]->Undo();
    EXPECT_EQ(anchor.GetBack(STATE_LIVE), (CPoint{-80, -60}));
    EXPECT_TRUE(AreOpposite({-1000, 0}, {500, 17}) && AreOpposite({-20, 0}, {20, 2}));
    EXPECT_FALSE(AreOpposite({-1000, 0}, {500, 18}) || AreOpposite({-20, 0}, {20, 3}) ||
                 AreOpposite({-20, 0}, {-20, 0}));
    EXPECT_TRUE(AreOpposite({}, {5, 5}));
}

TEST_F(ControlPointDrag, AltPullsHandlesOutOfAnAnchorAndOneSideOutOfAMark) {
    const auto spPull = Take(m_spPath, m_spPath->GetStream().GetControlPoint(0), HIT_ANCHOR, ALT);
    spPull->OnDrag({30, -70}, 0);
    EXPECT_EQ(Anchor(0).GetFore(STATE_LIVE), (CPoint{30, -70}));
    EXPECT_EQ(Anchor(0).GetBack(STATE_LIVE), (CPoint{-30, 70}));
    EXPECT_EQ(Anchor(0).GetAnchor()[STATE_LIVE], (CPoint{80, 72}));
    spPull->OnCancel();
    const auto spLevel = MakeLevelStroke(2); // half-width 40
    const auto spMark = spLevel->GetStream().AddWidthPoint(0x8000);
    spLevel->Update();
    const auto widths = [&] {
        return std::pair(spMark->GetWidth(SIDE_LEFT, STATE_LIVE), spMark->GetWidth(SIDE_RIGHT, STATE_LIVE));
    };
    const auto spSide = Take(spLevel, spMark, HIT_ANCHOR, ALT);
    spSide->OnDrag({500, 0}, 0); // along the line
    spSide->OnDrag({500, -100}, 0);
    EXPECT_EQ(widths(), std::pair(50u, 40u));
    spSide->OnDrag({0, 250}, 0); // the side stays chosen
    EXPECT_EQ(widths(), std::pair(15u, 40u));
    spSide->OnDrag({0, 9000}, 0);
    EXPECT_EQ(widths(), std::pair(0u, 40u));
    spSide->OnCancel();
    // Without Alt both sides follow a handle.
    const auto spBoth = Take(spLevel, spMark, HIT_RIGHT);
    spBoth->OnDrag({0, 100}, 0);
    EXPECT_EQ(widths(), std::pair(50u, 50u));
    spBoth->OnDrag({0, 200}, ALT);
    EXPECT_EQ(widths(), std::pair(50u, 60u));
}

TEST_F(ControlPointDrag, FreshAnchorsAreDraggedAsPartOfWhatMadeThem) {
    const TBytes vBefore = BytesOf(*m_spPath);
    const auto insert = [&] {
        const auto spSnapshot = m_spPath->CreateSnapshot();
        return boost::make_shared<CAnchorInstallDrag>(m_spPath, m_spPath->Divide(0x8000), spSnapshot,
                                                      GetRegister());
    };
    insert()->OnCancel();
    EXPECT_EQ(BytesOf(*m_spPath), vBefore);
    const auto spDrag = insert();
    const CPoint pt = Anchor(1).GetAnchor()[STATE_COMMITTED];
    spDrag->OnDrag({11, 22}, 0);
    spDrag->OnCommit();
    EXPECT_EQ(Anchor(1).GetAnchor()[STATE_COMMITTED], pt + (CPoint{11, 22}));
    ASSERT_EQ(m_vHistory.size(), 1u);
    EXPECT_EQ(m_vHistory[0]->GetName(), L"制御点の追加");
    m_vHistory[0]->Undo();
    EXPECT_EQ(BytesOf(*m_spPath), vBefore);
    const auto spPath = boost::make_shared<CClosedPathObject>();
    const auto spPoint = spPath->AppendControlPoint({8, 8});
    CAnchorHandleDrag pull(spPath, spPoint);
    pull.OnDrag({40, 0}, ALT);
    EXPECT_FALSE(IsZero(spPoint->GetFore(STATE_LIVE)) || !IsZero(spPoint->GetBack(STATE_LIVE)));
    pull.OnDrag({40, 16}, 0);
    pull.OnCommit();
    EXPECT_EQ(spPoint->GetFore(STATE_COMMITTED), (CPoint{40, 16}));
    EXPECT_EQ(spPoint->GetBack(STATE_COMMITTED), (CPoint{-40, -16}));
}
