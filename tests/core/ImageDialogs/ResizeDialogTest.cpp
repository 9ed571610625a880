#include "core/ImageDialogs/ResizeDialog.h"
#include "core/PanelViews/PanelDraw.h"
#include "session/seam/Glass.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/NotedBoxes.h"

namespace {

TEST(ResizeDialog, JudgesNumbersThenSmallThenLargeSizes) {
    CNotedBoxes boxes;
    // Margins in the order top, left, right, bottom; on success the frame.
    const auto judge = [&](const std::array<const wchar_t*, 4>& aMargins) {
        CResizeDialog dialog(boxes, boost::make_shared<TPicture>(), {200, 150});
        for (size_t i = 0; i < 4; ++i)
            dialog.OnControlMessage({nullptr, EMessage::PanelChange, int64_t(725 + i), 0, aMargins[i]});
        boxes.m_str.clear();
        const bool bOk = dialog.OnOk(nullptr);
        EXPECT_EQ(bOk, boxes.m_str.empty());
        const CRect rc = dialog.GetFrame();
        if (!boxes.m_str.empty()) return boxes.m_str;
        return dialog.GetControls()[5].strText + L": " + std::to_wstring(rc.left) + L"," +
               std::to_wstring(rc.top);
    };
    const std::wstring strNumber = L"数字を入力してください。Vellumcraft",
                       strSmall = L"キャンバスサイズ小さすぎます。Vellumcraft",
                       strLarge = L"キャンバスサイズ大きすぎます。Vellumcraft";
    for (const wchar_t* psz : {L"", L"x", L"1.5", L"--1"})
        for (size_t i = 0; i < 4; ++i) {
            std::array<const wchar_t*, 4> aMargins{L"-150", L"-200", L"20000", L"0"};
            aMargins[i] = psz;
            EXPECT_EQ(judge(aMargins), strNumber);
        }
    EXPECT_EQ(judge({L"-150", L"0", L"20000", L"0"}), strSmall);
    EXPECT_EQ(judge({L"0", L"-99", L"-101", L"0"}), strSmall);
    EXPECT_EQ(judge({L"0", L"-99999999999", L"0", L"0"}), strSmall);
    EXPECT_EQ(judge({L"0", L"1", L"11800", L"0"}), strLarge);
    EXPECT_EQ(judge({L"11850", L"0", L"0", L"1"}), strLarge);
    EXPECT_EQ(judge({L"９９９９９９９９９９９", L"0", L"99999999999", L"0"}), strLarge);
    EXPECT_EQ(judge({L" ＋11850", L"0", L"11800　", L"0"}), L"12000 × 12000 px: 0,-11850");
    EXPECT_EQ(judge({L"-149", L"－１９９", L"0", L"0"}), L"1 × 1 px: 199,149");
}

TEST(ResizeDialog, AScriptMovesThePictureAndItsUndoComesBack) {
    CScriptedSession session;
    const std::string strResize =
        ScriptLine("command", "image-size") + R"({"reply":{"dialog":"CResizeDialog","top":)";
    const std::string strRefused = strResize + "\"ten\"}}\n" + R"({"reply":{"box":"ok"}}
{"reply":{"dialog":"CResizeDialog","top":10,"left":30,"right":"-5"}}
)";
    EXPECT_EQ(session.Play(strRefused + LEAVE_UNSAVED), "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{225, 160}));
    EXPECT_EQ(session.InkAt({31, 12}), 255);
    const CHistoryStream& history = session.m_spCanvas->GetHistory();
    EXPECT_EQ(history.GetUndoList().front()->GetName(), L"画像サイズ変更");
    EXPECT_EQ(
        session.Record(strRefused + ScriptLine("command", "edit-undo") + strResize + "0}}\n" + LEAVE_UNSAVED),
        "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{200, 150}));
    EXPECT_EQ(session.InkAt({1, 2}), 255);
    EXPECT_TRUE(session.m_spCanvas->GetHistory().CanRedo()) << "no margin, no step";
    EXPECT_NE(session.m_strRecord.find(R"({"reply":{"control":725,"dialog":"CResizeDialog","text":"10")"),
              std::string::npos);
}

TEST(ResizeDialog, AScriptCancelsTheChangeAndNotThePictureBefore) {
    CScriptedSession session;
    const std::string strCommand = ScriptLine("command", "image-size");
    const auto words = [](const char* pszVerb, int nTop) {
        return ScriptLine(pszVerb, {{"dialog", "CResizeDialog"}, {"top", nTop}});
    };
    EXPECT_EQ(session.Play(words("answer", 10) + strCommand + ScriptLine("cancel-work", true) + strCommand +
                           words("reply", 20) + LEAVE_UNSAVED),
              "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{200, 170}));
}

TEST(FrameView, ShowsWhatIsCutOffDarkerAndWhatIsAddedWhite) {
    constexpr CSize SIZE{1400, 700};
    constexpr TColor RED = 0x0000FF, BLUE = 0xFF0000, BACK = 0x405060, FRAME = MakeColor(0x2E, 0x7D, 0xC8);
    const auto spCanvas = MakePage(SIZE);
    auto& layer = dynamic_cast<CRasterLayerBuffer&>(*spCanvas->GetActiveLayer());
    for (const auto& [x, color] : {std::pair(0, RED), std::pair(700, BLUE)}) {
        const auto spTile = layer.GetRaster()->CreateBlock({0, 0})->CreateBlank({700, 700});
        spTile->Fill(color, 255);
        layer.GetRaster()->PasteBlock(*spTile, {x, 0});
    }
    const auto spPicture = MakeSmallPicture(*spCanvas, NoProgress());
    EXPECT_LE(spPicture->sz.cx, 640);
    spCanvas->ComposeAll();
    EXPECT_EQ(MakeSmallPicture(*spCanvas, NoProgress())->vPixels, spPicture->vPixels);
    CFrameView view(spPicture, SIZE);
    CGlass glass;
    glass.Resize({508, 208});
    const auto shown = [&](int32_t x) {
        const uint8_t* p = glass.GetPixel({(x + 350) * 2 / 7 + 4, 100});
        return MakeColor(p[2], p[1], p[0]);
    };
    view.SetFrame(CRect(-350, 0, 700, 700));
    view.OnPaint(glass, {.sz = {508, 208}, .clrBack = BACK});
    EXPECT_EQ(shown(-175), 0xFFFFFFu);
    EXPECT_EQ(shown(350), RED);
    EXPECT_EQ(shown(1050), MixColors(BLUE, 0, 0.6));
    EXPECT_EQ(shown(-360), BACK);
    EXPECT_EQ(shown(-350), FRAME);
    EXPECT_EQ(shown(697), FRAME);
    view.SetFrame({});
    view.OnPaint(glass, {.sz = {508, 208}, .clrBack = BACK});
    EXPECT_EQ(shown(1050), BLUE);
}

} // namespace
