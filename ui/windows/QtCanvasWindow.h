// A canvas frame's window: an MDI child. Its place in the MDI client is in device-independent pixels, its
// client area in device pixels.
#pragma once

#include "ui/windows/QtMenu.h"
#include "ui/windows/QtWindow.h"

#include <QMdiSubWindow>
#include <QTimer>

#include <map>
#include <memory>

class CQtCanvasView;
class CQtMainWindow;

class CQtCanvasWindow : public CQtWindow<QMdiSubWindow, ICanvasWindow> {
public:
    CQtCanvasWindow(CQtMainWindow& parent, IWindowClient& client, const TCanvasWindowSetup& setup);
    ~CQtCanvasWindow() override;

    void DefaultMessage(const TMessage& msg) override;
    void SetTitle(const std::wstring& strTitle) override;
    /// The place in the normal state, neither minimised nor maximised.
    CRect GetRect() const override;
    void SetRect(const CRect& rc) override;
    void Invalidate(const CRect& rc) override;

    CSize GetClientSize() const override;
    void SetModified(bool bModified) override;
    void SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) override;
    void SetTimer(int nId, int nMilliseconds) override;
    void KillTimer(int nId) override;
    bool IsMaximized() const override { return isMaximized(); }
    void SetMaximized(bool bMaximized) override;
    void FitTo(CSize szClient) override;
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

protected:
    void OnLeave() override;
    void OnShow() override;
    /// Tab moves from the child to the panels; Qt would keep the focus inside.
    bool focusNextPrevChild(bool bNext) override;
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

    CQtMainWindow& m_main;
    std::unique_ptr<CQtMenuSet> m_pMenus;
    CQtCanvasView* m_pView;
    std::map<int, std::unique_ptr<TTimer>> m_mapTimers;
    std::wstring m_strTitle;
    QRect m_rcPlace; ///< the place to restore from minimised and maximised
    bool m_bCapture = false;
};
