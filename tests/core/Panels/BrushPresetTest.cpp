#include "core/Base/Failure.h"
#include "core/Panels/BrushPresets.h"
#include "tests/support/PanelSession.h"

namespace {

constexpr int P = ID_PANEL_BRUSH;

class BrushPresets : public CPanelSession {
protected:
    static const TPanelControl& Tree() { return Control(P, TPanelControl::EKind::Tree); }
    /// The names with their notes, the chosen one in brackets.
    static std::wstring Rows(size_t nRows = 99) {
        std::wstring str;
        for (size_t n = 0; n < std::min(nRows, Tree().vTree.size()); ++n) {
            const TTreeRow& row = Tree().vTree[n];
            const std::wstring strRow = row.strText + L" " + row.strNote;
            str += (str.empty() ? L"" : L"|") +
                   (static_cast<int>(n) == Tree().nValue ? L"[" + strRow + L"]" : strRow);
        }
        return str;
    }
    static void Choose(int nRow) { Send(P, EMessage::PanelChange, Tree().nId, nRow); }
    static void Press(const wchar_t* pszButton) {
        const auto& vControls = Window(P).GetControls();
        Send(P, EMessage::PanelChange, std::ranges::find(vControls, pszButton, &TPanelControl::strText)->nId,
             0);
        g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
    }
    void PressForFile(const wchar_t* pszButton) {
        m_pStage->dialogs.Push({.kind = TAnswer::EKind::File, .strPath = L"/a.vlbrush"});
        Press(pszButton);
    }
    static CRasterBrushBase& Tool() { return dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock()); }
};

constexpr wchar_t ADD[] = L"今の設定をブラシに追加";
constexpr wchar_t UPDATE[] = L"選んだブラシを今の設定に更新";
constexpr wchar_t REMOVE[] = L"選んだブラシを削除";
constexpr wchar_t READ[] = L"ブラシをファイルから読み込む";
constexpr wchar_t WRITE[] = L"ブラシをファイルに書き出す";

} // namespace

TEST_F(BrushPresets, AToolIsSetByItsOwnListThatIsKept) {
    Play({[] {
              EXPECT_EQ(Rows(2), L"インクペン 6 px|Gペン 14 px");
              Tool().GetFreehand().m_clrBrush = 0x123456;
              Choose(1);
              EXPECT_EQ(Rows(2), L"インクペン 6 px|[Gペン 14 px]");
              EXPECT_TRUE(Tool().GetParam().BrushRadius == 14 && Tool().GetParam().BlurLevel == 100);
              EXPECT_TRUE(Tool().GetFreehand().m_uStrokeIn == 2 &&
                          Tool().GetFreehand().m_clrBrush == 0x123456);
              Tool().GetParam().BrushRadius = 9;
              Press(ADD);
              EXPECT_EQ(Rows(4), L"インクペン 6 px|Gペン 14 px|[ブラシ1 9 px]|丸ペン 4 px");
              Send(P, EMessage::PanelRename, Tree().nId, 2, L" 線画 ");
              Send(P, EMessage::PanelDrop, Tree().nId,
                   PackPoint(2, PackDrop(0, static_cast<int>(EDropAt::Above))));
              EXPECT_EQ(Rows(3), L"[線画 9 px]|インクペン 6 px|Gペン 14 px");
              Send(P, EMessage::PanelDrop, Tree().nId,
                   PackPoint(1, PackDrop(2, static_cast<int>(EDropAt::Below))));
              EXPECT_EQ(Rows(3), L"[線画 9 px]|Gペン 14 px|インクペン 6 px");
              Choose(1);
              Press(REMOVE);
              Choose(1);
              Tool().GetParam().BrushRadius = 7;
              g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
              EXPECT_EQ(Rows(3), L"線画 9 px|[インクペン 変更あり]|丸ペン 4 px");
              Press(UPDATE);
              g_pMainFrame->SwitchTool(TOOL_PENCIL);
          },
          [] {
              EXPECT_EQ(Rows(), L"鉛筆 12 px|シャープペン 5 px|やわらかい鉛筆 30 px");
              Choose(0);
              EXPECT_EQ(Rows(1), L"[鉛筆 12 px]") << "the pencil is set as the preset says";
              EXPECT_TRUE(Tree().vTree[1].spPicture) << "samples are drawn in idle time";
              g_pMainFrame->SwitchTool(TOOL_BRUSH);
          },
          [] { EXPECT_EQ(Rows(3), L"線画 9 px|[インクペン 7 px]|丸ペン 4 px"); }});
    Play({[] { EXPECT_EQ(Rows(3), L"線画 9 px|[インクペン 7 px]|丸ペン 4 px"); }});
}

TEST_F(BrushPresets, FilesAddWhatIsMissingOrNothing) {
    Play({[&] {
        g_pMainFrame->SwitchTool(TOOL_ERASER);
        g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
        PressForFile(WRITE);
        std::string& strFile = m_outside.m_files.m_mapFiles[L"/a.vlbrush"];
        EXPECT_NE(strFile.find(
                      "\nRasterEraser\tBrushRadius=8 BlurLevel=100 StrokeIn=0 StrokeOut=0\t細い消しゴム\n"),
                  std::string::npos);
        Choose(0);
        Press(REMOVE);
        strFile += "RasterPencil\tSpray=50\tざら\nAirbrush\tBrushRadius=8\tx\nRasterEraser\tBrushRadius="
                   "99999 Unknown=1 SlowSmooth=99 "
                   "BrushColor=255\t大\n";
        PressForFile(READ);
        EXPECT_EQ(Rows(), L"細い消しゴム 8 px|ソフト消しゴム 80 px|[消しゴム 24 px]|大 2000 px");
        Choose(3);
        EXPECT_EQ(Rows(), L"細い消しゴム 8 px|ソフト消しゴム 80 px|消しゴム 24 px|[大 2000 px]");
        EXPECT_EQ(Tool().GetFreehand().m_uSlowSmooth, 12u);
        for (const char* psz :
             {"", "RasterEraser\tBrushRadius\tx\n", "RasterEraser\tBrushRadius=8\t \n", "x\n"}) {
            m_outside.m_files.m_mapFiles[L"/a.vlbrush"] = std::string("RasterEraser\t-\tneu\n") + psz;
            if (!*psz) m_outside.m_files.m_mapFiles[L"/a.vlbrush"] = "# none\n";
            PressForFile(READ);
        }
        EXPECT_EQ(Tree().vTree.size(), 4u);
        g_pMainFrame->SwitchTool(TOOL_PENCIL);
        g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
        Choose(3);
        EXPECT_TRUE(Tool().GetParam().WaveEnable && Tool().GetParam().Spray == 0) << "as every pencil";
    }});
    ASSERT_EQ(m_outside.m_vShown.size(), 4u);
    for (const std::wstring& str : m_outside.m_vShown)
        EXPECT_EQ(str,
                  L"ブラシのファイルを開けませんでした。\nFile: '/a.vlbrush'\n\nブラシのファイルではないか、"
                  L"内容が壊れています。何も変わっていません。別のファイルを選んでください。");
}
