#include "core/PathWidthTool/PathRangeDrag.h"
#include "tests/support/Paths.h"

namespace {

class WidthDrag : public testing::Test {
protected:
    void AddMark(uint32_t t, uint32_t uLeft, uint32_t uRight) {
        const auto spMark = Stream().AddWidthPoint(t);
        spMark->LeftHandle()->Set(uLeft);
        spMark->RightHandle()->Set(uRight);
        m_spPath->Update();
    }
    COpenPathStream& Stream() { return m_spPath->GetStream(); }

    /// The drag of an operation over places along the stroke, a little beside it; committed unless it shall
    /// stay open. While it is open, nothing but the live state may move.
    boost::shared_ptr<CPathRangeDrag> Drag(int nType, int nCoef, const std::vector<int32_t>& vPlaces,
                                           bool bCommit = true) {
        const TBytes vBefore = BytesOf(*m_spPath);
        const auto vOutline = Stream().GetOutline(STATE_COMMITTED);
        const auto spDrag = BeginRangeDrag(
            nType,
            {m_spPath, {vPlaces[0], 9}, nCoef, 24, [this](const auto& sp) { m_history.Register(sp); }});
        for (size_t n = 1; n < vPlaces.size(); ++n) spDrag->OnDrag({vPlaces[n] - vPlaces[0], 0}, 0);
        const auto vShown = Stream().GetOutline(STATE_LIVE);
        m_spPath->Update();
        EXPECT_EQ(Stream().GetOutline(STATE_LIVE), vShown);
        EXPECT_EQ(Stream().GetOutline(STATE_COMMITTED), vOutline);
        EXPECT_EQ(BytesOf(*m_spPath), vBefore);
        if (!bCommit) return spDrag;
        spDrag->OnCommit();
        EXPECT_EQ(Stream().GetOutline(STATE_COMMITTED), vShown);
        if (BytesOf(*m_spPath) == vBefore) return spDrag;
        const TBytes vAfter = BytesOf(*m_spPath);
        m_history.Undo();
        EXPECT_EQ(BytesOf(*m_spPath), vBefore);
        EXPECT_EQ(Stream().GetOutline(STATE_COMMITTED), vOutline);
        m_history.Redo();
        EXPECT_EQ(BytesOf(*m_spPath), vAfter);
        return spDrag;
    }
    /// The number of steps and the marks in their order: place in path units, then left and right width, a
    /// cut's angle, or an opacity.
    std::string Marks() {
        std::ostringstream out;
        out << m_history.GetUndoList().size() << ':';
        const auto place = [&](const auto& spMark) {
            out << ' ' << Stream().PointAt(spMark->GetParameter()[STATE_COMMITTED], STATE_COMMITTED).x;
        };
        for (const auto& spMark : SortedByParameter(Stream().GetWidthPoints(), STATE_COMMITTED)) {
            place(spMark);
            out << '=' << spMark->GetWidth(SIDE_LEFT, STATE_COMMITTED) << ','
                << spMark->GetWidth(SIDE_RIGHT, STATE_COMMITTED);
        }
        for (const auto& spMark : SortedByParameter(Stream().GetTransPoints(), STATE_COMMITTED)) {
            place(spMark);
            out << '/' << spMark->GetAngle()[STATE_COMMITTED];
        }
        for (const auto& spMark : SortedByParameter(Stream().GetAlphaPoints(), STATE_COMMITTED)) {
            place(spMark);
            out << '*' << spMark->GetAlpha()[STATE_COMMITTED];
        }
        return out.str();
    }

    boost::shared_ptr<COpenPathObject> m_spPath = MakeEvenStroke();
    struct : CHistoryStream {
    } m_history;
};

} // namespace

TEST_F(WidthDrag, PointsAreSetOverTheStretch) {
    const std::pair<int, const char*> aExpected[] = {
        {WIDTH_POINTS_1, "1: 720=60,60"},
        {WIDTH_POINTS_2, "1: 240=60,60 720=60,60"},
        {WIDTH_POINTS_3, "1: 240=40,40 480=60,60 720=40,40"},
        {WIDTH_POINTS_4, "1: 240=40,40 400=60,60 560=60,60 720=40,40"},
        {WIDTH_MULTIPLY, "1: 240=40,40 480=60,60 720=40,40"},
        {WIDTH_ADD, "1: 240=40,40 480=52,52 720=40,40"},
        {WIDTH_ERASE, "0:"},
        {WIDTH_ALPHA, "1: 240*255 720*255"},
        {WIDTH_CUT, "1: 240/90 720/90"}};
    for (const auto& [nType, pszMarks] : aExpected)
        for (const auto& vPlaces : {std::vector{240, 720}, std::vector{240, 0, 900, 250, 700, 720}}) {
            m_spPath = MakeEvenStroke();
            m_history.Clear();
            Drag(nType, 15, vPlaces);
            EXPECT_EQ(Marks(), pszMarks) << nType;
        }
    const TPolyBezier vStretch = Drag(WIDTH_CUT, 0, {720, 240}, false)->GetStretch();
    EXPECT_EQ(vStretch.size(), 7u);
    EXPECT_EQ(std::pair(vStretch.front(), vStretch.back()), std::pair(CPoint(240, 0), CPoint(720, 0)));
    // Backward the press is the range's end.
    Drag(WIDTH_POINTS_1, 7, {720, 300});
    EXPECT_EQ(Marks(), "2: 300=28,28 240/90 720/90");
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"太さ制御点の追加");
    EXPECT_EQ(m_history.GetUndoList().back()->GetName(), L"透明化制御点の追加");
    for (const int nType : {-1, WIDTH_TYPES}) EXPECT_FALSE(BeginRangeDrag(nType, {m_spPath, {}, 10, 1, {}}));
}

TEST_F(WidthDrag, WhatStandsInTheStretchIsReplacedOrChangedAndNeverCompounds) {
    const auto begin = [&] {
        m_spPath = MakeEvenStroke();
        m_history.Clear();
        AddMark(0x4000, 20, 20); // at 120, and so on
        AddMark(0xC000, 41, 30);
        AddMark(0x10000, 60, 0);
        AddMark(0x1C000, 10, 10);
        // The ends have the old profile's widths.
        const auto widths = [&](uint32_t t) {
            const auto au = Stream().GetWidthsAt(t, STATE_COMMITTED);
            return "=" + std::to_string(au[0]) + ',' + std::to_string(au[1]);
        };
        return std::pair("240" + widths(0x8000), "720" + widths(0x18000));
    };
    const std::string strHead = "1: 120=20,20 ", strTail = " 840=10,10";
    for (int nType = 0; nType < WIDTH_CUT; ++nType) {
        const auto [strA, strB] = begin();
        const std::string aExpected[] = {"720=60,60",
                                         "240=60,60 720=60,60",
                                         strA + " 480=60,60 " + strB,
                                         strA + " 400=60,60 560=60,60 " + strB,
                                         strA + " 360=61,45 480=90,0 " + strB,
                                         strA + " 360=53,42 480=72,12 " + strB,
                                         ""};
        Drag(nType, 15, {240, 960, 300, 260, 720, 720});
        const std::string& strNew = aExpected[nType];
        EXPECT_EQ(Marks(), strHead + strNew + (strNew.empty() ? strTail.substr(1) : strTail)) << nType;
    }
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"太さ制御点の削除");
    // A mark at the very end of the range is changed, not doubled.
    begin();
    Drag(WIDTH_MULTIPLY, 20, {360, 480});
    EXPECT_EQ(Marks(), "1: 120=20,20 360=82,60 480=120,0 840=10,10");
    Drag(WIDTH_ERASE, 0, {0, 960});
    EXPECT_EQ(Marks(), "2:");
    EXPECT_EQ(Stream().GetOutline(STATE_COMMITTED),
              MakeEvenStroke()->GetStream().GetOutline(STATE_COMMITTED));
}

TEST_F(WidthDrag, OneSpotIsEnoughForOnePointOnly) {
    for (int nType = WIDTH_POINTS_2; nType < WIDTH_TYPES; ++nType) {
        Drag(nType, 15, {480});
        Drag(nType, 15, {480, 503});      // under the 24 units that count as a range
        Drag(nType, 15, {480, 700, 480}); // and back
        EXPECT_EQ(Marks(), "0:") << nType;
    }
    Drag(WIDTH_POINTS_1, 15, {480});
    EXPECT_EQ(Marks(), "1: 480=60,60");
    Drag(WIDTH_POINTS_1, 15, {480}); // the same again
    EXPECT_EQ(Marks(), "1: 480=60,60");
    Drag(WIDTH_POINTS_1, 15, {480, 700, 490});
    EXPECT_EQ(Marks(), "2: 490=60,60");
    m_history.Undo();
    EXPECT_EQ(Marks(), "1: 480=60,60");
    Drag(WIDTH_MULTIPLY, 20, {480, 600}, false)->OnCancel();
    EXPECT_EQ(Marks(), "1: 480=60,60");
    EXPECT_EQ(Stream().GetOutline(STATE_LIVE), Stream().GetOutline(STATE_COMMITTED));
}

TEST_F(WidthDrag, TransparentStretchesUnite) {
    Drag(WIDTH_CUT, 0, {120, 240});
    Drag(WIDTH_CUT, 0, {480, 600});
    Stream().GetTransPoints()[0]->SetAngle(CDualValue<uint32_t>(60));
    m_spPath->Update();
    EXPECT_EQ(Marks(), "2: 120/60 240/90 480/90 600/90");
    Drag(WIDTH_CUT, 0, {130, 230});
    EXPECT_EQ(Marks(), "2: 120/60 240/90 480/90 600/90") << "inside";
    Drag(WIDTH_CUT, 0, {200, 360});
    EXPECT_EQ(Marks(), "3: 120/60 360/90 480/90 600/90");
    Drag(WIDTH_CUT, 0, {540, 360}, false)->OnCommit();
    EXPECT_EQ(Marks(), "4: 120/60 600/90");
    Drag(WIDTH_CUT, 0, {0, 960});
    EXPECT_EQ(Marks(), "5: 0/90 960/90");
}

TEST_F(WidthDrag, AnOpacityHoldsForTheStretchOnly) {
    Drag(WIDTH_ALPHA, 5, {240, 720});
    EXPECT_EQ(Marks(), "1: 160*255 240*128 720*128 800*255");
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"不透明度記号の追加");
    EXPECT_EQ(Stream().GetAlphaAt(0x10000, STATE_COMMITTED), 128u);
    EXPECT_EQ(Stream().GetAlphaAt(0x5555 + 0x1555, STATE_COMMITTED), 192u); // at 200, half way up
    // Marks that stand beside the new stretch already are enough; those in it are replaced.
    Drag(WIDTH_ALPHA, 2, {300, 700});
    EXPECT_EQ(Marks(), "2: 160*255 240*128 300*51 700*51 720*128 800*255");
    Drag(WIDTH_ALPHA, 20, {960, 70});
    EXPECT_EQ(Marks(), "3: 70*255 960*255");
    Drag(WIDTH_ALPHA, 0, {70, 960});
    EXPECT_EQ(Marks(), "4: 70*0 960*0");
    EXPECT_TRUE(RemoveMark(m_spPath, *Stream().GetAlphaPoints()[0],
                           [this](const auto& sp) { m_history.Register(sp); }));
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"不透明度記号の削除");
    m_history.Undo();
    EXPECT_EQ(Marks(), "4: 70*0 960*0");
}

TEST_F(WidthDrag, RemovedMarksComeBackInTheirPairs) {
    AddMark(0x8000, 20, 30);
    for (const uint32_t t : {0x18000u, 0x4000u, 0x10000u, 0xC000u}) Stream().AddTransPoint(t);
    m_spPath->Update();
    const TBytes vBefore = BytesOf(*m_spPath);
    const auto fnRegister = [&](const auto& sp) { m_history.Register(sp); };
    const auto spCut = Stream().GetTransPoints()[3];
    EXPECT_TRUE(RemoveMark(m_spPath, *spCut, fnRegister));
    EXPECT_EQ(Marks(), "1: 240=20,30 480/90 720/90");
    EXPECT_TRUE(RemoveMark(m_spPath, *Stream().GetWidthPoints()[0], fnRegister));
    EXPECT_EQ(Marks(), "2: 480/90 720/90");
    EXPECT_EQ(m_history.GetUndoList()[1]->GetName(), L"透明化制御点の削除");
    EXPECT_FALSE(RemoveMark(m_spPath, *Stream().GetTerm(true), fnRegister));
    for (int n = 0; n < 2; ++n) m_history.Undo();
    EXPECT_EQ(BytesOf(*m_spPath), vBefore);
    EXPECT_EQ(Stream().GetTransPoints()[3], spCut);
}
