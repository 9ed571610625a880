// A canvas frame's window: an MDI child. Its place in the MDI client is in device-independent pixels, its
// client area in device pixels.
#pragma once

#include "core/Platform/Window.h"
#include "ui/windows/QtMenu.h"

#include <QMdiSubWindow>
#include <QTimer>

#include <map>
#include <memory>

class CQtCanvasView;
class CQtMainWindow;

class CQtCanvasWindow : public QMdiSubWindow, public ICanvasWindow {
public:
    /// Creates the hidden window; the client gets no messages until SetReady.
    CQtCanvasWindow(CQtMainWindow& parent, IWindowClient& client, const TCanvasWindowSetup& setup);
    ~CQtCanvasWindow() override;
    void SetReady() { m_bReady = true; }

    IWindowClient& GetClient() override { return *m_pClient; }
    void DefaultMessage(const TMessage& msg) override;
    void Destroy() override;
    void SetTitle(const std::wstring& strTitle) override;
    void Show() override;
    /// The place in the normal state, neither minimised nor maximised.
    CRect GetRect() const override;
    void SetRect(const CRect& rc) override;
    void Invalidate(const CRect& rc) override;

    CSize GetClientSize() const override;
    void SetModified(bool bModified) override;
    void SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) override;
    void SetTimer(int nId, int nMilliseconds) override;
    void KillTimer(int nId) override;
    void Activate() override;
    void SetFocus() override;
    void SetCapture(bool bCapture) override;
    bool HasCapture() const override { return m_bCapture; }
    void SetCursor(ECursor cursor) override;
    CPoint GetClientOrigin() const override;
    int32_t GetDpi() const override;
    bool IsAt(CPoint ptScreen) const override;

    /// The title for lists, with the modified mark.
    QString GetMarkedTitle() const;
    CQtMenuSet& GetMenus() { return *m_pMenus; }
    void FocusView();
    /// Called when another window takes the pointer.
    void LoseCapture();
    /// Detaches the window from its client without a message, after the session has failed.
    void Abandon();

protected:
    /// Tab moves from the child to the panels; Qt would keep the focus inside.
    bool focusNextPrevChild(bool bNext) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void moveEvent(QMoveEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    struct TTimer {
        QTimer timer;
        uint64_t uPostedRound = 0; ///< the pump's round in which its message was last posted
    };

    void MakeSystemMenu();
    void KeepPlace();
    void SettleLayout();
    void Post(EMessage id, int64_t wParam, int64_t lParam);
    bool Hears() const { return m_bReady && !m_bDestroyed; }

    CQtMainWindow& m_main;
    IWindowClient* m_pClient;
    std::unique_ptr<CQtMenuSet> m_pMenus;
    CQtCanvasView* m_pView;
    std::map<int, std::unique_ptr<TTimer>> m_mapTimers;
    std::wstring m_strTitle;
    QRect m_rcPlace; ///< the place to restore from minimised and maximised
    bool m_bCapture = false;
    bool m_bReady = false;
    bool m_bDestroyed = false;
};
