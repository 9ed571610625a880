// A tree's rows on the glass: the model, and where the parts of a row lie.
#pragma once

#include "core/Platform/Tree.h"

#include <QAbstractListModel>
#include <QRect>
#include <QStyledItemDelegate>

#include <functional>
#include <vector>

class CTreeModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    /// Takes the rows over; those that stay keep their editor.
    void SetRows(const std::vector<TTreeRow>& vRows, bool bEditable);
    /// The row of an index; an empty one for an index without a row.
    const TTreeRow& GetRow(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int nRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    std::vector<TTreeRow> m_vRows;
    bool m_bEditable = false;
};

/// The parts of a row in the coordinates of its rectangle.
struct TTreeParts {
    QRect rcEye, rcFold, rcClip, rcPicture, rcText;

    /// `szPicture` is that of a picture in a row without an eye.
    TTreeParts(const TTreeRow& row, const QRect& rc, QSize szPicture);
};

/// Paints rows and edits their texts.
class CTreeDelegate : public QStyledItemDelegate {
public:
    CTreeDelegate(const CTreeModel& model, QSize szPicture,
                  std::function<void(int nRow, const QString&)> fnRename, QObject* pParent)
        : QStyledItemDelegate(pParent), m_model(model), m_szPicture(szPicture),
          m_fnRename(std::move(fnRename)) {}

    void paint(QPainter* pPainter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* pParent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    void setEditorData(QWidget* pEditor, const QModelIndex& index) const override;
    void setModelData(QWidget* pEditor, QAbstractItemModel*, const QModelIndex& index) const override;

private:
    const CTreeModel& m_model;
    const QSize m_szPicture;
    std::function<void(int nRow, const QString&)> m_fnRename;
};
