#include "ui/panels/QtTree.h"

#include "ui/base/QtText.h"
#include "ui/base/SvgIcon.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int EYE_WIDTH = 24;
constexpr int INDENT = 14;
constexpr int FOLD_WIDTH = 14;
constexpr int CLIP_WIDTH = 12;
constexpr QSize PICTURE{48, 35};
constexpr int MARGIN = 3;
constexpr int PICTURE_MARGIN = 2; ///< around a picture, for its frame
constexpr int ICON = 18;
constexpr qreal DIM = 0.4; ///< opacity of what is not in effect
constexpr qreal NOTE_SIZE = 0.85;

QRect Middle(const QRect& rc, QSize sz) {
    QRect rcMiddle(QPoint(), sz);
    rcMiddle.moveCenter(rc.center());
    return rcMiddle;
}

void PaintIcon(QPainter& painter, const QRect& rc, std::string_view strResource, int nSize) {
    LoadLineIcon(strResource).paint(&painter, Middle(rc, {nSize, nSize}));
}

// The darkness of black ink on white as the opacity of another ink.
QImage InkOf(const QImage& image, const QColor& color) {
    QImage opacity = image.convertToFormat(QImage::Format_Grayscale8);
    opacity.invertPixels();
    QImage ink(image.size(), QImage::Format_ARGB32);
    ink.fill(color);
    ink.setAlphaChannel(opacity);
    return ink;
}

void PaintPicture(QPainter& painter, const QRect& rc, const TTreeRow& row, const QColor& clrText) {
    const TPicture& picture = *row.spPicture;
    const QImage image(picture.vPixels.data(), picture.sz.cx, picture.sz.cy, 4 * picture.sz.cx,
                       QImage::Format_RGB32);
    const qreal dScale = painter.device()->devicePixelRatioF();
    QImage fitted = image.scaled(rc.size() * dScale, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (row.bInk) fitted = InkOf(fitted, clrText);
    fitted.setDevicePixelRatio(dScale);
    const QRect rcImage = Middle(rc, (QSizeF(fitted.size()) / dScale).toSize());
    painter.drawImage(rcImage.topLeft(), fitted);
    if (row.bInk) return;
    painter.setPen(QColor(128, 128, 128));
    painter.drawRect(rcImage.adjusted(-1, -1, 0, 0));
}

QColor TextColor(const QStyleOptionViewItem& option) {
    const auto group = option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
    const bool bSelected = option.state.testFlag(QStyle::State_Selected);
    return option.palette.color(group, bSelected ? QPalette::HighlightedText : QPalette::Text);
}

void PaintText(QPainter& painter, const QRect& rc, const TTreeRow& row, const QStyleOptionViewItem& option) {
    painter.setPen(TextColor(option));
    const bool bTwoLines = !row.strNote.empty() && rc.height() >= 2 * option.fontMetrics.height();
    const QRect rcName = bTwoLines ? QRect(rc.left(), rc.top(), rc.width(), rc.height() / 2) : rc;
    QFont fontNote = option.font;
    fontNote.setPointSizeF(fontNote.pointSizeF() * NOTE_SIZE);
    const QString strNote = ToQt(row.strNote);
    const int nNote = bTwoLines ? 0 : QFontMetrics(fontNote).horizontalAdvance(strNote);
    painter.setFont(option.font);
    painter.drawText(
        rcName, Qt::AlignVCenter | Qt::AlignLeft,
        option.fontMetrics.elidedText(ToQt(row.strText), Qt::ElideRight, rcName.width() - nNote));
    painter.setFont(fontNote);
    painter.setOpacity(painter.opacity() * 0.7);
    const QRect rcNote = bTwoLines ? rc.adjusted(0, rc.height() / 2, 0, 0) : rc;
    painter.drawText(rcNote, Qt::AlignVCenter | (bTwoLines ? Qt::AlignLeft : Qt::AlignRight), strNote);
}

} // namespace

void CTreeModel::SetRows(const std::vector<TTreeRow>& vRows, bool bEditable) {
    m_bEditable = bEditable;
    const auto nOld = static_cast<int>(m_vRows.size());
    const auto nNew = static_cast<int>(vRows.size());
    if (nNew < nOld) beginRemoveRows({}, nNew, nOld - 1);
    if (nNew > nOld) beginInsertRows({}, nOld, nNew - 1);
    std::vector<TTreeRow> vBefore = std::exchange(m_vRows, vRows);
    if (nNew < nOld) endRemoveRows();
    if (nNew > nOld) endInsertRows();
    for (int n = 0; n < std::min(nOld, nNew); ++n)
        if (vBefore[static_cast<size_t>(n)] != m_vRows[static_cast<size_t>(n)])
            emit dataChanged(index(n), index(n));
}

const TTreeRow& CTreeModel::GetRow(const QModelIndex& index) const {
    static const TTreeRow EMPTY;
    const auto n = static_cast<size_t>(index.row());
    return index.isValid() && n < m_vRows.size() ? m_vRows[n] : EMPTY;
}

int CTreeModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_vRows.size());
}

QVariant CTreeModel::data(const QModelIndex& index, int nRole) const {
    if (nRole == Qt::DisplayRole || nRole == Qt::EditRole) return ToQt(GetRow(index).strText);
    return {};
}

Qt::ItemFlags CTreeModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractListModel::flags(index);
    return m_bEditable ? flags | Qt::ItemIsEditable : flags;
}

TTreeParts::TTreeParts(const TTreeRow& row, const QRect& rc, QSize szPicture) {
    int x = rc.left();
    const auto take = [&](int nWidth) {
        const QRect rcPart(x, rc.top(), nWidth, rc.height());
        x += nWidth;
        return rcPart;
    };
    if (row.eye == EEye::None) {
        x += INDENT * row.nDepth;
        if (row.fold != EFold::None) rcFold = take(FOLD_WIDTH);
        if (!szPicture.isEmpty())
            rcPicture = take(szPicture.width() + 2 * PICTURE_MARGIN)
                            .adjusted(PICTURE_MARGIN, PICTURE_MARGIN, -PICTURE_MARGIN, -PICTURE_MARGIN);
        rcText = QRect(QPoint(x, rc.top()), rc.bottomRight()).adjusted(2 * MARGIN, 0, -2 * MARGIN, 0);
        return;
    }
    rcEye = take(EYE_WIDTH);
    x += INDENT * row.nDepth;
    rcFold = take(FOLD_WIDTH);
    if (row.bClipped) rcClip = take(CLIP_WIDTH);
    rcPicture = take(PICTURE.width()).adjusted(1, MARGIN, -1, -MARGIN);
    x += 2 * MARGIN;
    rcText = QRect(x, rc.top() + MARGIN, std::max(0, rc.right() - x), rc.height() - 2 * MARGIN);
}

void CTreeDelegate::paint(QPainter* pPainter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const TTreeRow& row = m_model.GetRow(index);
    const TTreeParts parts(row, option.rect, m_szPicture);
    pPainter->save();
    if (option.state.testFlag(QStyle::State_Selected))
        pPainter->fillRect(option.rect, option.palette.brush(QPalette::Active, QPalette::Highlight));
    if (row.eye == EEye::Shown) PaintIcon(*pPainter, parts.rcEye, "icons/layer-eye.svg", ICON);
    if (row.eye == EEye::Hidden) {
        pPainter->setPen(option.palette.color(QPalette::Mid));
        pPainter->drawEllipse(Middle(parts.rcEye, {4, 4}));
    }
    if (row.fold != EFold::None) {
        QStyleOption arrow;
        arrow.rect = Middle(parts.rcFold, {10, 10});
        arrow.palette = option.palette;
        arrow.state = QStyle::State_Enabled;
        QApplication::style()->drawPrimitive(row.fold == EFold::Open ? QStyle::PE_IndicatorArrowDown
                                                                     : QStyle::PE_IndicatorArrowRight,
                                             &arrow, pPainter);
    }
    if (row.bClipped) PaintIcon(*pPainter, parts.rcClip, "icons/layer-clip.svg", CLIP_WIDTH);
    pPainter->setOpacity(row.bDim ? DIM : 1);
    if (row.spPicture)
        PaintPicture(*pPainter, parts.rcPicture, row, TextColor(option));
    else if (!row.strIcon.empty())
        PaintIcon(*pPainter, parts.rcPicture, row.strIcon, 24);
    PaintText(*pPainter, parts.rcText, row, option);
    pPainter->restore();
}

QSize CTreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    if (m_model.GetRow(index).eye != EEye::None) return {100, PICTURE.height() + 2 * MARGIN};
    return {100,
            std::max(option.fontMetrics.height() + 2 * MARGIN, m_szPicture.height() + 2 * PICTURE_MARGIN)};
}

QWidget* CTreeDelegate::createEditor(QWidget* pParent, const QStyleOptionViewItem&,
                                     const QModelIndex& index) const {
    auto* pEdit = new QLineEdit(ToQt(m_model.GetRow(index).strText), pParent);
    pEdit->selectAll();
    return pEdit;
}

void CTreeDelegate::updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const {
    const QRect rc = TTreeParts(m_model.GetRow(index), option.rect, m_szPicture).rcText;
    pEditor->setGeometry(rc.left() - MARGIN, rc.center().y() - pEditor->sizeHint().height() / 2,
                         rc.width() + MARGIN, pEditor->sizeHint().height());
}

// A row that changes while its name is being typed must not replace the typed text.
void CTreeDelegate::setEditorData(QWidget*, const QModelIndex&) const {}

void CTreeDelegate::setModelData(QWidget* pEditor, QAbstractItemModel*, const QModelIndex& index) const {
    m_fnRename(index.row(), static_cast<QLineEdit*>(pEditor)->text());
}
