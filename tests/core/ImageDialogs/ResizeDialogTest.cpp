#include "core/ImageDialogs/ResizeDialog.h"
#include "core/PanelViews/PanelDraw.h"
#include "session/seam/Glass.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/NotedBoxes.h"

namespace {

TEST(ResizeDialog, JudgesNumbersThenSmallThenLargeSizes) {
    CNotedBoxes boxes;
    const std::wstring strNumber = L"数字を入力してください。Vellumcraft",
                       strSmall = L"キャンバスサイズ小さすぎます。Vellumcraft",
                       strLarge = L"キャンバスサイズ大きすぎます。Vellumcraft";
    using TMargins = std::array<const wchar_t*, 4>; // top, left, right, bottom
    for (const auto& [margins, strWanted] :
         {std::pair(TMargins{L"", L"-200", L"20000", L"0"}, strNumber),
          {{L"-150", L"x", L"20000", L"0"}, strNumber},
          {{L"-150", L"-200", L"1.5", L"0"}, strNumber},
          {{L"-150", L"-200", L"20000", L"--1"}, strNumber},
          {{L"-150", L"0", L"20000", L"0"}, strSmall},
          {{L"0", L"-99", L"-101", L"0"}, strSmall},
          {{L"0", L"-99999999999", L"0", L"0"}, strSmall},
          {{L"0", L"1", L"11800", L"0"}, strLarge},
          {{L"９９９９９９９９９９９", L"0", L"99999999999", L"1"}, strLarge},
          {{L" ＋11850", L"0", L"11800　", L"0"}, std::wstring()},
          {{L"-149", L"－１９９", L"0", L"0"}, std::wstring()}}) {
        CResizeDialog dialog(boxes, boost::make_shared<TPicture>(), {200, 150});
        for (size_t i = 0; i < 4; ++i)
            dialog.OnControlMessage({nullptr, EMessage::PanelChange, int64_t(725 + i), 0, margins[i]});
        boxes.m_str.clear();
        EXPECT_EQ(dialog.OnOk(nullptr), strWanted.empty());
        EXPECT_EQ(boxes.m_str, strWanted);
        if (!strWanted.empty()) continue;
        const bool bLarge = dialog.GetFrame() == CRect(0, -11850, 12000, 150);
        EXPECT_TRUE(bLarge || dialog.GetFrame() == CRect(199, 149, 200, 150));
        EXPECT_EQ(dialog.GetControls()[5].strText, bLarge ? L"12000 × 12000 px" : L"1 × 1 px");
    }
}

TEST(ResizeDialog, AScriptMovesThePictureAndItsUndoComesBack) {
    CScriptedSession session;
    const std::string strCommand = ScriptLine("command", "image-size");
    const auto words = [](const char* pszVerb, const TWords& more) {
        return ScriptLine(pszVerb, {{"dialog", "CResizeDialog"}}, more);
    };
    const std::string strRefused = strCommand + words("reply", {{"top", "ten"}}) +
                                   ScriptLine("reply", {{"box", "ok"}}) +
                                   words("reply", {{"top", 10}, {"left", 30}, {"right", "-5"}});
    EXPECT_EQ(session.Play(strRefused + LEAVE_UNSAVED), "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{225, 160}));
    EXPECT_EQ(session.InkAt({31, 12}), 255);
    EXPECT_EQ(session.m_spCanvas->GetHistory().GetUndoList().front()->GetName(), L"画像サイズ変更");
    EXPECT_EQ(session.Play(strRefused + ScriptLine("command", "edit-undo") + strCommand +
                           words("reply", {{"top", 0}}) + LEAVE_UNSAVED),
              "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{200, 150}));
    EXPECT_EQ(session.InkAt({1, 2}), 255);
    EXPECT_TRUE(session.m_spCanvas->GetHistory().CanRedo()) << "no margin, no step";
    // The line that cancels is for the change and not for the picture in the dialog.
    EXPECT_EQ(session.Play(words("answer", {{"top", 10}}) + strCommand + ScriptLine("cancel-work", true) +
                           strCommand + words("reply", {{"top", 20}}) + LEAVE_UNSAVED),
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
