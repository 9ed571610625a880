#include "ui/QtDialogs.h"

#include "ui/QtApplication.h"
#include "ui/QtModal.h"
#include "ui/QtText.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>

namespace {

/// A number's edit with spin buttons. Any text may stand in it: the model judges.
class CNumberEdit : public QAbstractSpinBox {
public:
    CNumberEdit(int nMin, int nMax) : m_nMin(nMin), m_nMax(nMax) {
        lineEdit()->setMaxLength(16);
        setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0")) * 14);
    }

    void SetText(const std::wstring& strText) { lineEdit()->setText(ToQt(strText)); }
    std::wstring GetText() const { return FromQt(lineEdit()->text()); }

    void stepBy(int nSteps) override {
        // Text that is no number counts as 0.
        const qint64 nValue = lineEdit()->text().trimmed().toLongLong() + nSteps;
        lineEdit()->setText(QString::number(std::clamp<qint64>(nValue, m_nMin, m_nMax)));
        lineEdit()->selectAll();
    }

protected:
    StepEnabled stepEnabled() const override {
        const qint64 nValue = lineEdit()->text().trimmed().toLongLong();
        StepEnabled steps = StepNone;
        if (nValue < m_nMax) steps |= StepUpEnabled;
        if (nValue > m_nMin) steps |= StepDownEnabled;
        return steps;
    }

private:
    int m_nMin;
    int m_nMax;
};

/// One dialog as widgets. What the user did ends Wait; the model is asked outside of Qt's own calls.
class CModelDialog : public QDialog {
public:
    enum EOutcome { Cancelled, Accepted, Extra };

    CModelDialog(QWidget* pParent, const CDialogModel& model) : QDialog(pParent) {
        PrepareModal(*this);
        setWindowTitle(ToQt(model.GetTitle()));
        auto* pForm = new QFormLayout(this);
        for (const TDialogField& field : model.m_vFields) AddField(*pForm, field);
        AddButtons(*pForm, model);
        connect(this, &QDialog::finished, this, [this] { m_loop.exit(Cancelled); });
    }

    EOutcome Wait() {
        show();
        const int nOutcome = m_loop.exec();
        return nOutcome == Accepted || nOutcome == Extra ? static_cast<EOutcome>(nOutcome) : Cancelled;
    }

    void Read(CDialogModel& model) const {
        for (size_t idx = 0; idx < m_vWidgets.size(); ++idx) {
            TDialogField& field = model.m_vFields[idx];
            if (const auto* pNumber = dynamic_cast<CNumberEdit*>(m_vWidgets[idx]))
                field.strText = pNumber->GetText();
            if (const auto* pCheck = qobject_cast<QCheckBox*>(m_vWidgets[idx]))
                field.bChecked = pCheck->isChecked();
        }
    }

    void Write(const CDialogModel& model) {
        for (size_t idx = 0; idx < m_vWidgets.size(); ++idx) {
            const TDialogField& field = model.m_vFields[idx];
            if (auto* pNumber = dynamic_cast<CNumberEdit*>(m_vWidgets[idx])) pNumber->SetText(field.strText);
            if (auto* pCheck = qobject_cast<QCheckBox*>(m_vWidgets[idx])) pCheck->setChecked(field.bChecked);
            if (auto* pReport = qobject_cast<QPlainTextEdit*>(m_vWidgets[idx]))
                pReport->setPlainText(ToQt(field.strText));
        }
    }

private:
    void AddField(QFormLayout& form, const TDialogField& field) {
        const QString strLabel = ToQt(field.strLabel);
        switch (field.kind) {
        case TDialogField::EKind::Integer:
            m_vWidgets.push_back(new CNumberEdit(field.nMin, field.nMax));
            form.addRow(strLabel, m_vWidgets.back());
            break;
        case TDialogField::EKind::Check:
            m_vWidgets.push_back(new QCheckBox(strLabel));
            form.addRow(m_vWidgets.back());
            break;
        case TDialogField::EKind::Text:
            m_vWidgets.push_back(new QLabel(ToQt(field.strText)));
            form.addRow(m_vWidgets.back());
            break;
        case TDialogField::EKind::Report: {
            auto* pReport = new QPlainTextEdit;
            pReport->setReadOnly(true);
            pReport->setLineWrapMode(QPlainTextEdit::NoWrap);
            pReport->setMinimumSize(fontMetrics().averageCharWidth() * 48, fontMetrics().height() * 10);
            m_vWidgets.push_back(pReport);
            if (!strLabel.isEmpty()) form.addRow(new QLabel(strLabel));
            form.addRow(pReport);
            break;
        }
        }
        m_vWidgets.back()->setObjectName(QString::fromStdString(field.strName));
        m_vWidgets.back()->setAccessibleName(strLabel);
    }

    void AddButtons(QFormLayout& form, const CDialogModel& model) {
        auto* pButtons = new QDialogButtonBox;
        const auto add = [&](const std::wstring& strText, QDialogButtonBox::ButtonRole role,
                             EOutcome outcome) {
            QPushButton* pButton = pButtons->addButton(ToQt(strText), role);
            connect(pButton, &QPushButton::clicked, this, [this, outcome] { m_loop.exit(outcome); });
            return pButton;
        };
        add(ModalText::OK, QDialogButtonBox::AcceptRole, Accepted)->setDefault(true);
        if (model.HasCancel()) add(ModalText::CANCEL, QDialogButtonBox::RejectRole, Cancelled);
        if (const std::wstring strExtra = model.GetExtraButton(); !strExtra.empty())
            add(strExtra, QDialogButtonBox::ActionRole, Extra)->setAutoDefault(false);
        form.addRow(pButtons);
    }

    QEventLoop m_loop;
    std::vector<QWidget*> m_vWidgets; ///< one a field
};

} // namespace

bool CQtDialogs::Run(IWindow* pOwner, CDialogModel& dialog) {
    if (!EnsureApplication()) return false;
    const CModalOwner pDialog(new CModelDialog(ModalParent(pOwner), dialog));
    while (pDialog) {
        pDialog->Write(dialog);
        const CModelDialog::EOutcome outcome = pDialog->Wait();
        if (!pDialog || outcome == CModelDialog::Cancelled) break;
        pDialog->Read(dialog);
        if (outcome == CModelDialog::Extra) {
            dialog.OnExtra();
        } else if (dialog.OnOk(pOwner)) {
            return true;
        }
    }
    return false;
}
