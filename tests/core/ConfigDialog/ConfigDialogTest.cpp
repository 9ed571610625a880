// The pages of the settings, by the model alone and in a session.
#include "core/ConfigDialog/ConfigDialog.h"

#include "core/Base/Resource.h"
#include "core/Commands/MenuTable.h"
#include "core/Commands/Shortcuts.h"
#include "core/MainFrame/KeyCommands.h"
#include "core/Tools/PenCurve.h"
#include "session/seam/SessionKeys.h"
#include "tests/support/PanelSession.h"

namespace {

// Controls of the pages.
enum EControl : int {
    PEN_LAST = 202,
    PEN_TRACE,
    PEN_FIT = 205,
    PEN_END,
    PEN_STATUS,
    PEN_TAKE = 209,
    MAX_HISTORY = 301,
    AUTO_SAVE = 305,
    SAVE_SAMPLES = 308,
    FILTER = 401,
    LIST,
    KEY,
    CONFLICT,
    ASSIGN,
    REMOVE,
    RESET,
    RESET_ALL,
    WRITE,
    READ,
};

class ConfigDialog : public CPanelSession {
protected:
    /// Runs `fn` on a dialog over settings of its own.
    void Run(const std::function<void(CConfigDialog&)>& fn) {
        Play({[&] {
            const TConfigOutside outside{
                m_pStage->platform, g_AppModule.GetSettings(), m_switches, m_shortcuts, m_curve, nullptr,
                ListKeyCommands()};
            CConfigDialog dialog(outside);
            fn(dialog);
        }});
    }
    static void Change(CConfigDialog& dialog, int nId, int nValue, const std::wstring& strText = {}) {
        dialog.OnControlMessage({nullptr, EMessage::PanelChange, nId, nValue, strText});
    }
    static const TPanelControl& Get(const CConfigDialog& dialog, int nId) {
        return *std::ranges::find(dialog.m_vControls, nId, &TPanelControl::nId);
    }
    /// Selects the line of a command that the filter leaves alone.
    static void Select(CConfigDialog& dialog, const std::wstring& strFilter) {
        Change(dialog, FILTER, 0, strFilter);
        ASSERT_EQ(Get(dialog, LIST).vTree.size(), 2u) << "a title and one line";
        Change(dialog, LIST, 1);
    }
    void Answer(int nControl, int nValue, const std::wstring& strText = {}) {
        TAnswer answer{.kind = TAnswer::EKind::Dialog, .strDialog = "CConfigDialog"};
        if (nControl) answer.act = TControlAct{EMessage::PanelChange, nControl, nValue, strText};
        m_pStage->dialogs.Push(answer);
    }

    TGlobalSwitches m_switches;
    CShortcuts m_shortcuts = CShortcuts::GetDefault();
    TPenCurve m_curve;
};

} // namespace

TEST_F(ConfigDialog, OpensWithTheTabletsPageAndListsEveryCommandByName) {
    Run([](CConfigDialog& dialog) {
        std::vector<std::string> vPages, vOpen;
        std::set<int> setIds;
        for (const TPanelControl& control : dialog.m_vControls) {
            EXPECT_TRUE(setIds.insert(control.nId).second) << control.nId;
            if (control.kind != TPanelControl::EKind::Page) continue;
            vPages.push_back(control.strName);
            if (control.nValue) vOpen.push_back(control.strName);
        }
        EXPECT_EQ(dialog.m_vControls.front().kind, TPanelControl::EKind::Page);
        EXPECT_EQ(vOpen, std::vector<std::string>{"Page_EnvTablet"});
        EXPECT_EQ(vPages.size(), 4u);
        std::set<std::wstring> setTexts;
        for (const TTreeRow& row : Get(dialog, LIST).vTree) setTexts.insert(row.strText);
        for (const wchar_t* pszText :
             {L"新規作成", L"カラーモード：軽量表示", L"予測線：弱", L"消しゴム", L"ブラシを大きく",
              L"色を拾う", L"最近使ったファイル4", L"このレイヤーだけ表示"})
            EXPECT_TRUE(setTexts.contains(pszText)) << ToUtf8(pszText);
        const std::vector<int> vIds = ListCommands(ListKeyCommands());
        for (int nId = 1; nId < 0x10000; ++nId)
            EXPECT_EQ(std::ranges::count(vIds, nId), FindCommandName(nId) ? 1 : 0) << nId;
        Change(dialog, LIST, 0); // a title has no key
        EXPECT_FALSE(Get(dialog, ASSIGN).bEnabled || Get(dialog, REMOVE).bEnabled);
    });
}

TEST_F(ConfigDialog, AKeyIsShownWithItsOwnerBeforeItIsAssigned) {
    const int nUndo = 'Z' | KEY_CONTROL, nFree = 'U' | KEY_CONTROL | KEY_SHIFT;
    Run([&](CConfigDialog& dialog) {
        Select(dialog, L"全選択");
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"");
        Change(dialog, KEY, nFree);
        EXPECT_EQ(Get(dialog, KEY).strText, L"Ctrl+Shift+U");
        EXPECT_EQ(Get(dialog, CONFLICT).strText, L"Ctrl+Shift+U は空いています。");
        Change(dialog, KEY, nUndo);
        EXPECT_EQ(Get(dialog, CONFLICT).strText,
                  L"Ctrl+Z は「取り消し」のキーです。割り当てるとそちらから外れます。");
        Change(dialog, ASSIGN, 1);
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"Ctrl+Z");
        EXPECT_FALSE(Get(dialog, ASSIGN).bEnabled) << "it has it";
        EXPECT_TRUE(m_shortcuts == CShortcuts::GetDefault()) << "until OK";
        Change(dialog, KEY, VK_Space);
        EXPECT_FALSE(Get(dialog, ASSIGN).bEnabled);
        Change(dialog, ASSIGN, 1); // a script presses what a user cannot
        Select(dialog, L"色を拾う");
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"Alt, I");
        Change(dialog, KEY, nFree);
        EXPECT_FALSE(Get(dialog, ASSIGN).bEnabled) << "a held key has no modifiers";
        Change(dialog, KEY, 0xBC);
        Change(dialog, ASSIGN, 1);
        Change(dialog, KEY, 'I');
        Change(dialog, REMOVE, 1);
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"Alt, ,") << "the one in the field only";
        EXPECT_TRUE(dialog.OnOk(nullptr));
    });
    EXPECT_EQ(m_shortcuts.FindCommand(KeyOfValue(nUndo)), ID_SELECT_ALL);
    EXPECT_EQ(m_shortcuts.FindCommand(TKey{0xBC}), ID_HOLD_PICK);
    EXPECT_EQ(m_shortcuts.FindCommand(TKey{'I'}), 0);
    EXPECT_EQ(m_shortcuts.FindCommand(TKey{VK_Space}), 0);
    EXPECT_NE(m_shortcuts.Format().find("CN\t5A\tselect-all"), std::string::npos)
        << "a held key selects once";
    Run([&](CConfigDialog& dialog) {
        Select(dialog, L"f3");
        Change(dialog, REMOVE, 1);
        ASSERT_EQ(Get(dialog, LIST).vTree.size(), 2u) << "the selected line stays";
        Change(dialog, RESET, 1);
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"Ctrl+Z, F3");
        Change(dialog, FILTER, 0, L"ctrl++");
        EXPECT_FALSE(Get(dialog, REMOVE).bEnabled) << "a line that is not shown is not selected";
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"F1, Ctrl++, Ctrl+Shift++");
        Change(dialog, RESET_ALL, 1);
        EXPECT_TRUE(dialog.OnOk(nullptr));
    });
    EXPECT_TRUE(m_shortcuts == CShortcuts::GetDefault());
}

TEST_F(ConfigDialog, ASetOfKeysIsAFileAndADamagedOneChangesNothing) {
    const auto file = [this](CConfigDialog& dialog, int nButton, const wchar_t* pszPath) {
        m_pStage->dialogs.Push({.kind = TAnswer::EKind::File, .strPath = pszPath});
        Change(dialog, nButton, 1);
    };
    m_outside.m_files.m_mapFiles[L"/bad.keys"] = "C\t5A\n";
    m_outside.m_files.m_mapFiles[L"/strange.keys"] = "C\t5A\tno-such\n";
    m_outside.m_files.m_mapFiles[L"/fixed.keys"] =
        "-\t20\tselect-all\nS\t1B\tselect-all\n-\t79\tselect-all\n";
    Run([&](CConfigDialog& dialog) {
        Select(dialog, L"全選択");
        Change(dialog, REMOVE, 1);
        file(dialog, WRITE, L"/mine.keys");
        Change(dialog, RESET_ALL, 1);
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"");
        Change(dialog, KEY, 0x77);
        Change(dialog, ASSIGN, 1);
        file(dialog, WRITE, L"/mine.keys");
        Change(dialog, RESET, 1);
        file(dialog, READ, L"/mine.keys");
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"F8");
        file(dialog, READ, L"/bad.keys");
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"F8");
        file(dialog, READ, L"/none.keys");
        file(dialog, READ, L"/strange.keys");
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"F8") << "no line of it is of use";
        file(dialog, READ, L"/fixed.keys");
        EXPECT_EQ(Get(dialog, LIST).vTree[1].strNote, L"F10") << "Space and Escape stay what they are";
    });
    ASSERT_EQ(m_outside.m_vShown.size(), 3u);
    EXPECT_EQ(m_outside.m_vShown[0],
              L"ショートカットのファイルを開けませんでした。\nFile: '/bad.keys'\n\nショートカットのファイルで"
              L"はないか、内容が壊れています。何も変わっていません。別のファイルを選んでください。");
    EXPECT_NE(m_outside.m_vShown[1].find(L"/none.keys"), std::wstring::npos);
}

TEST_F(ConfigDialog, ChangedKeysWorkAndAreNamedAtOnce) {
    const auto menuText = [](IWindow* pWindow) {
        std::wstring strText;
        ForEachCommand(dynamic_cast<CSessionCanvasWindow&>(*pWindow).GetMenu(), [&](const TMenuItem& item) {
            if (item.nId == ID_VIEW_FLIP_H) strText = item.strText;
        });
        return strText;
    };
    // Whether the hint of the status line names the key beside Alt.
    const auto hints = [](const wchar_t* pszKeys) {
        g_pMainFrame->OnIdle(0);
        const auto& main = dynamic_cast<CSessionMainWindow&>(*g_pMainFrame->GetWindow());
        return main.GetStatusText(0).find(std::wstring(pszKeys) + L": 色を拾う") != std::wstring::npos;
    };
    Play({[&] {
        EXPECT_TRUE(hints(L"Alt・I"));
        EXPECT_EQ(menuText(Active().GetWindow()), L"左右反転\tCtrl+Down");
        Answer(FILTER, 0, L"左右反転");
        Answer(LIST, 1);
        Answer(KEY, 'I');
        Answer(ASSIGN, 1);
        Answer(0, 0);
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_APP_CONFIG});
        EXPECT_EQ(menuText(Active().GetWindow()), L"左右反転\tCtrl+Down, I");
        EXPECT_TRUE(hints(L"Alt"));
        EXPECT_TRUE(g_pMainFrame->PreTranslateMessage({g_pMainFrame->GetWindow(), EMessage::KeyDown, 'I'}));
        EXPECT_TRUE(Active().GetView().GetState().bFlipH);
    }});
    CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
    EXPECT_EQ(CShortcuts::Read(config).FindCommand(TKey{'I'}), ID_VIEW_FLIP_H);
}

TEST_F(ConfigDialog, ThePensPressuresAreFittedAfterTenSecondsOrWhenAsked) {
    uint32_t uTime = 0xFFFFF000;
    const auto draw = [&](CConfigDialog& dialog, int nReports, uint32_t uStep) {
        for (int n = 0; n < nReports; ++n, uTime += uStep) {
            TPenReport report;
            report.packet.uPressure = n % 3 == 0 ? 0 : static_cast<uint32_t>(200 + n % 100 * 4);
            report.uTime = uTime;
            dialog.OnPen(PEN_TRACE, report);
        }
    };
    Run([&](CConfigDialog& dialog) {
        const auto status = [&] { return Get(dialog, PEN_STATUS).strText; };
        EXPECT_FALSE(Get(dialog, PEN_TAKE).bEnabled || Get(dialog, PEN_END).bEnabled);
        draw(dialog, 300, 8); // nothing is collected yet
        Change(dialog, PEN_FIT, 1);
        dialog.OnControlMessage({nullptr, EMessage::LButtonDown, PackView(0, PEN_TRACE), 0});
        EXPECT_FALSE(Get(dialog, PEN_END).bEnabled) << "a mouse tells nothing of the hand";
        draw(dialog, 90, 8);
        EXPECT_NE(status().find(L"あと 10 秒"), std::wstring::npos);
        Change(dialog, PEN_END, 1);
        EXPECT_EQ(status().find(L"合わせられませんでした"), 0u) << "too few";
        EXPECT_FALSE(Get(dialog, PEN_TAKE).bEnabled);
        Change(dialog, PEN_FIT, 1);
        draw(dialog, 300, 36); // 10.8 seconds
        EXPECT_EQ(status().find(L"合わせました"), 0u);
        EXPECT_EQ(Get(dialog, PEN_TAKE).nValue, 1);
        Change(dialog, PEN_TAKE, 0);
        EXPECT_TRUE(dialog.OnOk(nullptr));
        EXPECT_EQ(m_curve, TPenCurve()) << "not taken";
        Change(dialog, PEN_TAKE, 1);
        EXPECT_TRUE(dialog.OnOk(nullptr));
    });
    EXPECT_NEAR(m_curve.uLow, (200 - 20) * TPenCurve::FULL / 1003, 3000);
    EXPECT_NEAR(m_curve.uHigh, (600 - 20) * TPenCurve::FULL / 1003, 3000);
    CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
    EXPECT_EQ(TPenCurve::Read(config), m_curve);
}

TEST_F(ConfigDialog, TheMouseThatADriverMovesBesideThePenIsNotDrawn) {
    Run([&](CConfigDialog& dialog) {
        const auto press = [&](uint32_t uLater) {
            m_pStage->clock.Advance(uLater);
            dialog.OnControlMessage({nullptr, EMessage::LButtonDown, PackView(0, PEN_TRACE), 0});
            return Get(dialog, PEN_LAST).strText.find(L"筆圧 100%") == 0;
        };
        EXPECT_TRUE(press(0));
        dialog.OnPen(PEN_TRACE, {});
        EXPECT_FALSE(press(999));
        EXPECT_TRUE(press(1));
    });
}

TEST_F(ConfigDialog, LimitsOfMemoryHoldAtOnceAndAWrongNumberIsPutBack) {
    const TGlobalSwitches before = g_Switches;
    Run([this](CConfigDialog& dialog) {
        m_pStage->dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Ok});
        Change(dialog, MAX_HISTORY, 0, L"0");
        EXPECT_FALSE(dialog.OnOk(nullptr));
        EXPECT_EQ(Get(dialog, MAX_HISTORY).strText, L"10");
    });
    Play({[&] {
              Answer(MAX_HISTORY, 0, L"25");
              Answer(AUTO_SAVE, 0, L"86401");
              Answer(0, 0);
              m_pStage->dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Ok});
              Answer(AUTO_SAVE, 0, L"30");
              Answer(SAVE_SAMPLES, 0);
              Answer(0, 0);
              SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_APP_CONFIG});
              EXPECT_EQ(g_Switches.m_nMaxHistory, 25);
              EXPECT_EQ(g_Switches.m_nAutoSave, 30);
          },
          [] {
              EXPECT_EQ(Control(ID_PANEL_HISTORY, TPanelControl::EKind::Combo).nValue, 1)
                  << "the panel's choice follows";
          }});
    CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
    EXPECT_EQ(config.GetSection(L"Global")->GetInt(L"AutoSaveSeconds", 0), 30);
    EXPECT_EQ(config.GetSection(L"Global")->GetInt(L"SaveInkSamples", 1), 0);
    g_Switches = before;
}
