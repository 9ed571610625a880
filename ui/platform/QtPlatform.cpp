#include "ui/platform/QtPlatform.h"

#include "core/AppModule/MessageQueue.h"
#include "core/Platform/Files.h"
#include "core/Platform/Window.h"
#include "system/environment/ManualFolder.h"
#include "system/environment/RecentFiles.h"
#include "system/environment/TickClock.h"
#include "system/files/FilePath.h"
#include "ui/base/QtText.h"
#include "ui/input/QtEventPump.h"
#include "ui/input/QtKeyFilter.h"
#include "ui/input/QtPen.h"
#include "ui/manual/QtManual.h"
#include "ui/modal/QtDialogs.h"
#include "ui/modal/QtFileDialogs.h"
#include "ui/modal/QtMessageBoxes.h"
#include "ui/modal/QtProgress.h"
#include "ui/panels/QtPanel.h"
#include "ui/panels/QtPanelDocks.h"
#include "ui/platform/Clipboard.h"
#include "ui/platform/QtSessionEnd.h"
#include "ui/windows/QtCanvasWindow.h"
#include "ui/windows/QtMainWindow.h"

#include <QBuffer>
#include <QPixmap>
#include <QPointer>

namespace {

class CQtWindowFactory : public IWindowFactory {
public:
    CQtWindowFactory(CQtEventPump& pump, CQtKeyFilter* pKeys, CQtPen& pen)
        : m_pump(pump), m_pKeys(pKeys), m_pen(pen) {}
    ~CQtWindowFactory() override { delete m_pMain; }

    IMainWindow* CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) override {
        // One main window per session; a destroyed one may still be pending deletion.
        if (!m_pKeys || (m_pMain && !m_pMain->IsDestroyed())) return nullptr;
        auto pMain = std::make_unique<CQtMainWindow>(client, setup, m_pump, *m_pKeys, m_pen);
        m_pDocks = std::make_unique<CQtPanelDocks>(*pMain);
        return m_pMain = pMain.release();
    }

    ICanvasWindow* CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                      const TCanvasWindowSetup& setup) override {
        if (&parent != m_pMain.data() || m_pMain->IsDestroyed()) return nullptr;
        return new CQtCanvasWindow(*m_pMain, client, setup);
    }

    IPanelWindow* CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                    const TPanelSetup& setup) override {
        if (&parent != m_pMain.data() || m_pMain->IsDestroyed()) return nullptr;
        return new CQtPanel(*m_pDocks, client, setup);
    }

    CQtMainWindow* GetMain() const { return m_pMain; }

private:
    CQtEventPump& m_pump;
    CQtKeyFilter* m_pKeys;
    CQtPen& m_pen;
    QPointer<CQtMainWindow> m_pMain;
    std::unique_ptr<CQtPanelDocks> m_pDocks; ///< of the last main window
};

} // namespace

struct CQtPlatform::TParts {
    TParts(CMessageQueue& queue, IFileStore& files, ILocations& locations, IModules& modules,
           IImageCodecs& codecs, ISnapshotStore& snapshots)
        : m_queue(queue), m_pump(queue, m_keyState),
          m_pKeys(EnsureApplication() ? std::make_unique<CQtKeyFilter>(m_pump, m_keyState) : nullptr),
          m_windows(m_pump, m_pKeys.get(), m_pen), m_pRecent(MakeRecentFiles(files)),
          m_pClipboard(MakeClipboard(codecs)), m_platform{queue,     m_windows, m_boxes,    m_fileDialogs,
                                                          m_dialogs, files,     locations,  modules,
                                                          codecs,    m_clock,   m_keyState, *m_pClipboard,
                                                          snapshots, m_pen,     m_progress, m_manual,
                                                          *m_pRecent} {}

    CMessageQueue& m_queue;
    CQtKeyState m_keyState;
    CQtEventPump m_pump;
    std::unique_ptr<CQtKeyFilter> m_pKeys; ///< null when no window can be shown
    CQtPen m_pen{m_pump};
    CQtWindowFactory m_windows;
    CQtMessageBoxes m_boxes;
    CQtFileDialogs m_fileDialogs;
    CQtDialogs m_dialogs;
    CQtProgress m_progress;
    const std::unique_ptr<IRecentFiles> m_pRecent;
    CQtManual m_manual{ToQt(TextOf(FindManual()))};
    const std::unique_ptr<IClipboard> m_pClipboard;
    CTickClock m_clock;
    TPlatform m_platform;
    CQtSessionEnd m_end{[this] {
        CQtMainWindow* pMain = m_windows.GetMain();
        if (pMain && !pMain->IsDestroyed()) SendMessage({pMain, EMessage::EndSession});
    }};
};

CQtPlatform::CQtPlatform(CMessageQueue& queue, IFileStore& files, ILocations& locations, IModules& modules,
                         IImageCodecs& codecs, ISnapshotStore& snapshots)
    : m_pParts(std::make_unique<TParts>(queue, files, locations, modules, codecs, snapshots)) {
    queue.SetPump(&m_pParts->m_pump);
}

CQtPlatform::~CQtPlatform() { m_pParts->m_queue.SetPump(nullptr); }

const TPlatform& CQtPlatform::GetPlatform() const { return m_pParts->m_platform; }
IWindowFactory& CQtPlatform::GetWindows() { return m_pParts->m_windows; }

bool CQtPlatform::SaveScreenshot(const std::wstring& strPath) {
    CQtMainWindow* pMain = m_pParts->m_windows.GetMain();
    if (!pMain || pMain->IsDestroyed()) return false;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !pMain->grab().save(&buffer, "PNG")) return false;
    return static_cast<bool>(m_pParts->m_platform.files.Replace(strPath, bytes.toStdString()));
}
