// Exporting, long work that a script cancels, and the states of all commands.
#include "core/CanvasFrame/JpegDialog.h"
#include "core/Commands/MenuTable.h"
#include "tests/session/ScriptedSession.h"

#include <gtest/gtest.h>

namespace {

class ExportDesktop : public testing::Test, protected CScriptedSession {
protected:
    // Gives File, Export and answers its file dialog and what follows.
    static std::string Export(const char* pszPath, const std::string& strMore = {}) {
        return ScriptLine("answer", {{"file", pszPath}}) + strMore + "{\"command\":\"file-export\"}\n";
    }
    static std::string Quality(int nQuality) {
        return ScriptLine("answer", {{"dialog", "CJpegDialog"}, {"quality", std::to_string(nQuality)}});
    }
    const std::string& File(const wchar_t* pszPath) { return m_files.m_mapFiles[pszPath]; }
    std::string m_strAsIs = "{\"answer\":{\"dialog\":\"CJpegDialog\"}}\n";
};

// The names of commands in a state, in the menus' order.
std::string ListEnabled(bool bEnabled) {
    std::string str;
    for (const int nId : ListCommands(LoadMenu(MENU_CANVAS)))
        if (g_pMainFrame->IsCommandEnabled(nId) == bEnabled) str += std::string(FindCommandName(nId)) + " ";
    return str;
}

} // namespace

TEST_F(ExportDesktop, AnExportLeavesTheDocumentAsItIs) {
    const std::string strSame =
        ScriptLine("expect", {{"title", "a.vlm"}, {"path", "p/a.vlm"}, {"modified", true}});
    CSessionPlatform session(
        m_parts, ParseScript("{\"save\":\"p/a.vlm\"}\n{\"command\":\"layer-new-set\"}\n" + Export("b") +
                                 Export("c.psd") + Export("d.bmp") + strSame + LEAVE_UNSAVED,
                             "s"));
    PlayOn(session.GetPlatform(), true);
    EXPECT_EQ(session.GetFailure(), "");
    EXPECT_TRUE(m_codecs.Load(L"b.png"));
    EXPECT_EQ(File(L"c.psd").substr(0, 4) + File(L"d.bmp").substr(0, 2), "8BPSBM");
    std::wstring strNames;
    for (const TShown& shown : session.GetLog().GetShown())
        if (shown.kind == TShown::EKind::FileDialog) strNames += shown.strText + L" ";
    EXPECT_EQ(strNames, L"名称未設定 p/a.png p/a.png p/a.psd ") << "the last kind is proposed";
}

TEST_F(ExportDesktop, TheQualityIsAskedForAndKept) {
    EXPECT_EQ(Play(Export("a.jpg", Quality(95)) + Export("b.jpg", Quality(20)) + Export("c.JPEG", m_strAsIs) +
                   "{\"export\":\"d.jpg\"}\n" + Export("no.jpg", "{\"answer\":{\"cancel\":true}}\n") +
                   LEAVE_UNSAVED),
              "");
    EXPECT_LT(File(L"b.jpg").size(), File(L"a.jpg").size());
    EXPECT_EQ(File(L"c.JPEG"), File(L"b.jpg")) << "kept for the next one";
    EXPECT_EQ(File(L"d.jpg"), File(L"b.jpg")) << "and for what is saved under another name";
    EXPECT_TRUE(File(L"no.jpg").empty());
}

TEST(JpegDialog, ShowsTheSizeThatTheFileWillHave) {
    CJpegDialog dialog(500, [](int nQuality) { return nQuality * 1024u - 1; });
    const auto& label = dialog.m_vControls[1];
    EXPECT_EQ(label.strText, L"約 100 KB");
    dialog.OnControlMessage({nullptr, EMessage::PanelChange, 1, 40});
    EXPECT_TRUE(dialog.GetQuality() == 40 && label.strText == L"約 40 KB" && label.bVisible);
    EXPECT_FALSE(CJpegDialog(1, [](int) { return 0; }).m_vControls[1].bVisible) << "it takes too long";
}

TEST_F(ExportDesktop, WhatAScriptCancelsHasNotHappened) {
    const char* const pszCancel = "{\"cancel-work\":true}\n";
    const std::string strBefore = "{\"save\":\"a.vlm\"}\n{\"mark\":\"a\"}\n";
    EXPECT_EQ(Play(strBefore + "{\"command\":\"layer-new-set\"}\n{\"command\":\"file-save\"}\n" + pszCancel +
                   ScriptLine("expect", {{"modified", true}}) + "{\"command\":\"edit-undo\"}\n" +
                   "{\"command\":\"layer-merge-down\"}\n" + pszCancel + "{\"command\":\"mode-grey\"}\n" +
                   pszCancel + ScriptLine("expect", {{"mark", "a"}}) + "{\"open\":\"a.vlm\"}\n" + pszCancel +
                   ScriptLine("expect", {{"frames", 1}}) + "{\"command\":\"file-recent-1\"}\n" + pszCancel +
                   "{\"command\":\"file-recent-1\"}\n" + ScriptLine("expect", {{"frames", 2}})),
              "");
    EXPECT_EQ(Play(strBefore + "{\"command\":\"layer-new-set\"}\n{\"answer\":{\"box\":\"yes\"}}\n" +
                   "{\"close\":\"frame\"}\n" + pszCancel),
              "s:6: there is no work here that can be cancelled")
        << "the window would close all the same";
    EXPECT_EQ(Play("{\"command\":\"view-fit\"}\n{\"cancel-work\":true}\n"),
              "s:2: there is no work here that can be cancelled");
    const std::string strLines = std::string("{\"command\":\"layer-merge-down\"}\n") + pszCancel;
    EXPECT_EQ(Record(strLines + LEAVE_UNSAVED), "");
    EXPECT_NE(m_strRecord.find(strLines), std::string::npos) << m_strRecord;
}

TEST_F(ExportDesktop, EveryCommandIsEnabledByItsRule) {
    const char* const pszAlways =
        "file-new new-a4-350 new-a4-600 new-full-hd file-open app-config app-exit view-outline "
        "view-all-anchors prediction-none "
        "prediction-weak prediction-medium "
        "prediction-strong view-fast-scroll panel-layer panel-history "
        "panel-tool-option panel-brush "
        "panel-tool "
        "panel-press panel-color panels-hide theme-system theme-light theme-dark app-manual app-about ";
    // There is no selection, and no picture on the clipboard.
    const std::string strLater = "edit-cut edit-copy edit-paste edit-clear ";
    CSessionPlatform session(m_parts, ParseScript(LEAVE_UNSAVED, "s"));
    CSessionScope scope(session.GetPlatform());
    CreateMainFrame();
    EXPECT_EQ(ListEnabled(true), pszAlways);
    const auto spCanvas = CreateCanvas({200, 150});
    g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
    g_pMainFrame->OnIdle(0);
    EXPECT_EQ(ListEnabled(false),
              "new-last file-recent-1 edit-undo edit-redo " + strLater +
                  "layer-delete layer-clipping layer-merge-down layer-rasterize layer-solo ");
    SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_LAYER_NEW_RASTER});
    SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_MODE_GREY});
    EXPECT_EQ(ListEnabled(false), "new-last file-recent-1 edit-redo " + strLater +
                                      "layer-clipping layer-merge-down layer-rasterize mode-light ");
    EXPECT_TRUE(g_pMainFrame->IsCommandChecked(ID_MODE_GREY) && !g_pMainFrame->IsCommandChecked(ID_MODE_RGB));
    scope.Run();
    EXPECT_EQ(session.GetFailure(), "");
}
