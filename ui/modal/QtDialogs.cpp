#include "ui/modal/QtDialogs.h"

#include "core/AppModule/ErrorBox.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/modal/QtModal.h"
#include "ui/panels/QtPanelControls.h"

#include <QDialogButtonBox>
#include <QEventLoop>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

enum class EOutcome { Changed, Cancelled, Accepted, Extra };

/// The user's actions in a dialog. It outlives the dialog, which may be deleted while it is waited for.
struct TUserActs {
    // The first outcome holds: what follows in the same turn of the loop is too late.
    void End(EOutcome end) {
        if (outcome == EOutcome::Changed) outcome = end;
        loop.exit();
    }
    void Change(EMessage id, int64_t wParam, int64_t lParam, const QString& strText) {
        Guarded([&] { vChanges.push_back({{nullptr, id, wParam, lParam, FromQt(strText)}, {}}); });
        loop.exit();
    }
    void Pen(int nView, const TPenReport& report) {
        Guarded([&] { vChanges.push_back({{nullptr, EMessage::PenPacket, nView}, report}); });
        loop.exit();
    }
    /// Returns at once while changes wait.
    EOutcome Wait() {
        outcome = EOutcome::Changed;
        if (vChanges.empty()) loop.exec();
        return outcome;
    }

    struct TChange {
        TMessage msg;
        std::optional<TPenReport> report; ///< of the pen over the view `msg.wParam`
    };

    QEventLoop loop;
    EOutcome outcome = EOutcome::Changed;
    std::vector<TChange> vChanges; ///< not yet taken
};

/// One dialog as widgets. The model is asked outside of Qt's own calls.
class CModelDialog : public QDialog {
public:
    CModelDialog(QWidget* pParent, const CDialogModel& model, TUserActs& acts)
        : QDialog(pParent), m_acts(acts) {
        setWindowTitle(ToQt(model.GetTitle()));
        auto* pForm = new QFormLayout(this);
        AddControls(*pForm, model.m_vControls);
        AddButtons(*pForm, model);
        connect(this, &QDialog::finished, this, [this] { End(EOutcome::Cancelled); });
    }
    ~CModelDialog() override { m_acts.End(EOutcome::Cancelled); }

    void Write(const CDialogModel& model) {
        for (size_t idx = 0; idx < m_vControls.size(); ++idx) {
            if (!m_vControls[idx]) continue;
            const TPanelControl& control = model.m_vControls[idx];
            QWidget* pWidget = m_vControls[idx]->GetWidget();
            pWidget->setEnabled(control.bEnabled);
            pWidget->setVisible(control.bVisible);
            if (m_vLabels[idx]) m_vLabels[idx]->setVisible(control.bVisible);
            m_vControls[idx]->Write(control);
        }
    }

private:
    TPanelEvents MakeEvents() {
        TPanelEvents events =
            MakePanelEvents([this](EMessage id, int64_t wParam, int64_t lParam,
                                   const QString& strText) { m_acts.Change(id, wParam, lParam, strText); },
                            [] {});
        events.pen = [this](int nView, const TPenReport& report) { m_acts.Pen(nView, report); };
        return events;
    }

    // The form of a new page, behind the other pages.
    QFormLayout& AddPage(QFormLayout& form, const TPanelControl& page) {
        if (!m_pTabs) form.addRow(m_pTabs = new QTabWidget(this));
        auto* pPage = new QWidget(m_pTabs);
        pPage->setObjectName(QString::fromStdString(page.strName));
        m_pTabs->addTab(pPage, ToQt(page.strText));
        if (page.nValue) m_pTabs->setCurrentWidget(pPage);
        return *new QFormLayout(pPage);
    }

    static QFormLayout& AddColumn(QHBoxLayout& columns) {
        auto* pForm = new QFormLayout;
        columns.addLayout(pForm);
        return *pForm;
    }

    void AddControls(QFormLayout& outer, const std::vector<TPanelControl>& vControls) {
        const TPanelEvents events = MakeEvents();
        using EKind = TPanelControl::EKind;
        const bool bColumns =
            std::ranges::find(vControls, EKind::Column, &TPanelControl::kind) != vControls.end();
        auto* pColumns = bColumns ? new QHBoxLayout : nullptr;
        if (pColumns) outer.addRow(pColumns);
        QFormLayout* pForm = pColumns ? &AddColumn(*pColumns) : &outer;
        QHBoxLayout* pLine = nullptr;
        for (size_t idx = 0; idx < vControls.size(); ++idx) {
            const TPanelControl& control = vControls[idx];
            if (control.kind == EKind::Page || control.kind == EKind::Column) {
                pForm = control.kind == EKind::Page ? &AddPage(outer, control) : &AddColumn(*pColumns);
                m_vControls.push_back(nullptr);
                m_vLabels.push_back(nullptr);
                continue;
            }
            if (control.bStretch && pColumns) pColumns->setStretch(pColumns->count() - 1, 1);
            m_vControls.push_back(MakePanelControl(control, events, this));
            QWidget* pWidget = m_vControls.back()->GetWidget();
            const QString strLabel = ToQt(control.strLabel);
            pWidget->setObjectName(QString::fromStdString(control.strName));
            pWidget->setAccessibleName(strLabel.isEmpty() ? ToQt(control.strText) : strLabel);
            m_vLabels.push_back(control.strLabel.empty() ? nullptr : new QLabel(strLabel, this));
            if (m_vLabels.back()) m_vLabels.back()->setBuddy(pWidget);
            if (control.bSameLine && pLine) {
                if (m_vLabels.back()) pLine->addWidget(m_vLabels.back());
                pLine->addWidget(pWidget);
                continue;
            }
            const bool bAlone = idx + 1 == vControls.size() || !vControls[idx + 1].bSameLine;
            pLine = bAlone ? nullptr : new QHBoxLayout;
            if (pLine) pLine->addWidget(pWidget);
            if (pLine && m_vLabels.back())
                pForm->addRow(m_vLabels.back(), pLine);
            else if (pLine)
                pForm->addRow(pLine);
            else if (m_vLabels.back())
                pForm->addRow(m_vLabels.back(), pWidget);
            else
                pForm->addRow(pWidget);
        }
    }

    void AddButtons(QFormLayout& form, const CDialogModel& model) {
        auto* pButtons = new QDialogButtonBox;
        const auto add = [&](const std::wstring& strText, QDialogButtonBox::ButtonRole role,
                             EOutcome outcome) {
            QPushButton* pButton = pButtons->addButton(ToQt(strText), role);
            connect(pButton, &QPushButton::clicked, this, [this, outcome] { End(outcome); });
            return pButton;
        };
        add(ModalText::OK, QDialogButtonBox::AcceptRole, EOutcome::Accepted)->setDefault(true);
        if (model.HasCancel()) add(ModalText::CANCEL, QDialogButtonBox::RejectRole, EOutcome::Cancelled);
        if (const std::wstring strExtra = model.GetExtraButton(); !strExtra.empty())
            add(strExtra, QDialogButtonBox::ActionRole, EOutcome::Extra)->setAutoDefault(false);
        form.addRow(pButtons);
    }

    void End(EOutcome outcome) {
        if (outcome != EOutcome::Cancelled)
            for (const auto& pControl : m_vControls)
                if (pControl) pControl->Flush();
        m_acts.End(outcome);
    }

    TUserActs& m_acts;
    std::vector<std::unique_ptr<CQtPanelControl>> m_vControls; ///< null for a page or column
    std::vector<QLabel*> m_vLabels;                            ///< one a control, null for none
    QTabWidget* m_pTabs = nullptr;
};

} // namespace

bool CQtDialogs::Run(IWindow* pOwner, CDialogModel& dialog) {
    if (!EnsureApplication()) return false;
    TUserActs acts;
    const CModalOwner<CModelDialog> pDialog(ModalParent(pOwner), dialog, acts);
    while (pDialog) {
        pDialog->Write(dialog);
        pDialog->show();
        const EOutcome outcome = acts.Wait();
        if (!pDialog || outcome == EOutcome::Cancelled) break;
        bool bTaken = true;
        for (const auto& [msg, report] : std::exchange(acts.vChanges, {}))
            bTaken = Guarded([&] {
                         if (report)
                             dialog.OnPen(static_cast<int>(msg.wParam), *report);
                         else
                             dialog.OnControlMessage(msg);
                     }) &&
                     bTaken;
        // A change that failed is put back, and the user sees it before the dialog closes.
        if (!bTaken || !pDialog) continue;
        if (outcome == EOutcome::Extra) {
            dialog.OnExtra();
        } else if (outcome == EOutcome::Accepted && dialog.OnOk(pOwner)) {
            return true;
        }
    }
    return false;
}
