#include "core/Base/Decimal.h"
#include "ui/base/QtText.h"
#include "ui/input/QtKeys.h"
#include "ui/panels/QtPanelControls.h"

#include <QAbstractSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>

namespace {

constexpr int MAX_TEXT = 64;
constexpr int MAX_NUMBER = 16;
constexpr int HUNDREDTHS = 100; ///< of 1, in which a number's stops are given

/// A number's edit with spin buttons. Any text may stand in it.
class CNumberEdit : public QAbstractSpinBox {
public:
    CNumberEdit(const TPanelControl& control, QWidget* pParent)
        : QAbstractSpinBox(pParent), m_nMin(control.nMin), m_nMax(control.nMax), m_vStops(control.vStops) {
        setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0")) * 14);
    }
    QLineEdit* GetEdit() const { return lineEdit(); }

    void stepBy(int nSteps) override {
        if (m_vStops.empty()) {
            const qint64 nValue = GetNumber() + nSteps;
            lineEdit()->setText(QString::number(std::clamp<qint64>(nValue, m_nMin, m_nMax)));
        } else {
            lineEdit()->setText(ToQt(FormatParts(GetStop(nSteps), HUNDREDTHS)));
        }
        lineEdit()->selectAll();
        m_fnStepped();
    }
    std::function<void()> m_fnStepped;

protected:
    StepEnabled stepEnabled() const override {
        const qint64 nValue = GetNumber();
        StepEnabled steps = StepNone;
        if (nValue < (m_vStops.empty() ? m_nMax : m_vStops.back())) steps |= StepUpEnabled;
        if (nValue > (m_vStops.empty() ? m_nMin : m_vStops.front())) steps |= StepDownEnabled;
        return steps;
    }

private:
    // Text that is no number counts as 0.
    qint64 GetNumber() const {
        const std::wstring strText = FromQt(lineEdit()->text());
        return m_vStops.empty() ? static_cast<qint64>(ParseNumber(strText).value_or(0))
                                : ParseParts(strText, HUNDREDTHS).value_or(0);
    }
    // The stop that lies so many steps above or below the number.
    int GetStop(int nSteps) const {
        const qint64 nValue = GetNumber();
        const auto itFrom = nSteps > 0 ? std::ranges::upper_bound(m_vStops, nValue)
                                       : std::ranges::lower_bound(m_vStops, nValue);
        const std::ptrdiff_t idx = itFrom - m_vStops.begin() + nSteps - (nSteps > 0 ? 1 : 0);
        const auto idxLast = static_cast<std::ptrdiff_t>(m_vStops.size()) - 1;
        return m_vStops[static_cast<size_t>(std::clamp<std::ptrdiff_t>(idx, 0, idxLast))];
    }

    int m_nMin;
    int m_nMax;
    std::vector<int> m_vStops;
};

/// Base of both edits: notifies once, when the focus is lost or Return is pressed.
class CEditControl : public CQtPanelControl {
public:
    CEditControl(QLineEdit* pEdit, int nMaxLength, const TPanelControl& control, const TPanelEvents& events)
        : m_pEdit(pEdit), m_nId(control.nId), m_fnChange(events.change) {
        m_pEdit->setMaxLength(nMaxLength);
        QObject::connect(m_pEdit, &QLineEdit::editingFinished, &m_alive, [this] { Flush(); });
        if (control.bLive) QObject::connect(m_pEdit, &QLineEdit::textEdited, &m_alive, [this] { Flush(); });
    }
    QWidget* GetWidget() override { return m_pEdit; }
    void Write(const TPanelControl& control) override {
        // Text that is being typed is kept.
        if (m_pEdit->hasFocus() && m_pEdit->text() != m_strShown && ToQt(control.strText) == m_strShown)
            return;
        m_strShown = ToQt(control.strText);
        if (m_pEdit->text() != m_strShown) m_pEdit->setText(m_strShown);
    }
    void Flush() override {
        const QString strText = m_pEdit->text();
        if (strText == m_strShown) return;
        m_strShown = strText;
        m_fnChange(m_nId, 0, strText);
    }

protected:
    QObject m_alive; ///< ends the connections: an edit that is destroyed loses the focus, too

private:
    QLineEdit* m_pEdit;
    int m_nId;
    std::function<void(int, int, const QString&)> m_fnChange;
    QString m_strShown;
};

class CNumberControl : public CEditControl {
public:
    CNumberControl(CNumberEdit* pNumber, const TPanelControl& control, const TPanelEvents& events)
        : CEditControl(pNumber->GetEdit(), MAX_NUMBER, control, events), m_pNumber(pNumber) {
        pNumber->m_fnStepped = [this] { Flush(); };
        QObject::connect(pNumber, &QAbstractSpinBox::editingFinished, &m_alive, [this] { Flush(); });
    }
    QWidget* GetWidget() override { return m_pNumber; }

private:
    CNumberEdit* m_pNumber;
};

/// A field that takes the next key, with its modifiers, in place of text.
class CKeyEdit : public QLineEdit {
public:
    using QLineEdit::QLineEdit;
    std::function<void(int nKey)> m_fnKey;

protected:
    bool event(QEvent* pEvent) override {
        // No shortcut of the window may take the key before.
        if (pEvent->type() == QEvent::ShortcutOverride) pEvent->accept();
        return QLineEdit::event(pEvent);
    }
    void keyPressEvent(QKeyEvent* pEvent) override {
        const int nKey = VirtualKeyOf(*pEvent);
        const bool bModifier = nKey == VK_Shift || nKey == VK_Control || nKey == VK_Alt;
        const bool bEnds = pEvent->modifiers() == Qt::NoModifier &&
                           (pEvent->key() == Qt::Key_Escape || pEvent->key() == Qt::Key_Return);
        if (bEnds) return pEvent->ignore();
        if (nKey == 0 || bModifier || pEvent->isAutoRepeat()) return;
        const auto flag = [&](Qt::KeyboardModifier modifier, int nFlag) {
            return pEvent->modifiers().testFlag(modifier) ? nFlag : 0;
        };
        m_fnKey(nKey | flag(Qt::ControlModifier, KEY_CONTROL) | flag(Qt::ShiftModifier, KEY_SHIFT) |
                flag(Qt::AltModifier, KEY_ALT));
    }
};

class CKeyControl : public CQtPanelControl {
public:
    CKeyControl(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : m_pEdit(new CKeyEdit(pParent)) {
        m_pEdit->setReadOnly(true);
        m_pEdit->setContextMenuPolicy(Qt::NoContextMenu);
        m_pEdit->setPlaceholderText(ToQt(L"ここでキーを押す"));
        m_pEdit->m_fnKey = [nId = control.nId, fnChange = events.change](int nKey) {
            fnChange(nId, nKey, {});
        };
    }
    QWidget* GetWidget() override { return m_pEdit; }
    void Write(const TPanelControl& control) override { m_pEdit->setText(ToQt(control.strText)); }

private:
    CKeyEdit* m_pEdit;
};

class CReportControl : public CQtPanelControl {
public:
    explicit CReportControl(QWidget* pParent) : m_pReport(new QPlainTextEdit(pParent)) {
        m_pReport->setReadOnly(true);
        m_pReport->setLineWrapMode(QPlainTextEdit::NoWrap);
        const QFontMetrics metrics = pParent->fontMetrics();
        m_pReport->setMinimumSize(metrics.averageCharWidth() * 48, metrics.height() * 10);
    }
    QWidget* GetWidget() override { return m_pReport; }
    void Write(const TPanelControl& control) override { m_pReport->setPlainText(ToQt(control.strText)); }

private:
    QPlainTextEdit* m_pReport;
};

} // namespace

std::unique_ptr<CQtPanelControl> MakePanelEdit(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent) {
    if (control.kind == TPanelControl::EKind::Report) return std::make_unique<CReportControl>(pParent);
    if (control.kind == TPanelControl::EKind::Key)
        return std::make_unique<CKeyControl>(control, events, pParent);
    if (control.kind == TPanelControl::EKind::Number) {
        auto* pNumber = new CNumberEdit(control, pParent);
        if (control.szView.cx) pNumber->setFixedWidth(control.szView.cx);
        return std::make_unique<CNumberControl>(pNumber, control, events);
    }
    auto* pEdit = new QLineEdit(pParent);
    if (control.szView.cx) pEdit->setFixedWidth(control.szView.cx);
    return std::make_unique<CEditControl>(pEdit, MAX_TEXT, control, events);
}
