// What all panels share: the window, its place in the settings, the way from the window's messages to the
// controls.
#pragma once

#include "core/Platform/Panel.h"

#include <boost/noncopyable.hpp>

#include <string>
#include <vector>

class CPanel : public IWindowClient, public CControlModel, boost::noncopyable {
public:
    /// `strName` is the panel's section below "Windows".
    explicit CPanel(std::wstring strName) : m_strName(std::move(strName)) {}

    /// Makes the window where it was when it closed, at `placeFirst` when there is no such place. A docked
    /// panel's place among the others is that in which they are made. Raises internal_error when the window
    /// system refuses.
    void Create(IMainWindow& parent, const TPanelPlace& placeFirst);
    /// The place that the settings keep.
    TPanelPlace ReadPlace(const TPanelPlace& placeFirst) const;
    /// Writes the place to the settings, if it has changed.
    void KeepPlace();
    /// Writes the panel's own settings, if they have changed.
    void KeepSettings();
    /// Keeps the settings and destroys the window.
    void Close();
    IPanelWindow* GetWindow() const { return m_pWindow; }

    virtual std::wstring GetTitle() const = 0;
    /// Rereads what the panel shows.
    void Refresh();
    /// The active tool begins a stroke.
    virtual void OnStroke() {}

    bool OnMessage(const TMessage& msg) override;
    void OnPaint(IPaintTarget&, const CRect&) override {}
    void OnFinalMessage() override { m_pWindow = nullptr; }

protected:
    /// Writes the controls' values.
    virtual void OnRefresh() = 0;
    void OnControl(TPanelControl& control) override = 0;
    /// The panel reads its own settings.
    virtual void OnOpen() {}
    /// The panel writes those of its own settings that have changed since it read or wrote them.
    virtual void OnKeep() {}

    void EnableAll(bool bEnable);
    /// Tells everyone that a tool's value has changed, and has its overlay drawn anew.
    static void NotifyTool();

private:
    const std::wstring m_strName;
    IPanelWindow* m_pWindow = nullptr;
    TPanelPlace m_placeRead;
};
