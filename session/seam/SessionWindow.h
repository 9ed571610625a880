// State shared by all windows of a session.
#pragma once

#include "core/AppModule/MessageQueue.h"
#include "core/Platform/Window.h"
#include "session/seam/ShownWindow.h"

#include <boost/noncopyable.hpp>

#include <string>
#include <vector>

/// `Interface` is the window interface. A window is state alone; a real one may show it.
template <class Interface>
class CSessionWindow : public Interface, boost::noncopyable {
public:
    CSessionWindow(IMessageQueue& queue, IWindowClient& client, std::wstring strTitle,
                   std::vector<TMenuItem> vMenu, const CRect& rc)
        : m_queue(queue), m_client(client), m_strTitle(std::move(strTitle)), m_vMenu(std::move(vMenu)),
          m_rc(rc) {}

    IWindowClient& GetClient() override { return m_client; }
    void DefaultMessage(const TMessage& msg) override {
        if (msg.id == EMessage::Close) this->Destroy();
    }
    void SetTitle(const std::wstring& strTitle) override {
        m_strTitle = strTitle;
        m_shown.Do([&](Interface& window) { window.SetTitle(strTitle); });
    }
    CRect GetRect() const override { return m_rc; }

    const std::wstring& GetTitle() const { return m_strTitle; }
    const std::vector<TMenuItem>& GetMenu() const { return m_vMenu; }
    /// Gives the commands in the menu the texts that they have in another one.
    void SetMenuTexts(const std::vector<TMenuItem>& vFrom) {
        ForEachCommand(vFrom, [this](const TMenuItem& from) {
            ForEachCommand(m_vMenu, [&](TMenuItem& to) {
                if (to.nId == from.nId) to.strText = from.strText;
            });
        });
    }
    /// The real window that shows this one.
    CShownWindow<Interface>& GetShown() { return m_shown; }
    /// True once Destroy has begun; the object is freed when control returns to the message loop.
    bool IsDestroyed() const { return m_bDestroyed; }

protected:
    /// Destroys the real window together with this one.
    void DestroyShown() {
        m_shown.Do([](Interface& window) { window.Destroy(); });
    }

    IMessageQueue& m_queue;
    IWindowClient& m_client;
    std::wstring m_strTitle;
    std::vector<TMenuItem> m_vMenu;
    CRect m_rc;
    bool m_bShown = false;
    bool m_bDestroyed = false;
    CShownWindow<Interface> m_shown;
};
