// The panels of layers and history in a running session.
#include "core/Commands/CommandIds.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/Panels/ColorControls.h"
#include "core/Panels/LayerThumbnails.h"
#include "session/seam/SessionDialogs.h"
#include "tests/support/PanelSession.h"

#include <boost/algorithm/string/join.hpp>

namespace {

using EKind = TPanelControl::EKind;

class LayerPanel : public CPanelSession {
protected:
    // Every row: depth, fold, eye, clip, name; paler ones in brackets, the selected one with a star.
    static std::wstring Rows(int nPanel = ID_PANEL_LAYER) {
        const TPanelControl& tree = Control(nPanel, EKind::Tree);
        std::vector<std::wstring> vRows;
        for (const TTreeRow& row : tree.vTree) {
            std::wstring str(static_cast<size_t>(row.nDepth), L' ');
            if (row.fold != EFold::None) str += row.fold == EFold::Open ? L"-" : L"+";
            if (row.eye == EEye::Hidden) str += L"x";
            if (row.bClipped) str += L"^";
            str += row.bDim ? L"(" + row.strText + L")" : row.strText;
            if (static_cast<int>(vRows.size()) == tree.nValue) str += L"*";
            if (nPanel == ID_PANEL_HISTORY && !row.strNote.empty()) str += L"!";
            vRows.push_back(str);
        }
        return boost::algorithm::join(vRows, L"|");
    }
    static void Tell(EMessage id, int nRow, int nValue = 0, const std::wstring& str = {}) {
        const int nTree = Control(ID_PANEL_LAYER, EKind::Tree).nId;
        const bool bPlain = id == EMessage::PanelChange || id == EMessage::PanelRename;
        Send(ID_PANEL_LAYER, id, nTree, bPlain ? nRow : PackPoint(nRow, nValue), str);
    }
    static void Drop(int nFrom, int nTo, EDropAt at) {
        Tell(EMessage::PanelDrop, nFrom, PackDrop(nTo, static_cast<int>(at)));
    }
    static void Command(int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); }
    static size_t UndoSteps() { return Canvas().GetHistory().GetUndoList().size(); }
    // From the top: D, a set S of C and B, A that clips c.
    static void MakeTree() {
        const auto spCanvas = Active().GetCanvas();
        CLayerBuffer& root = Canvas().GetRoot();
        const TLayerPtr spA = root.GetChildren().front();
        const TLayerPtr spSet = CreateLayerSet(spCanvas);
        const auto add = [&](CLayerBuffer& parent, const TLayerPtr& spLayer, const wchar_t* pszName) {
            spLayer->setName(pszName);
            parent.AddLayer(spLayer, -1, false);
        };
        spA->setName(L"A");
        add(*spA, CreateRasterLayer(spCanvas), L"c");
        add(root, spSet, L"S");
        add(*spSet, CreateRasterLayer(spCanvas), L"B");
        add(*spSet, CreateVectorLayer(spCanvas), L"C");
        add(root, CreateRasterLayer(spCanvas), L"D");
        SendMessage({g_pMainFrame->GetWindow(), AppMessage(2)});
    }
};

} // namespace

TEST_F(LayerPanel, ShowsTheTreeFromTheTopAndFoldsIt) {
    const auto fold = [](int nRow, bool bClosed) { Tell(EMessage::PanelFold, nRow, bClosed); };
    Play({MakeTree,
          [&] {
              EXPECT_EQ(Rows(), L"D|-S| C| B|-A*| ^c");
              EXPECT_EQ(Control(ID_PANEL_LAYER, EKind::Tree).vTree[2].strNote, L"ベクタ  100%");
              Tell(EMessage::PanelEye, 1, static_cast<int>(EEyeAct::Hide));
              EXPECT_EQ(Rows(), L"D|-x(S)| (C)| (B)|-A*| ^c");
              Tell(EMessage::PanelChange, 3);
          },
          [&] {
              fold(1, true);
              EXPECT_EQ(Rows(), L"D|+x(S)*|-A| ^c") << "the set stands for what lies in it";
              EXPECT_EQ(Canvas().GetActiveLayer()->GetName(), L"B");
              fold(1, false);
              EXPECT_EQ(Rows(), L"D|-x(S)| (C)| (B)*|-A| ^c");
              EXPECT_EQ(UndoSteps(), 0u);
              EXPECT_TRUE(Canvas().GetHistory().IsModified()) << "an eye";
              Tell(EMessage::PanelChange, 99);
              fold(-1, true);
          }});
}

TEST_F(LayerPanel, ARowIsDroppedBetweenOntoAndBelowAllOthers) {
    struct TCase {
        int nFrom, nTo;
        EDropAt at;
        const wchar_t* pszRows; ///< empty when nothing changes
    };
    const TCase CASES[] = {
        {0, 1, EDropAt::Below, L"-S| D| C| B|-A*| ^c"},
        {0, 2, EDropAt::Below, L"-S| C| D| B|-A*| ^c"},
        {0, 3, EDropAt::Above, L"-S| C| D| B|-A*| ^c"},
        {0, 1, EDropAt::Onto, L"-S| D| C| B|-A*| ^c"},
        {0, 4, EDropAt::Onto, L"-S| C| B|-A*| ^D| ^c"},
        {0, 6, EDropAt::Below, L"-S| C| B|-A*| ^c|D"},
        {2, 0, EDropAt::Above, L"C|D|-S| B|-A*| ^c"},
        {5, 0, EDropAt::Below, L"D|c|-S| C| B|A*"},
        {4, 3, EDropAt::Above, L"D|-S| C| -A*|  ^c| B"},
        {3, 2, EDropAt::Above, L"D|-S| B| C|-A*| ^c"},
        {3, 0, EDropAt::Onto, L"-D| ^B|-S| C|-A*| ^c"},
        {1, 3, EDropAt::Onto, L""},
        {1, 1, EDropAt::Onto, L""},
        {0, 1, EDropAt::Above, L""},
        {3, 2, EDropAt::Below, L""},
        {0, 7, EDropAt::Above, L"-S| C| B|-A*| ^c|D"},
    };
    std::vector<std::function<void()>> vSteps{MakeTree};
    for (const TCase& drop : CASES)
        vSteps.push_back([&] {
            const std::wstring strBefore = Rows();
            const bool bMoves = *drop.pszRows != 0;
            Drop(drop.nFrom, drop.nTo, drop.at);
            SendMessage({g_pMainFrame->GetWindow(), AppMessage(2)});
            EXPECT_EQ(Rows(), bMoves ? drop.pszRows : strBefore) << drop.nFrom << " to " << drop.nTo;
            EXPECT_EQ(UndoSteps(), bMoves ? 1u : 0u);
            Command(ID_EDIT_UNDO);
            SendMessage({g_pMainFrame->GetWindow(), AppMessage(2)});
            EXPECT_EQ(Rows(), strBefore);
        });
    Play(vSteps);
}

TEST_F(LayerPanel, OneLayerIsShownAloneAndTheOthersComeBack) {
    const auto alone = [](int nRow) { Tell(EMessage::PanelEye, nRow, static_cast<int>(EEyeAct::Alone)); };
    Play({MakeTree, [&] {
              Tell(EMessage::PanelEye, 0, static_cast<int>(EEyeAct::Hide));
              alone(3);
              EXPECT_EQ(Rows(), L"x(D)|-S| x(C)| B|-x(A)*| ^(c)");
              alone(0); // another one: from what was shown before
              EXPECT_EQ(Rows(), L"D|-x(S)| (C)| (B)|-x(A)*| ^(c)");
              alone(0);
              EXPECT_EQ(Rows(), L"x(D)|-S| C| B|-A*| ^c");
              const auto command = [] {
                  SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_LAYER_SOLO});
              };
              command(); // for the active layer
              EXPECT_EQ(Rows(), L"x(D)|-x(S)| (C)| (B)|-A*| ^c");
              command();
              EXPECT_EQ(Rows(), L"x(D)|-S| C| B|-A*| ^c");
          }});
}

TEST_F(LayerPanel, NameOpacityAndColourAreUndoable) {
    const auto color = [] {
        return dynamic_cast<CVectorLayerBuffer&>(*Canvas().GetActiveLayer()).GetLayerColor();
    };
    Play({MakeTree,
          [&] {
              Tell(EMessage::PanelRename, 0, 0, L"  線 ");
              Tell(EMessage::PanelRename, 1, 0, L" ");
              EXPECT_EQ(Rows().substr(0, 4), L"線|-S");
              const int nSlider = Control(ID_PANEL_LAYER, EKind::Slider).nId;
              for (const int nPercent : {80, 40, 50})
                  Send(ID_PANEL_LAYER, EMessage::PanelChange, nSlider, nPercent);
              EXPECT_EQ(Canvas().GetActiveLayer()->GetOpacity(), 128);
              EXPECT_EQ(UndoSteps(), 2u) << "the slider's way is one step";
              EXPECT_FALSE(Control(ID_PANEL_LAYER, EKind::View).bEnabled) << "a raster layer has no colour";
              Tell(EMessage::PanelChange, 2);
          },
          [&] {
              EXPECT_TRUE(Control(ID_PANEL_LAYER, EKind::View).bEnabled);
              const int64_t nSwatch = PackView(0, Control(ID_PANEL_LAYER, EKind::View).nId);
              TAnswer answer{.kind = TAnswer::EKind::Dialog, .strDialog = "CLayerColorDialog"};
              answer.act = TControlAct{.wParam = COLOR_RED, .lParam = 0};
              m_pStage->dialogs.Push(answer);
              m_pStage->dialogs.Push({});
              Send(ID_PANEL_LAYER, EMessage::LButtonUp, nSwatch, 0);
              EXPECT_EQ(color(), 0xFFFFFFu) << "cancelled";
              EXPECT_EQ(UndoSteps(), 2u);
              answer.act.reset();
              answer.mapFields["blue"] = L"0";
              m_pStage->dialogs.Push(answer);
              Send(ID_PANEL_LAYER, EMessage::LButtonUp, nSwatch, 0);
              EXPECT_EQ(color(), MakeColor(255, 255, 0));
              EXPECT_EQ(UndoSteps(), 3u);
              Command(ID_EDIT_UNDO);
              EXPECT_EQ(color(), 0xFFFFFFu);
          }});
}

TEST_F(LayerPanel, ThumbnailsAreMadeWhenIdleAndOnlyOfWhatHasChanged) {
    using TPictures = std::vector<boost::shared_ptr<const TPicture>>;
    const auto pictures = [] {
        TPictures v;
        for (const TTreeRow& row : Control(ID_PANEL_LAYER, EKind::Tree).vTree) v.push_back(row.spPicture);
        return v;
    };
    // The blue of a canvas pixel in a thumbnail at scale 2.
    const auto at = [](const TPicture& picture, int x, int y) {
        EXPECT_EQ(picture.sz, (CSize{50, 40}));
        return picture.vPixels[static_cast<size_t>(4 * (y / 2 * picture.sz.cx + x / 2))];
    };
    const auto eye = [](EEyeAct act) { Tell(EMessage::PanelEye, 2, static_cast<int>(act)); };
    const auto pause = [&] {
        dynamic_cast<CVirtualClock&>(m_pStage->platform.clock).Advance(CLayerThumbnails::PAUSE_MS);
    };
    boost::shared_ptr<CVectorLayerBuffer> spVector;
    TPictures vBefore;
    Play({[&] {
              MakeTree();
              const TLayerPtr spSet = *std::next(Canvas().GetRoot().GetChildren().begin());
              spVector = boost::dynamic_pointer_cast<CVectorLayerBuffer>(spSet->GetChildren().back());
              spVector->SetLayerColor(0);
              spVector->InsertPath(MakeRectPath({10, 10, 30, 30}));
          },
          pause,
          [&] {
              vBefore = pictures();
              ASSERT_TRUE(vBefore[0] && !vBefore[1] && vBefore[2]) << "a set has none";
              EXPECT_EQ(at(*vBefore[2], 20, 20), 0);
              EXPECT_EQ(at(*vBefore[2], 60, 20), 255);
              eye(EEyeAct::Hide);
          },
          pause,
          [&] {
              EXPECT_EQ(pictures(), vBefore) << "a hidden layer keeps its thumbnail";
              spVector->InsertPath(MakeRectPath({50, 10, 70, 30}));
              eye(EEyeAct::Show);
          },
          [&] {
              EXPECT_EQ(pictures(), vBefore) << "the hand may go on";
              pause();
          },
          [&] {
              TPictures vNow = pictures();
              EXPECT_EQ(at(*vNow[2], 60, 20), 0);
              vNow[2] = vBefore[2];
              EXPECT_EQ(vNow, vBefore) << "of the others nothing has changed";
          }});
}

TEST_F(LayerPanel, PanelsRestWhileThePointerMovesOverTheCanvas) {
    const auto advance = [this](uint32_t uMs) {
        dynamic_cast<CVirtualClock&>(m_pStage->platform.clock).Advance(uMs);
    };
    const auto point = [&](uint32_t uMs, EMessage id = EMessage::MouseMove) {
        advance(uMs);
        m_pStage->platform.queue.Post({Active().GetWindow(), id, 0, PackPoint(5, 5)});
    };
    const auto edit = [] { Canvas().GetRoot().AddLayer(CreateRasterLayer(Active().GetCanvas()), -1); };
    const auto shows = [](int nSteps, ptrdiff_t nPictures) {
        const auto& vTree = Control(ID_PANEL_LAYER, EKind::Tree).vTree;
        EXPECT_EQ(Control(ID_PANEL_HISTORY, EKind::Tree).nValue, nSteps);
        EXPECT_EQ(static_cast<int>(vTree.size()), nSteps + 1);
        EXPECT_EQ(std::ranges::count_if(vTree, [](const auto& row) { return row.spPicture != nullptr; }),
                  nPictures);
    };
    std::vector<std::function<void()>> vSteps{
        [&] { advance(CLayerThumbnails::PAUSE_MS); },
        [&] { shows(0, 1), edit(), point(0); },
        [&] { shows(0, 1), point(99); },
        [&] { shows(0, 1), advance(99); },
        // It has rested long enough.
        [&] { shows(0, 1), advance(1); },
        [&] { shows(1, 1), advance(CLayerThumbnails::PAUSE_MS); },
        [&] { shows(1, 2), edit(), point(0); },
        // The user turns away from the canvas.
        [&] { shows(1, 2), point(1, EMessage::MouseLeave); },
        // A command is followed at once.
        [&] { shows(2, 2), point(0); },
        [&] { Command(ID_EDIT_UNDO); },
        // In a record what the user did in a panel follows at once, in the rows as they have become.
        [&] { shows(1, 2), edit(), edit(), point(0); },
        [&] {
            const int nList = Control(ID_PANEL_HISTORY, EKind::Tree).nId;
            m_pStage->platform.queue.Post({&Window(ID_PANEL_HISTORY), EMessage::PanelChange, nList, 2});
        },
        [&] { shows(2, 2), edit(), point(0); },
    };
    // Of a pen that is held above the tablet the panels see a moment every second.
    for (int n = 0; n < 10; ++n) vSteps.push_back([&] { shows(2, 2), point(99, EMessage::PenPacket); });
    vSteps.push_back([&] { shows(2, 2), point(10, EMessage::PenPacket); });
    vSteps.push_back([&] { shows(3, 2); });
    Play(vSteps);
}

TEST_F(LayerPanel, HistoryGoesToAnyStateInOneStep) {
    const auto click = [](int nRow) {
        Send(ID_PANEL_HISTORY, EMessage::PanelChange, Control(ID_PANEL_HISTORY, EKind::Tree).nId, nRow);
    };
    Play({[&] {
              EXPECT_EQ(Rows(ID_PANEL_HISTORY), L"<< 初期状態 >>*");
              for (const int nId : {ID_LAYER_NEW_RASTER, ID_LAYER_NEW_VECTOR, ID_LAYER_DELETE}) Command(nId);
          },
          [&] {
              EXPECT_EQ(Rows(ID_PANEL_HISTORY), L"<< 初期状態 >>|レイヤー追加|レイヤー追加|レイヤー削除*");
              Canvas().GetHistory().SetModified(false);
          },
          [&] {
              EXPECT_EQ(Rows(ID_PANEL_HISTORY), L"<< 初期状態 >>|レイヤー追加|レイヤー追加|レイヤー削除*!");
              click(1);
          },
          [&] {
              EXPECT_EQ(Rows(ID_PANEL_HISTORY),
                        L"<< 初期状態 >>|レイヤー追加*|(レイヤー追加)|(レイヤー削除)!");
              EXPECT_EQ(Canvas().GetRoot().GetChildren().size(), 2u);
              click(0);
          },
          [&] {
              EXPECT_EQ(Canvas().GetRoot().GetChildren().size(), 1u);
              click(3);
          },
          [&] {
              EXPECT_EQ(Rows(ID_PANEL_HISTORY), L"<< 初期状態 >>|レイヤー追加|レイヤー追加|レイヤー削除*!");
              click(7);
              SendMessage({Active().GetWindow(), EMessage::LButtonDown, MOUSE_LEFT, PackPoint(20, 20)});
          },
          [&] { // in the middle of a stroke
              const TPanelControl& button = Control(ID_PANEL_LAYER, EKind::Button);
              EXPECT_TRUE(button.bEnabled) << "it would flicker";
              Send(ID_PANEL_LAYER, EMessage::PanelChange, button.nId, 0);
              click(0);
              Tell(EMessage::PanelRename, 0, 0, L"x");
          },
          [&] {
              EXPECT_EQ(Canvas().GetHistory().GetUndoList().size(), 3u);
              SendMessage({Active().GetWindow(), EMessage::LButtonUp, 0, PackPoint(20, 20)});
          }});
}
