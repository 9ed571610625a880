#include "session/recorder/RecordWindows.h"

/// Wraps a window's client.
class CRecordWindows::CClient : public IWindowClient {
public:
    CClient(IWindowClient& client, const std::function<void(const TMessage&)>& fnHear)
        : m_client(client), m_fnHear(fnHear) {}
    bool OnMessage(const TMessage& msg) override {
        m_fnHear(msg);
        return m_client.OnMessage(msg);
    }
    void OnPaint(IPaintTarget& target, const CRect& rc) override { m_client.OnPaint(target, rc); }
    void OnFinalMessage() override { m_client.OnFinalMessage(); }

private:
    IWindowClient& m_client;
    const std::function<void(const TMessage&)>& m_fnHear;
};

CRecordWindows::CRecordWindows(IWindowFactory& windows, std::function<void()> fnBegin,
                               std::function<void(const TMessage&)> fnHear)
    : m_windows(windows), m_fnBegin(std::move(fnBegin)), m_fnHear(std::move(fnHear)) {}
CRecordWindows::~CRecordWindows() = default;

IWindowClient& CRecordWindows::Listen(IWindowClient& client) {
    // Kept until the end: a window may call its client until it is freed.
    m_vClients.push_back(std::make_unique<CClient>(client, m_fnHear));
    return *m_vClients.back();
}

IMainWindow* CRecordWindows::CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) {
    m_fnBegin();
    return m_windows.CreateMainWindow(Listen(client), setup);
}

ICanvasWindow* CRecordWindows::CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                                  const TCanvasWindowSetup& setup) {
    return m_windows.CreateCanvasWindow(parent, Listen(client), setup);
}

IPanelWindow* CRecordWindows::CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                                const TPanelSetup& setup) {
    TPanelSetup heard = setup;
    std::map<int, std::unique_ptr<CSizedView>> mapViews;
    for (TPanelControl& control : heard.vControls) {
        if (!control.pView) continue;
        mapViews[control.nId] = std::make_unique<CSizedView>(*control.pView);
        control.pView = mapViews[control.nId].get();
    }
    IPanelWindow* pWindow = m_windows.CreatePanelWindow(parent, client, heard);
    if (!pWindow) return nullptr;
    for (auto& [nId, pView] : mapViews) m_mapViews[{pWindow, nId}] = std::move(pView);
    return pWindow;
}

CSize CRecordWindows::GetViewSize(const IWindow* pPanel, int nView) const {
    const auto it = m_mapViews.find({pPanel, nView});
    return it == m_mapViews.end() ? CSize() : it->second->GetSize();
}
