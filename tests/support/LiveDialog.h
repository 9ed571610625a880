// A dialog with a control of each kind that acts at once; it writes down what it hears.
#pragma once

#include "core/Platform/Dialogs.h"

#include <stdexcept>

class CLiveDialog : public CDialogModel, public IPanelView {
public:
    CLiveDialog() {
        using enum TPanelControl::EKind;
        m_vControls = {
            {.kind = Combo, .nId = 1, .vRows = {L"RGB", L"R"}, .strName = "channel"},
            {.kind = Slider, .nId = 2, .strLabel = L"低", .nMax = 255, .nValue = 40, .strName = "low"},
            {.kind = Text, .nId = 3, .strText = L"1.000", .bSameLine = true, .strName = "gamma"},
            {.kind = View, .nId = 4, .szView = {60, 30}, .pView = this},
            {.kind = Button, .nId = 5, .strText = L"戻す"},
            {.kind = Label, .nId = 6, .strText = L"-"}};
    }
    const char* GetName() const override { return "CLiveDialog"; }
    std::wstring GetTitle() const override { return L"補正"; }
    bool OnOk(IWindow*) override { return m_strHeard += " ok", true; }
    void OnPaint(IPaintTarget&, const TPanelPaint& paint) override { m_szView = paint.sz; }

    std::string m_strHeard;
    CSize m_szView;

protected:
    // A gamma that begins with x is no number; the label shows the low level.
    void OnControl(TPanelControl& control) override {
        m_strHeard += ' ' + std::to_string(control.nId) + '=';
        m_strHeard += control.nId == 3 ? std::string(control.strText.begin(), control.strText.end())
                                       : std::to_string(control.nValue);
        if (control.strText.starts_with(L'x')) throw std::invalid_argument("no number");
        m_vControls[5].strText = std::to_wstring(m_vControls[1].nValue);
    }
    void OnPointer(int nView, EMessage id, CPoint pt) override {
        m_strHeard += ' ' + std::to_string(nView) + (id == EMessage::LButtonDown ? "down" : "other") +
                      std::to_string(pt.x) + ',' + std::to_string(pt.y);
    }
};
