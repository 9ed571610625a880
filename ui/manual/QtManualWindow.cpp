#include "ui/manual/QtManualWindow.h"

#include "core/AppModule/ErrorBox.h"
#include "ui/base/QtApplication.h"

#include <QAction>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSplitter>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr char FIRST_PAGE[] = "index.html";
constexpr QSize FIRST_SIZE(1000, 800);
constexpr int CONTENTS_WIDTH = 210, SEARCH_WIDTH = 200;
constexpr int PAGE_MARGIN = 24;
constexpr int LEAST_ZOOM = 60, MOST_ZOOM = 250, ZOOM_STEP = 10;
constexpr int SETTLE_MS = 150;
constexpr qreal LINE_HEIGHT = 150; ///< percent

QString ReadText(const QString& strPath) {
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

CQtManualPage::CQtManualPage(QWidget* pParent, std::function<std::string(std::string)> fnComplete)
    : QTextBrowser(pParent), m_fnComplete(std::move(fnComplete)), m_dPoints(font().pointSizeF()) {
    setFrameShape(QFrame::NoFrame);
    setOpenExternalLinks(true);
    // A bar that comes and goes would change the room for pictures.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    document()->setDocumentMargin(PAGE_MARGIN);
    m_timerRenew.setSingleShot(true);
    connect(&m_timerRenew, &QTimer::timeout, this, [this] { Renew(); });
}

void CQtManualPage::SetZoom(int nPercent) {
    m_nZoom = std::clamp(nPercent, LEAST_ZOOM, MOST_ZOOM);
    QFont fontPage = font();
    fontPage.setPointSizeF(m_dPoints * m_nZoom / 100);
    setFont(fontPage);
}

QVariant CQtManualPage::loadResource(int nType, const QUrl& url) {
    QVariant value;
    Guarded([&] {
        if (nType == QTextDocument::StyleSheetResource) {
            value = MakeSheet();
        } else if (nType == QTextDocument::ImageResource) {
            value = LoadPicture(url.toLocalFile());
        } else {
            const std::string strPage = ReadText(url.toLocalFile()).toStdString();
            QString strHtml = QString::fromStdString(m_fnComplete(strPage));
            // Qt knows neither element.
            strHtml.replace(QLatin1String("<figure>"), QLatin1String("<div class=\"figure\">"));
            strHtml.replace(QLatin1String("</figure>"), QLatin1String("</div>"));
            strHtml.replace(QLatin1String("<figcaption>"), QLatin1String("<p class=\"caption\">"));
            strHtml.replace(QLatin1String("</figcaption>"), QLatin1String("</p>"));
            value = strHtml;
        }
    });
    return value;
}

QVariant CQtManualPage::LoadPicture(const QString& strFile) const {
    QImage image(strFile);
    const qreal dScale = devicePixelRatioF();
    const int nRoom = std::max(viewport()->width() - 3 * PAGE_MARGIN, 1);
    if (image.width() > nRoom) image = image.scaledToWidth(qRound(nRoom * dScale), Qt::SmoothTransformation);
    if (image.width() > nRoom) image.setDevicePixelRatio(dScale);
    return image;
}

// The pages' own sheet is for browsers. Sizes are relative to the text, so that all of it is zoomed.
QString CQtManualPage::MakeSheet() const {
    const QPalette colors = palette();
    const bool bDark = colors.color(QPalette::Base).lightness() < colors.color(QPalette::Text).lightness();
    const QColor ground = colors.color(QPalette::Base);
    const QString strSoft = (bDark ? ground.lighter(160) : ground.darker(107)).name();
    const QString strLine = (bDark ? ground.lighter(250) : ground.darker(125)).name();
    return QStringLiteral("h1 { margin-top: 4px; }"
                          "h2 { margin-top: 26px; }"
                          "h3 { margin-top: 18px; }"
                          "p, li, h1, h2, h3 { line-height: %3%; }"
                          "p, li { margin-bottom: 8px; }"
                          "kbd { background-color: %1; }"
                          "code { background-color: %1; }"
                          "a { color: %4; text-decoration: none; }"
                          "div.figure { margin-top: 12px; margin-bottom: 12px; }"
                          "p.caption { color: %5; }"
                          "table { border-collapse: collapse; border-color: %2; border-style: solid; }"
                          "th { background-color: %1; padding: 5px; text-align: left; }"
                          "td { padding: 5px; }")
        .arg(strSoft, strLine, QString::number(LINE_HEIGHT), bDark ? "#7db5f5" : "#1a5fb4",
             bDark ? "#b0b0b0" : "#5a5a5a");
}

void CQtManualPage::Renew() {
    if (source().isEmpty()) return;
    const int nAt = verticalScrollBar()->value();
    const int nMost = std::max(verticalScrollBar()->maximum(), 1);
    reload();
    verticalScrollBar()->setValue(static_cast<int>(int64_t{nAt} * verticalScrollBar()->maximum() / nMost));
}

void CQtManualPage::changeEvent(QEvent* pEvent) {
    QTextBrowser::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange) m_timerRenew.start(0);
}

void CQtManualPage::resizeEvent(QResizeEvent* pEvent) {
    QTextBrowser::resizeEvent(pEvent);
    if (pEvent->size().width() != pEvent->oldSize().width()) m_timerRenew.start(SETTLE_MS);
}

void CQtManualPage::wheelEvent(QWheelEvent* pEvent) {
    if (!(pEvent->modifiers() & Qt::ControlModifier)) return QTextBrowser::wheelEvent(pEvent);
    SetZoom(m_nZoom + (pEvent->angleDelta().y() > 0 ? ZOOM_STEP : -ZOOM_STEP));
    pEvent->accept();
}

CQtManualWindow::CQtManualWindow(QWidget* pOwner, const QString& strFolder, const TManualSetup& setup)
    : QWidget(pOwner, Qt::Window), m_setup(setup) {
    PrepareTopLevel(*this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("マニュアル - Vellumcraft"));
    m_pPage = new CQtManualPage(this, m_setup.fnComplete);
    m_pContents = new QListWidget(this);
    m_pContents->setFrameShape(QFrame::NoFrame);
    m_pContents->setStyleSheet(QStringLiteral("QListWidget::item { padding: 6px 10px; }"));
    auto* pSplitter = new QSplitter(this);
    pSplitter->addWidget(m_pContents);
    pSplitter->addWidget(m_pPage);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setSizes({CONTENTS_WIDTH, FIRST_SIZE.width() - CONTENTS_WIDTH});
    auto* pColumn = new QVBoxLayout(this);
    pColumn->setContentsMargins(0, 0, 0, 0);
    pColumn->setSpacing(0);
    pColumn->addWidget(MakeTools());
    pColumn->addWidget(pSplitter, 1);

    const CSize sz = m_setup.look.sz;
    const QSize szWanted = sz.cx > 0 && sz.cy > 0 ? QSize(sz.cx, sz.cy) : FIRST_SIZE;
    resize(szWanted.boundedTo(screen()->availableSize() * 9 / 10));
    m_pPage->SetZoom(m_setup.look.nZoom);
    MakeContents(strFolder);
    m_pPage->setSource(QUrl::fromLocalFile(strFolder + QLatin1Char('/') + QLatin1String(FIRST_PAGE)));
    m_pPage->setFocus();
}

QWidget* CQtManualWindow::MakeTools() {
    auto* pTools = new QWidget(this);
    auto* pRow = new QHBoxLayout(pTools);
    pRow->setContentsMargins(6, 4, 6, 4);
    const auto add = [&](const QString& strText, const QString& strTip, const QKeySequence& keys, auto fn) {
        auto* pButton = new QToolButton(pTools);
        auto* pAction = new QAction(strText, pButton);
        pAction->setShortcut(keys);
        pAction->setToolTip(strTip + QStringLiteral(" (") + keys.toString(QKeySequence::NativeText) +
                            QLatin1Char(')'));
        connect(pAction, &QAction::triggered, this, [fn] { Guarded(fn); });
        pButton->setDefaultAction(pAction);
        pButton->setAutoRaise(true);
        addAction(pAction);
        pRow->addWidget(pButton);
        return pAction;
    };
    QAction* pBack = add(QStringLiteral("◀ 戻る"), QStringLiteral("前に見たページ"), Qt::ALT | Qt::Key_Left,
                         [this] { m_pPage->backward(); });
    QAction* pForward = add(QStringLiteral("進む ▶"), QStringLiteral("戻る前のページ"),
                            Qt::ALT | Qt::Key_Right, [this] { m_pPage->forward(); });
    pBack->setEnabled(false);
    pForward->setEnabled(false);
    connect(m_pPage, &QTextBrowser::backwardAvailable, pBack, &QAction::setEnabled);
    connect(m_pPage, &QTextBrowser::forwardAvailable, pForward, &QAction::setEnabled);
    pRow->addStretch(1);
    m_pFound = new QLabel(pTools);
    pRow->addWidget(m_pFound);
    m_pSearch = new QLineEdit(pTools);
    m_pSearch->setPlaceholderText(QStringLiteral("このページを検索"));
    m_pSearch->setClearButtonEnabled(true);
    m_pSearch->setFixedWidth(SEARCH_WIDTH);
    pRow->addWidget(m_pSearch);
    connect(m_pSearch, &QLineEdit::textChanged, this,
            [this](const QString& strText) { Guarded([&] { Find(strText, {}, false); }); });
    const auto next = [this](QTextDocument::FindFlags flags) { Find(m_pSearch->text(), flags, true); };
    connect(m_pSearch, &QLineEdit::returnPressed, this, [next] { Guarded([&] { next({}); }); });
    add(QStringLiteral("▲"), QStringLiteral("前を検索"), Qt::SHIFT | Qt::Key_F3,
        [next] { next(QTextDocument::FindBackward); });
    add(QStringLiteral("▼"), QStringLiteral("次を検索"), Qt::Key_F3, [next] { next({}); });
    pRow->addStretch(1);
    add(QStringLiteral("文字を小さく"), QStringLiteral("文字を小さく"), Qt::CTRL | Qt::Key_Minus,
        [this] { m_pPage->SetZoom(m_pPage->GetZoom() - ZOOM_STEP); });
    add(QStringLiteral("大きく"), QStringLiteral("文字を大きく"), Qt::CTRL | Qt::Key_Plus,
        [this] { m_pPage->SetZoom(m_pPage->GetZoom() + ZOOM_STEP); });
    auto* pSearch = new QAction(this);
    pSearch->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    connect(pSearch, &QAction::triggered, m_pSearch, [this] {
        m_pSearch->setFocus();
        m_pSearch->selectAll();
    });
    addAction(pSearch);
    return pTools;
}

// The first page lists the others.
void CQtManualWindow::MakeContents(const QString& strFolder) {
    const QString strIndex = ReadText(strFolder + QLatin1Char('/') + QLatin1String(FIRST_PAGE));
    static const QRegularExpression EXPRESSION(QStringLiteral("<li><a href=\"([a-z]+\\.html)\">([^<]*)</a>"));
    for (auto it = EXPRESSION.globalMatch(strIndex); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        auto* pItem = new QListWidgetItem(match.captured(2), m_pContents);
        pItem->setData(Qt::UserRole, QUrl::fromLocalFile(strFolder + QLatin1Char('/') + match.captured(1)));
    }
    connect(m_pContents, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* pItem) {
        if (pItem) Guarded([&] { m_pPage->setSource(pItem->data(Qt::UserRole).toUrl()); });
    });
    connect(m_pPage, &QTextBrowser::sourceChanged, m_pContents, [this](const QUrl& url) {
        const QUrl urlPage = m_pPage->source().resolved(url).adjusted(QUrl::RemoveFragment);
        const QSignalBlocker blocker(m_pContents);
        m_pContents->setCurrentRow(-1);
        for (int n = 0; n < m_pContents->count(); ++n)
            if (m_pContents->item(n)->data(Qt::UserRole).toUrl() == urlPage) m_pContents->setCurrentRow(n);
    });
}

// Selects the text, the same occurrence while it is being typed, or the next one; from the end on the search
// goes on at the beginning.
void CQtManualWindow::Find(const QString& strText, QTextDocument::FindFlags flags, bool bNext) {
    QTextCursor cursor = m_pPage->textCursor();
    if (!bNext) cursor.setPosition(cursor.selectionStart());
    QTextCursor found = m_pPage->document()->find(strText, cursor, flags);
    if (found.isNull()) {
        cursor.movePosition(flags & QTextDocument::FindBackward ? QTextCursor::End : QTextCursor::Start);
        found = m_pPage->document()->find(strText, cursor, flags);
    }
    m_pFound->setText(found.isNull() && !strText.isEmpty() ? QStringLiteral("見つかりません") : QString());
    if (found.isNull()) cursor.clearSelection();
    m_pPage->setTextCursor(found.isNull() ? cursor : found);
    // A selection is pale while the search field has the keyboard.
    QTextCharFormat format;
    format.setBackground(palette().highlight());
    format.setForeground(palette().highlightedText());
    m_pPage->setExtraSelections({{m_pPage->textCursor(), format}});
}

void CQtManualWindow::Keep() {
    const QSize sz = isMaximized() ? normalGeometry().size() : size();
    m_setup.fnKeep({{sz.width(), sz.height()}, m_pPage->GetZoom()});
}

void CQtManualWindow::closeEvent(QCloseEvent* pEvent) {
    Guarded([&] { Keep(); });
    QWidget::closeEvent(pEvent);
}
