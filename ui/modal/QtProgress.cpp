#include "ui/modal/QtProgress.h"

#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include <exception>

namespace {

constexpr int FULL = 1000;       ///< of the bar
constexpr int WIDTH = 360;       ///< of the bar, in pixels of 96 to the inch
constexpr int EXPOSE_WAIT = 100; ///< milliseconds at most until the system shows a new window

} // namespace

class CQtProgress::CDialog : public QDialog {
public:
    CDialog(QWidget* pParent, const TLongWork& work)
        : QDialog(pParent), m_pText(new QLabel(this)), m_pBar(new QProgressBar(this)),
          m_bCancel(work.bCancel) {
        setWindowTitle(ToQt(work.strTitle));
        auto* pLayout = new QVBoxLayout(this);
        pLayout->addWidget(m_pText);
        pLayout->addWidget(m_pBar);
        m_pText->setTextFormat(Qt::PlainText);
        m_pBar->setMinimumWidth(WIDTH);
        m_pBar->setTextVisible(false);
        if (!m_bCancel) {
            setWindowFlag(Qt::WindowCloseButtonHint, false);
            return;
        }
        auto* pCancel = new QPushButton(ToQt(ModalText::CANCEL), this);
        // The window opens while the user may be typing: of the keys only Escape cancels.
        pCancel->setFocusPolicy(Qt::NoFocus);
        connect(pCancel, &QPushButton::clicked, this, &QDialog::reject);
        pLayout->addWidget(pCancel, 0, Qt::AlignRight);
    }

    void Write(const TProgressState& state) {
        m_pText->setText(ToQt(state.strText));
        // Without a maximum the bar only moves.
        m_pBar->setMaximum(state.nPermille == TProgressState::UNKNOWN ? 0 : FULL);
        m_pBar->setValue(state.nPermille);
    }
    bool IsCancelled() const { return m_bCancelled; }

    /// The window stays until the work has noticed.
    void reject() override { m_bCancelled = m_bCancel; }

private:
    QLabel* m_pText;
    QProgressBar* m_pBar;
    const bool m_bCancel;
    bool m_bCancelled = false;
};

CQtProgress::CQtProgress() = default;
CQtProgress::~CQtProgress() = default;

bool CQtProgress::Begin(const TLongWork& work) {
    m_work = work;
    return true;
}

void CQtProgress::Open() {
    m_pDialog = std::make_unique<CModalOwner<CDialog>>(ModalParent(m_work.pOwner), m_work);
    // Panels that float are windows of their own.
    (*m_pDialog)->setWindowModality(Qt::ApplicationModal);
    m_scope.emplace();
}

bool CQtProgress::Show(const TProgressState& state) try {
    if (!EnsureApplication()) return true;
    const bool bNew = !m_pDialog;
    if (bNew) Open();
    CModalOwner<CDialog>& dialog = *m_pDialog;
    if (!dialog) return true;
    dialog->Write(state);
    dialog->show();
    QElapsedTimer waiting;
    waiting.start();
    do {
        QCoreApplication::processEvents();
    } while (bNew && dialog && !dialog->windowHandle()->isExposed() && !waiting.hasExpired(EXPOSE_WAIT));
    return !dialog || !dialog->IsCancelled();
} catch (const std::exception&) {
    return true; // the work goes on without its window
}

void CQtProgress::End() {
    if (!m_scope) return;
    m_pDialog.reset();
    m_scope.reset();
    // The canvases were not painted meanwhile; an update of their window would leave them out.
    for (QWidget* pWidget : QApplication::allWidgets()) pWidget->update();
}
