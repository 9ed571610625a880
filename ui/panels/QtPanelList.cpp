#include "ui/base/QtText.h"
#include "ui/panels/QtPanelControls.h"

#include <QDropEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QSignalBlocker>

#include <utility>

namespace {

constexpr int CELL_WIDTH = 38;

class CListWidget : public QListWidget {
public:
    using QListWidget::QListWidget;
    std::function<void(int, int)> m_fnMove;
    std::function<void()> m_fnDone;

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* pEvent) override {
        const bool bEdits = QListWidget::edit(index, trigger, pEvent);
        // The keyboard was given back when the button came up.
        if (bEdits) window()->activateWindow();
        return bEdits;
    }
    void closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint hint) override {
        QListWidget::closeEditor(pEditor, hint);
        m_fnDone();
    }
    // The panel moves the row; the widget only says where from and where to.
    void dropEvent(QDropEvent* pEvent) override {
        const int nFrom = currentRow();
        const QModelIndex index = indexAt(pEvent->position().toPoint());
        int nTo = index.isValid() ? index.row() : count();
        if (index.isValid() && dropIndicatorPosition() == BelowItem) ++nTo;
        if (nTo > nFrom) --nTo;
        pEvent->setDropAction(Qt::IgnoreAction);
        pEvent->accept();
        if (nFrom >= 0 && nTo != nFrom) m_fnMove(nFrom, nTo);
    }
    // A click beside the rows would take the selection away.
    void mousePressEvent(QMouseEvent* pEvent) override {
        if (indexAt(pEvent->position().toPoint()).isValid()) QListWidget::mousePressEvent(pEvent);
    }
    void keyPressEvent(QKeyEvent* pEvent) override {
        // Drag and drop for the keyboard.
        const bool bUp = pEvent->key() == Qt::Key_Up;
        if (pEvent->modifiers().testFlag(Qt::ShiftModifier) && (bUp || pEvent->key() == Qt::Key_Down) &&
            dragDropMode() == InternalMove) {
            const int nTo = currentRow() + (bUp ? -1 : 1);
            if (currentRow() >= 0 && nTo >= 0 && nTo < count()) m_fnMove(currentRow(), nTo);
            return;
        }
        const bool bReturn = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
        if (bReturn && currentItem() && state() != EditingState) {
            emit itemDoubleClicked(currentItem());
            return;
        }
        QListWidget::keyPressEvent(pEvent);
    }
};

class CListControl : public CQtPanelControl {
public:
    CListControl(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : m_pList(new CListWidget(pParent)), m_bEditable(control.bEditable) {
        m_pList->setFocusPolicy(Qt::TabFocus);
        m_pList->setMinimumHeight(control.szView.cy);
        m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        if (control.bGrid) {
            m_pList->setMaximumHeight(control.szView.cy); // its lines scroll
            m_pList->setFlow(QListView::LeftToRight);
            m_pList->setWrapping(true);
            m_pList->setResizeMode(QListView::Adjust);
            m_pList->setGridSize({CELL_WIDTH, m_pList->fontMetrics().height() + 6});
            m_pList->setUniformItemSizes(true);
        }
        m_pList->setEditTriggers(m_bEditable
                                     ? QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked
                                     : QAbstractItemView::NoEditTriggers);
        if (m_bEditable) m_pList->setDragDropMode(QAbstractItemView::InternalMove);
        const int nId = control.nId;
        m_pList->m_fnMove = [nId, fnMove = events.move](int nFrom, int nTo) { fnMove(nId, nFrom, nTo); };
        m_pList->m_fnDone = events.done;
        QObject::connect(m_pList, &QListWidget::currentRowChanged, m_pList,
                         [nId, fnChange = events.change](int nRow) { fnChange(nId, nRow, {}); });
        // A click on the selected row chooses it again.
        QObject::connect(m_pList, &QListWidget::itemClicked, m_pList,
                         [this, nId, fnChange = events.change](QListWidgetItem* pItem) {
                             fnChange(nId, m_pList->row(pItem), {});
                         });
        QObject::connect(m_pList, &QListWidget::itemDoubleClicked, m_pList,
                         [this, nId, fnActivate = events.activate](QListWidgetItem* pItem) {
                             fnActivate(nId, m_pList->row(pItem));
                         });
        QObject::connect(m_pList, &QListWidget::itemChanged, m_pList,
                         [this, nId, fnRename = events.rename](QListWidgetItem* pItem) {
                             fnRename(nId, m_pList->row(pItem), pItem->text());
                         });
    }
    QWidget* GetWidget() override { return m_pList; }
    void Write(const TPanelControl& control) override {
        const QSignalBlocker block(m_pList);
        // While a name is being typed nothing moves under it.
        if (control.vRows != m_vRows || TextsDiffer()) {
            m_vRows = control.vRows;
            m_pList->clear();
            for (const std::wstring& strRow : m_vRows) {
                auto* pItem = new QListWidgetItem(ToQt(strRow), m_pList);
                if (m_bEditable) pItem->setFlags(pItem->flags() | Qt::ItemIsEditable);
                if (m_pList->isWrapping()) {
                    pItem->setTextAlignment(Qt::AlignCenter);
                    pItem->setSizeHint(m_pList->gridSize());
                }
            }
        }
        if (m_pList->currentRow() != control.nValue) m_pList->setCurrentRow(control.nValue);
        if (control.nValue < 0) m_pList->clearSelection();
    }

private:
    bool TextsDiffer() const {
        for (int n = 0; n < m_pList->count(); ++n)
            if (FromQt(m_pList->item(n)->text()) != m_vRows[static_cast<size_t>(n)]) return true;
        return false;
    }

    CListWidget* m_pList;
    bool m_bEditable;
    std::vector<std::wstring> m_vRows;
};

} // namespace

std::unique_ptr<CQtPanelControl> MakePanelList(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent) {
    return std::make_unique<CListControl>(control, events, pParent);
}
