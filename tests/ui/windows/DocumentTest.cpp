#include "tests/ui/UiTest.h"

#include "tests/support/Session.h"
#include "tests/support/TempFolder.h"

#include <QSessionManager>

#include <csignal>

namespace {

class DocumentWindows : public testing::Test {
protected:
    struct TSession : CUiSession {
        explicit TSession(CMemoryFiles& files) : m_scope(m_platform.GetPlatform()) {
            m_files.m_mapFiles.swap(files.m_mapFiles);
            CreateMainFrame();
        }
        CSessionScope m_scope;
    };

    DocumentWindows() {
        for (const wchar_t* psz : {L"/1.vlm", L"/2.vlm", L"/3.vlm", L"/4.vlm", L"/絵\n [*] &5.vlm"})
            SaveDocument(*CreateCanvas({60, 40}), psz, m_disk);
        m_pSession = std::make_unique<TSession>(m_disk);
        Settle();
    }
    void Restart() {
        CMemoryFiles files;
        files.m_mapFiles = Files();
        m_pSession.reset();
        m_pSession = std::make_unique<TSession>(files);
        Settle();
    }
    void Settle() { m_pSession->Settle(); }
    void Drop(const QStringList& lstPaths) {
        QMimeData data;
        QList<QUrl> lstUrls{QUrl("http://example.org/x.png")};
        for (const QString& str : lstPaths) lstUrls << QUrl::fromLocalFile(str);
        data.setUrls(lstUrls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        for (QDropEvent* pEvent : {static_cast<QDropEvent*>(&enter), &drop}) {
            QCoreApplication::sendEvent(&Main(), pEvent);
            EXPECT_TRUE(pEvent->isAccepted());
        }
        Settle();
    }
    QStringList Recent() {
        QStringList lst;
        m_lstRecent.clear();
        emit Main().menuBar()->actions().at(0)->menu()->aboutToShow();
        for (QMenu* pMenu : Main().menuBar()->actions().at(0)->menu()->findChildren<QMenu*>())
            for (QAction* pAction : pMenu->actions())
                if (pAction->isVisible()) m_lstRecent << pAction, lst << pAction->text();
        return lst;
    }
    std::map<std::wstring, std::string>& Files() { return m_pSession->m_files.m_mapFiles; }
    QMainWindow& Main() { return *dynamic_cast<QMainWindow*>(g_pMainFrame->GetWindow()); }
    static CCanvasFrame& Active() { return *g_wpActiveFrame.lock(); }

    CSettingsFolder m_folder;
    CMemoryFiles m_disk;
    std::unique_ptr<TSession> m_pSession;
    CBoxCloser m_closer;
    QList<QAction*> m_lstRecent;
};

} // namespace

TEST_F(DocumentWindows, DroppedFilesOpenAndFailuresAreTold) {
    Drop({"/1.vlm", m_folder.GetPath().c_str(), "/none.vlm", "/絵\n [*] &5.vlm"});
    ASSERT_EQ(g_lstCanvasFrame.size(), 2u);
    EXPECT_EQ(Active().GetCanvas()->GetPath(), L"/絵\n [*] &5.vlm");
    const QString strMissing = "'\n\n" + QString::fromWCharArray(AdviceFor(EFileFailure::Missing));
    EXPECT_EQ(m_closer.m_lstTexts,
              (QStringList{"画像ファイルを開けませんでした。\nFile: '" + QString(m_folder.GetPath().c_str()) +
                               strMissing,
                           "ファイルを開けませんでした。\nFile: '/none.vlm" + strMissing}));
}

TEST_F(DocumentWindows, TheRecentListFollowsAndSurvives) {
    EXPECT_EQ(Recent(), QStringList{"(なし)"});
    for (const char* psz : {"/1.vlm", "/2.vlm", "/3.vlm", "/1.vlm", "/4.vlm"}) Drop({psz});
    EXPECT_EQ(Recent(), (QStringList{"&1 /4.vlm", "&2 /1.vlm", "&3 /3.vlm", "&4 /2.vlm"}));
    Files().erase(L"/3.vlm");
    m_lstRecent[2]->trigger();
    Settle();
    ASSERT_EQ(m_closer.m_lstTexts.size(), 1);
    EXPECT_TRUE(m_closer.m_lstTexts[0].startsWith("ファイルを開けませんでした。\nFile: '/3.vlm'"));
    Restart();
    EXPECT_EQ(Recent(), (QStringList{"&1 /4.vlm", "&2 /1.vlm", "&3 /2.vlm"}));
    m_lstRecent[2]->trigger();
    Settle();
    EXPECT_EQ(Active().GetCanvas()->GetPath(), L"/2.vlm");
    EXPECT_EQ(Recent().at(0), "&1 /2.vlm");
}

TEST_F(DocumentWindows, TheEndOfTheDesktopOrOfTheProcessKeepsWhatIsUnsaved) {
    static int s_nKept = -1; // the disk's state when the previous signal handler was called
    static std::filesystem::path s_path;
    s_path = m_folder.File("Vellumcraft/Recovery");
    static const auto s_fnCount = [] {
        std::error_code error;
        return static_cast<int>(
            std::ranges::count_if(std::filesystem::directory_iterator(s_path, error),
                                  [](const auto& entry) { return entry.path().extension() == ".vlm"; }));
    };
    m_disk.m_mapFiles = Files();
    m_pSession.reset();
    const auto before = std::signal(SIGTERM, [](int) { s_nKept = s_fnCount(); });
    m_pSession = std::make_unique<TSession>(m_disk);
    Settle();
    const auto change = [&](const char* pszFile) {
        Drop({pszFile});
        const auto spCanvas = Active().GetCanvas();
        spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    };
    change("/1.vlm");
    alignas(void*) static std::byte aManager[64]; // never called
    emit qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(aManager));
    EXPECT_EQ(s_fnCount(), 1);
    // With a dialog open, whose own loop gets the event.
    change("/2.vlm");
    QTimer::singleShot(0, [] { raise(SIGTERM); });
    m_pSession->m_platform.GetPlatform().boxes.Show(Active().GetWindow(), L"?", L"", EBoxKind::Plain);
    QTest::qWait(20);
    EXPECT_EQ(s_nKept, 2);
    m_pSession.reset();
    raise(SIGTERM);
    EXPECT_EQ(s_nKept, 2) << "given back with the session";
    std::signal(SIGTERM, before);
}

TEST_F(DocumentWindows, ChangedDocumentsAreMarked) {
    Drop({"/1.vlm", "/絵\n [*] &5.vlm"});
    const auto spCanvas = Active().GetCanvas();
    // The active child's mark and the frame's.
    const auto marks = [&] {
        Settle();
        const auto& child = *dynamic_cast<QWidget*>(Active().GetWindow());
        return std::pair(child.isWindowModified(), Main().isWindowModified());
    };
    spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    EXPECT_EQ(marks(), std::pair(true, false));
    dynamic_cast<QMdiSubWindow*>(Active().GetWindow())->showMaximized();
    EXPECT_EQ(marks(), std::pair(true, true));
    EXPECT_TRUE(Main().windowTitle().contains("[*][*] &5.vlm[*]"));
    g_lstCanvasFrame.front()->GetWindow()->Activate();
    EXPECT_EQ(marks(), std::pair(false, false));
    g_lstCanvasFrame.back()->GetWindow()->Activate();
    spCanvas->GetHistory().SetModified(false); // saved
    EXPECT_EQ(marks(), std::pair(false, false));
    PostToMainFrame(EMessage::Command, ID_EDIT_UNDO);
    EXPECT_EQ(marks(), std::pair(true, true));
}
