#include "ui/modal/QtMessageBoxes.h"

#include "ui/base/QtApplication.h"
#include "ui/base/QtScopes.h"
#include "ui/base/QtText.h"
#include "ui/modal/QtModal.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

void CQtMessageBoxes::ShowLater(const std::wstring& strText, const std::wstring& strTitle, EBoxKind kind) {
    // One box at a time: painting behind the box fails again.
    if (m_spWaiting) return;
    m_spWaiting = std::make_shared<bool>(true);
    const std::weak_ptr<bool> wpWaiting = m_spWaiting;
    QMetaObject::invokeMethod(
        qApp,
        [this, wpWaiting, strText, strTitle, kind] {
            if (wpWaiting.expired()) return; // the session has ended
            Show(nullptr, strText, strTitle, kind);
            if (!wpWaiting.expired()) m_spWaiting.reset();
        },
        Qt::QueuedConnection);
}

EBoxAnswer CQtMessageBoxes::Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                                 EBoxKind kind) {
    const bool bQuestion = kind == EBoxKind::YesNoCancelWarning;
    const EBoxAnswer answerClosed = bQuestion ? EBoxAnswer::Cancel : EBoxAnswer::Ok;
    if (!EnsureApplication()) return answerClosed;
    if (CPaintScope::IsOpen()) {
        ShowLater(strText, strTitle, kind);
        return answerClosed;
    }

    const CModalOwner<QMessageBox> pBox(ModalParent(pOwner));
    pBox->setWindowTitle(ToQt(strTitle));
    pBox->setTextFormat(Qt::PlainText);
    pBox->setText(ToQt(strText));
    pBox->setIcon(kind == EBoxKind::Error   ? QMessageBox::Critical
                  : kind == EBoxKind::Plain ? QMessageBox::NoIcon
                                            : QMessageBox::Warning);
    if (bQuestion) {
        pBox->setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        pBox->button(QMessageBox::Yes)->setText(ToQt(ModalText::YES));
        pBox->button(QMessageBox::No)->setText(ToQt(ModalText::NO));
        pBox->button(QMessageBox::Cancel)->setText(ToQt(ModalText::CANCEL));
        pBox->setDefaultButton(QMessageBox::Yes);
        pBox->setEscapeButton(QMessageBox::Cancel);
    } else {
        pBox->setStandardButtons(QMessageBox::Ok);
        pBox->button(QMessageBox::Ok)->setText(ToQt(ModalText::OK));
    }
    switch (pBox.Run()) {
    case QMessageBox::Yes:
        return EBoxAnswer::Yes;
    case QMessageBox::No:
        return EBoxAnswer::No;
    default:
        return answerClosed;
    }
}
