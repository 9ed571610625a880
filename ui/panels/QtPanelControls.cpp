#include "ui/panels/QtPanelControls.h"

#include "ui/base/QtText.h"
#include "ui/base/SvgIcon.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr int TOGGLE_ICON = 22;
constexpr qreal TITLE_SIZE = 1.25; ///< of a title's letters
constexpr int NUMBER_WIDTH = 68;   ///< the same for all, so that sliders end at one line

/// Buttons of every kind.
class CButtonControl : public CQtPanelControl {
public:
    CButtonControl(QAbstractButton* pButton, const TPanelControl& control, const TPanelEvents& events)
        : m_pButton(pButton), m_bCheckable(pButton->isCheckable()) {
        // Which of several is down is the panel's to say.
        pButton->setAutoExclusive(false);
        const auto tell = [nId = control.nId, fnChange = events.change](bool bChecked) {
            fnChange(nId, bChecked, {});
        };
        if (control.bHold) {
            QObject::connect(pButton, &QAbstractButton::pressed, pButton, [tell] { tell(true); });
            QObject::connect(pButton, &QAbstractButton::released, pButton, [tell] { tell(false); });
        } else {
            QObject::connect(pButton, &QAbstractButton::clicked, pButton, tell);
        }
    }
    QWidget* GetWidget() override { return m_pButton; }
    void Write(const TPanelControl& control) override {
        const QSignalBlocker block(m_pButton);
        if (m_bCheckable) m_pButton->setChecked(control.nValue != 0);
        m_pButton->setText(ToQt(control.strText));
        if (control.kind == TPanelControl::EKind::Toggle || !control.strIcon.empty())
            m_pButton->setToolTip(ToQt(control.strTip.empty() ? control.strText : control.strTip));
    }

private:
    QAbstractButton* m_pButton;
    bool m_bCheckable;
};

QAbstractButton* MakeButton(const TPanelControl& control, QWidget* pParent) {
    const QString strText = ToQt(control.strText);
    if (control.kind == TPanelControl::EKind::Check) return new QCheckBox(strText, pParent);
    if (control.kind == TPanelControl::EKind::Radio) return new QRadioButton(strText, pParent);
    if (control.kind == TPanelControl::EKind::Button && control.strIcon.empty()) {
        auto* pButton = new QPushButton(strText, pParent);
        pButton->setAutoDefault(false);
        pButton->setMinimumWidth(pButton->fontMetrics().horizontalAdvance(strText) + 16);
        return pButton;
    }
    auto* pButton = new QToolButton(pParent);
    pButton->setCheckable(control.kind == TPanelControl::EKind::Toggle);
    pButton->setAutoRaise(true);
    pButton->setText(strText);
    pButton->setIconSize({TOGGLE_ICON, TOGGLE_ICON});
    if (!control.strIcon.empty()) pButton->setIcon(LoadLineIcon(control.strIcon));
    return pButton;
}

class CLabelControl : public CQtPanelControl {
public:
    CLabelControl(const TPanelControl& control, QWidget* pParent)
        : m_pLabel(new QLabel(ToQt(control.strText), pParent)) {
        m_pLabel->setTextFormat(Qt::PlainText);
        if (control.bTitle) {
            QFont font = m_pLabel->font();
            font.setPointSizeF(font.pointSizeF() * TITLE_SIZE);
            font.setBold(true);
            m_pLabel->setFont(font);
        }
    }
    QWidget* GetWidget() override { return m_pLabel; }
    void Write(const TPanelControl& control) override { m_pLabel->setText(ToQt(control.strText)); }

private:
    QLabel* m_pLabel;
};

class CComboControl : public CQtPanelControl {
public:
    CComboControl(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : m_pCombo(new QComboBox(pParent)) {
        m_pCombo->setMaxVisibleItems(24);
        Write(control);
        QObject::connect(
            m_pCombo, &QComboBox::activated, m_pCombo,
            [nId = control.nId, fnChange = events.change](int nRow) { fnChange(nId, nRow, {}); });
    }
    QWidget* GetWidget() override { return m_pCombo; }
    void Write(const TPanelControl& control) override {
        const QSignalBlocker block(m_pCombo);
        if (m_vRows != control.vRows) {
            m_vRows = control.vRows;
            m_pCombo->clear();
            for (const std::wstring& strRow : m_vRows) m_pCombo->addItem(ToQt(strRow));
        }
        m_pCombo->setCurrentIndex(control.nValue);
    }

private:
    QComboBox* m_pCombo;
    std::vector<std::wstring> m_vRows;
};

/// A slider and its number.
class CSliderControl : public CQtPanelControl {
public:
    CSliderControl(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : m_vStops(control.vStops), m_pBoth(new QWidget(pParent)),
          m_pSlider(new QSlider(Qt::Horizontal, m_pBoth)), m_pNumber(new QSpinBox(m_pBoth)) {
        auto* pLayout = new QHBoxLayout(m_pBoth);
        pLayout->setContentsMargins(0, 0, 0, 0);
        pLayout->setSpacing(6);
        pLayout->addWidget(m_pSlider, 1);
        pLayout->addWidget(m_pNumber);
        m_pNumber->setVisible(!control.bBare);
        m_pSlider->setFocusPolicy(Qt::TabFocus);
        m_pSlider->setMinimumWidth(control.szView.cx ? control.szView.cx : 56);
        m_pSlider->setRange(m_vStops.empty() ? control.nMin : 0,
                            m_vStops.empty() ? control.nMax : static_cast<int>(m_vStops.size()) - 1);
        m_pSlider->setPageStep(
            control.nPage ? control.nPage : std::max(1, (m_pSlider->maximum() - m_pSlider->minimum()) / 10));
        m_pNumber->setRange(control.nMin, control.nMax);
        m_pNumber->setSuffix(ToQt(control.strUnit));
        m_pNumber->setKeyboardTracking(false);
        m_pNumber->setMinimumWidth(NUMBER_WIDTH);
        m_pNumber->setFocusPolicy(Qt::StrongFocus);
        m_pNumber->setAlignment(Qt::AlignRight);
        m_pBoth->setFocusProxy(m_pSlider);
        const auto tell = [nId = control.nId, fnChange = events.change](int nValue) {
            fnChange(nId, nValue, {});
        };
        QObject::connect(m_pSlider, &QSlider::valueChanged, m_pBoth, [this, tell](int nAt) {
            const int nValue = ValueAt(nAt);
            const QSignalBlocker block(m_pNumber);
            m_pNumber->setValue(nValue);
            tell(nValue);
        });
        QObject::connect(m_pNumber, &QSpinBox::valueChanged, m_pBoth, [this, tell](int nValue) {
            const QSignalBlocker block(m_pSlider);
            m_pSlider->setValue(PositionOf(nValue));
            tell(nValue);
        });
    }
    QWidget* GetWidget() override { return m_pBoth; }
    void Write(const TPanelControl& control) override {
        const QSignalBlocker blockSlider(m_pSlider), blockNumber(m_pNumber);
        if (ValueAt(m_pSlider->value()) != control.nValue) m_pSlider->setValue(PositionOf(control.nValue));
        if (m_pNumber->value() != control.nValue) m_pNumber->setValue(control.nValue);
    }

private:
    int ValueAt(int nAt) const { return m_vStops.empty() ? nAt : m_vStops[static_cast<size_t>(nAt)]; }
    int PositionOf(int nValue) const {
        if (m_vStops.empty()) return nValue;
        const auto it = std::lower_bound(m_vStops.begin(), m_vStops.end(), nValue);
        return static_cast<int>(
            std::min<ptrdiff_t>(it - m_vStops.begin(), static_cast<ptrdiff_t>(m_vStops.size()) - 1));
    }

    std::vector<int> m_vStops;
    QWidget* m_pBoth;
    QSlider* m_pSlider;
    QSpinBox* m_pNumber;
};

} // namespace

std::unique_ptr<CQtPanelControl> MakePanelControl(const TPanelControl& control, const TPanelEvents& events,
                                                  QWidget* pParent) {
    using EKind = TPanelControl::EKind;
    switch (control.kind) {
    case EKind::Label:
        return std::make_unique<CLabelControl>(control, pParent);
    case EKind::List:
        return MakePanelList(control, events, pParent);
    case EKind::Tree:
        return MakePanelTree(control, events, pParent);
    case EKind::View:
        return MakePanelView(control, events, pParent);
    case EKind::Text:
    case EKind::Number:
    case EKind::Report:
    case EKind::Key:
        return MakePanelEdit(control, events, pParent);
    case EKind::Slider:
        return std::make_unique<CSliderControl>(control, events, pParent);
    case EKind::Combo:
        return std::make_unique<CComboControl>(control, events, pParent);
    default:
        return std::make_unique<CButtonControl>(MakeButton(control, pParent), control, events);
    }
}

TPanelEvents MakePanelEvents(
    const std::function<void(EMessage id, int64_t wParam, int64_t lParam, const QString& strText)>& fnTell,
    std::function<void()> fnDone) {
    return {
        [=](int nId, int nValue, const QString& strText) {
            fnTell(EMessage::PanelChange, nId, nValue, strText);
        },
        [=](int nId, int nRow) { fnTell(EMessage::PanelActivate, nId, nRow, {}); },
        [=](int nId, int nRow, const QString& strName) { fnTell(EMessage::PanelRename, nId, nRow, strName); },
        [=](int nId, int nFrom, int nTo) { fnTell(EMessage::PanelMove, nId, PackPoint(nFrom, nTo), {}); },
        [=](EMessage id, int nId, int64_t lParam) { fnTell(id, nId, lParam, {}); },
        [=](int nId, EMessage id, int64_t wParam, int64_t lParam) {
            fnTell(id, PackView(wParam, nId), lParam, {});
        },
        std::move(fnDone)};
}
