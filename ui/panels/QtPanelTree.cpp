// The control of kind Tree.
#include "core/Platform/Message.h"
#include "ui/panels/QtPanelControls.h"
#include "ui/panels/QtTree.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr int SCROLL_EDGE = 16; ///< from the top and bottom, in which a dragged row scrolls the list
constexpr int SCROLL_MS = 40;
constexpr int SCROLL_STEP = 12;

/// The list of rows. It posts what the user does; the panel decides what comes of it.
class CTreeView : public QListView {
public:
    CTreeView(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : QListView(pParent), m_nId(control.nId), m_bEditable(control.bEditable),
          m_szPicture(control.szPicture.cx, control.szPicture.cy), m_events(events) {
        setFocusPolicy(Qt::TabFocus);
        setMinimumHeight(control.szView.cy);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollMode(ScrollPerPixel);
        setEditTriggers(NoEditTriggers);
        setModel(&m_model);
        setItemDelegate(new CTreeDelegate(
            m_model, m_szPicture,
            [this](int nRow, const QString& strText) { m_events.rename(m_nId, nRow, strText); }, this));
        m_timerScroll.setInterval(SCROLL_MS);
        connect(&m_timerScroll, &QTimer::timeout, this, [this] { ScrollAtEdge(); });
    }

    void Write(const TPanelControl& control) {
        m_model.SetRows(control.vTree, control.bEditable);
        const QModelIndex index = m_model.index(control.nValue);
        if (currentIndex() == index) return;
        setCurrentIndex(index);
        if (index.isValid()) scrollTo(index);
    }

protected:
    void mousePressEvent(QMouseEvent* pEvent) override {
        const QModelIndex index = indexAt(pEvent->position().toPoint());
        if (pEvent->button() != Qt::LeftButton || !index.isValid()) return;
        const TTreeRow& row = m_model.GetRow(index);
        const TTreeParts parts(row, visualRect(index), m_szPicture);
        const QPoint pt = pEvent->position().toPoint();
        if (parts.rcEye.contains(pt)) {
            PressEye(index, pEvent->modifiers());
        } else if (row.fold != EFold::None && parts.rcFold.contains(pt)) {
            Tell(EMessage::PanelFold, index.row(), row.fold == EFold::Open);
        } else {
            m_events.change(m_nId, index.row(), {});
            if (m_bEditable) m_nPressed = index.row();
            m_ptPressed = pt;
        }
    }
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override {
        const QModelIndex index = indexAt(pEvent->position().toPoint());
        if (!index.isValid()) return;
        const TTreeParts parts(m_model.GetRow(index), visualRect(index), m_szPicture);
        if (m_bEditable && parts.rcText.contains(pEvent->position().toPoint()))
            StartEditing(index);
        else
            mousePressEvent(pEvent);
    }
    void mouseMoveEvent(QMouseEvent* pEvent) override {
        const QPoint pt = pEvent->position().toPoint();
        if (!pEvent->buttons().testFlag(Qt::LeftButton)) return;
        if (m_sweep) {
            // The column's height alone counts: the hand may stray to the side.
            const QModelIndex index = indexAt({viewport()->width() / 2, pt.y()});
            const EEye eye = m_model.GetRow(index).eye;
            if (index.isValid() && eye == (*m_sweep == EEyeAct::Show ? EEye::Hidden : EEye::Shown))
                Tell(EMessage::PanelEye, index.row(), static_cast<int>(*m_sweep));
            return;
        }
        if (m_nPressed < 0) return;
        if (!m_bDragged && (pt - m_ptPressed).manhattanLength() >= QApplication::startDragDistance()) {
            m_bDragged = true;
            grabKeyboard(); // for Escape: a click leaves the keyboard with the picture
            m_timerScroll.start();
        }
        if (m_bDragged) DragTo(pt);
    }
    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() != Qt::LeftButton) return;
        m_sweep.reset();
        const bool bDropped = m_bDragged && m_nDrop >= 0;
        const int nFrom = m_nPressed;
        const int nDrop = m_nDrop;
        EndDrag();
        if (bDropped) Tell(EMessage::PanelDrop, nFrom, nDrop);
    }
    void contextMenuEvent(QContextMenuEvent* pEvent) override {
        const QModelIndex index =
            pEvent->reason() == QContextMenuEvent::Mouse ? indexAt(pEvent->pos()) : currentIndex();
        m_events.row(EMessage::PanelMenu, m_nId, index.row());
    }
    void keyPressEvent(QKeyEvent* pEvent) override {
        const QModelIndex index = currentIndex();
        const TTreeRow& row = m_model.GetRow(index);
        const int nKey = pEvent->key();
        if (m_bDragged) {
            if (nKey == Qt::Key_Escape) EndDrag();
        } else if (nKey == Qt::Key_Up || nKey == Qt::Key_Down) {
            const int nRow = index.row() + (nKey == Qt::Key_Up ? -1 : 1);
            if (nRow >= 0 && nRow < m_model.rowCount()) m_events.change(m_nId, nRow, {});
        } else if (nKey == Qt::Key_Space && row.eye != EEye::None) {
            Tell(EMessage::PanelEye, index.row(),
                 static_cast<int>(row.eye == EEye::Shown ? EEyeAct::Hide : EEyeAct::Show));
        } else if (nKey == Qt::Key_Left && row.fold == EFold::Open) {
            Tell(EMessage::PanelFold, index.row(), 1);
        } else if (nKey == Qt::Key_Right && row.fold == EFold::Closed) {
            Tell(EMessage::PanelFold, index.row(), 0);
        } else if (nKey == Qt::Key_F2 && m_bEditable && index.isValid()) {
            StartEditing(index);
        } else {
            pEvent->ignore();
        }
    }
    void closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint hint) override {
        QListView::closeEditor(pEditor, hint);
        m_events.done();
    }
    void paintEvent(QPaintEvent* pEvent) override {
        QListView::paintEvent(pEvent);
        if (!m_bDragged || m_nDrop < 0) return;
        QPainter painter(viewport());
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        const QModelIndex index = m_model.index(DroppedRow(m_nDrop));
        const auto at = static_cast<EDropAt>(DroppedAt(m_nDrop));
        const QRect rc =
            index.isValid() ? visualRect(index) : visualRect(m_model.index(m_model.rowCount() - 1));
        if (index.isValid() && at == EDropAt::Onto) return painter.drawRect(rc.adjusted(1, 1, -1, -1));
        const int y = index.isValid() && at == EDropAt::Above ? rc.top() : rc.bottom();
        const int x = index.isValid() ? TTreeParts(m_model.GetRow(index), rc, m_szPicture).rcFold.left() : 0;
        painter.drawLine(x, std::max(1, y), rc.right(), std::max(1, y));
    }

private:
    void Tell(EMessage id, int nRow, int nValue) { m_events.row(id, m_nId, PackPoint(nRow, nValue)); }

    void PressEye(const QModelIndex& index, Qt::KeyboardModifiers modifiers) {
        const bool bAlone = modifiers.testFlag(Qt::AltModifier);
        const EEyeAct act = bAlone                                     ? EEyeAct::Alone
                            : m_model.GetRow(index).eye == EEye::Shown ? EEyeAct::Hide
                                                                       : EEyeAct::Show;
        if (!bAlone) m_sweep = act;
        Tell(EMessage::PanelEye, index.row(), static_cast<int>(act));
    }

    void StartEditing(const QModelIndex& index) {
        EndDrag();
        edit(index);
        window()->activateWindow(); // the keyboard was given back when the button came up
    }

    void DragTo(const QPoint& pt) {
        m_ptDrag = pt;
        const QModelIndex index = indexAt({viewport()->width() / 2, pt.y()});
        m_nDrop = pt.y() > 0 ? PackDrop(m_model.rowCount(), static_cast<int>(EDropAt::Below)) : -1;
        if (index.isValid()) {
            // Three parts of a row: a line above it, the row itself, a line below it.
            const QRect rc = visualRect(index);
            const int nPart = (pt.y() - rc.top()) * 4 / std::max(1, rc.height());
            const EDropAt at = nPart < 1 ? EDropAt::Above : nPart < 3 ? EDropAt::Onto : EDropAt::Below;
            m_nDrop = index.row() == m_nPressed ? -1 : PackDrop(index.row(), static_cast<int>(at));
        }
        setCursor(m_nDrop >= 0 ? Qt::DragMoveCursor : Qt::ForbiddenCursor);
        viewport()->update();
    }

    void ScrollAtEdge() {
        const int nStep = m_ptDrag.y() < SCROLL_EDGE                          ? -SCROLL_STEP
                          : m_ptDrag.y() > viewport()->height() - SCROLL_EDGE ? SCROLL_STEP
                                                                              : 0;
        if (nStep == 0) return;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + nStep);
        DragTo(m_ptDrag);
    }

    void EndDrag() {
        if (std::exchange(m_bDragged, false)) releaseKeyboard();
        m_timerScroll.stop();
        m_nPressed = m_nDrop = -1;
        unsetCursor();
        viewport()->update();
    }

    const int m_nId;
    const bool m_bEditable;
    const QSize m_szPicture;
    const TPanelEvents m_events;
    CTreeModel m_model;
    QTimer m_timerScroll;
    std::optional<EEyeAct> m_sweep; ///< what the held button does to every eye that it passes
    int m_nPressed = -1;            ///< the row that may be dragged, -1 for none
    int m_nDrop = -1;               ///< where it would be dropped (PackDrop), -1 for nowhere
    QPoint m_ptDrag;                ///< the last place of the drag
    QPoint m_ptPressed;
    bool m_bDragged = false;
};

class CTreeControl : public CQtPanelControl {
public:
    CTreeControl(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : m_pTree(new CTreeView(control, events, pParent)) {}
    QWidget* GetWidget() override { return m_pTree; }
    void Write(const TPanelControl& control) override {
        const QSignalBlocker block(m_pTree);
        m_pTree->Write(control);
    }

private:
    CTreeView* m_pTree;
};

} // namespace

std::unique_ptr<CQtPanelControl> MakePanelTree(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent) {
    return std::make_unique<CTreeControl>(control, events, pParent);
}
