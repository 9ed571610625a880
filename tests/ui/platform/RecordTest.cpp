#include "tests/ui/UiTest.h"

#include "session/recorder/Recorder.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/Session.h"
#include "tests/support/TempFolder.h"

namespace {

boost::shared_ptr<CCanvasBuffer> OpenCanvas() {
    CreateMainFrame();
    const auto spCanvas = MakePage({300, 200});
    g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
    return spCanvas;
}

std::string BytesOf(CCanvasBuffer& canvas) {
    CMemoryFiles files;
    SaveDocument(canvas, L"d.vlm", files);
    return files.m_mapFiles[L"d.vlm"];
}

class CRecordedWindow : CUiSession {
public:
    explicit CRecordedWindow(TWriteLine fnWrite)
        : m_recorder(m_platform.GetPlatform(), std::move(fnWrite)), m_scope(m_recorder.GetPlatform()) {
        g_AppModule.GetSettings().GetSection(L"Tablet")->SetInt(L"MouseCoord", 0);
        m_spCanvas = OpenCanvas();
        Settle();
    }
    void Settle() { CUiSession::Settle(m_recorder.GetPlatform().queue); }
    QWidget& GetViewport() const { return *ViewOf(g_wpActiveFrame.lock()->GetWindow()).viewport(); }
    void Stroke(QPointF ptFrom, QPointF ptStep) {
        const QPointF ptMiddle(GetViewport().rect().center());
        for (int n = 0; n < 40; ++n) {
            const double dPressure = n == 0 || n > 35 ? 0 : 0.3 + n * 0.015;
            SendPen(GetViewport(), m_pen, ptMiddle + ptFrom + ptStep * n, dPressure, n, -7);
            if (n % 7 == 0) Settle();
        }
        Settle();
    }
    void Wheel(int nDelta) {
        const QPointF pt(GetViewport().rect().center());
        QWheelEvent event(pt, GetViewport().mapToGlobal(pt), {}, {0, nDelta}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&GetViewport(), &event);
        Settle();
    }
    void Type(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&GetViewport(), key, modifiers);
        Settle();
    }
    void PickTool(int nTool) {
        auto* pPanel = dynamic_cast<QWidget*>(g_pMainFrame->GetPanels().Find(12805)->GetWindow());
        QTest::mouseClick(pPanel->findChild<QWidget*>(QString::number(nTool)), Qt::LeftButton);
        Settle();
    }
    IMainWindow& GetMain() { return *g_pMainFrame->GetWindow(); }

    QPointingDevice m_pen = MakePen();
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;

private:
    CRecorder m_recorder;
    CSessionScope m_scope;
};

TEST(Typing, LastsWhileThePointerOnlyPassesOverThePicture) {
    CTestSettings folder;
    CRecordedWindow window([](std::string_view) { return true; });
    window.GetMain().Show();
    auto& main = dynamic_cast<QMainWindow&>(window.GetMain());
    auto* pPanel = dynamic_cast<QWidget*>(g_pMainFrame->GetPanels().Find(12815)->GetWindow());
    auto* pText = pPanel->findChild<QLineEdit*>("4");
    ASSERT_NE(pText, nullptr);
    QWidget& view = window.GetViewport();
    const QPointF pt(view.rect().center());
    const auto mouse = [&](QEvent::Type type, Qt::MouseButton button) {
        QMouseEvent event(type, pt, view.mapToGlobal(pt), button, button, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &event);
        window.Settle();
    };
    pText->setFocus();
    mouse(QEvent::MouseMove, Qt::NoButton);
    SendPen(view, window.m_pen, pt, 0);
    window.Settle();
    EXPECT_EQ(main.focusWidget(), pText);
    SendPen(view, window.m_pen, pt, 0.5);
    window.Settle();
    EXPECT_EQ(main.focusWidget(), view.parentWidget()) << "a pen that draws takes the keyboard";
}

TEST(Record, OfTheRealWindowGivesTheSameDocumentWithoutOne) {
    CTestSettings folder;
    std::string strRecord, strDocument;
    size_t nUndo = 0;
    {
        CRecordedWindow window([&](std::string_view str) { return strRecord += str, true; });
        window.Stroke({-60.25, -20.5}, {2.125, 1.5});
        window.Wheel(120);
        window.Stroke({-80, 30}, {3, -1.75});
        window.Type(Qt::Key_Z, Qt::ControlModifier);
        window.PickTool(8);
        window.GetMain().SetRect({0, 0, 900, 700});
        window.Settle();
        window.Type(Qt::Key_Right, Qt::ControlModifier);
        window.Stroke({-50, 10}, {1.3, -0.8});
        window.Stroke({-30, 40}, {1.7, -2});
        strDocument = BytesOf(*window.m_spCanvas);
        nUndo = window.m_spCanvas->GetHistory().GetUndoList().size();
    }
    EXPECT_EQ(nUndo, 3u) << "one of four strokes was undone";

    CMemoryFiles files;
    CNoPlaces places;
    CImageCodecs codecs(files);
    CSessionPlatform session({files, places, places, codecs}, ParseScript(strRecord, "record"));
    boost::shared_ptr<CCanvasBuffer> spCanvas;
    {
        CSessionScope scope(session.GetPlatform());
        spCanvas = OpenCanvas();
        scope.Run();
    }
    EXPECT_EQ(session.GetFailure(), "");
    EXPECT_TRUE(BytesOf(*spCanvas) == strDocument) << strRecord;
}

} // namespace
