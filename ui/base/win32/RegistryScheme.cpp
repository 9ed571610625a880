#include "ui/base/DesktopScheme.h"

#include <boost/noncopyable.hpp>

#include <QObject>
#include <QWinEventNotifier>

#include <utility>

#include <windows.h>

namespace {

constexpr wchar_t KEY[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
constexpr wchar_t VALUE[] = L"AppsUseLightTheme";

// The user's choice in the settings of colours. The registry reports changes once for each request.
class CRegistryScheme : public IDesktopScheme, boost::noncopyable {
public:
    explicit CRegistryScheme(std::function<void()> fnChanged)
        : m_fnChanged(std::move(fnChanged)), m_hChanged(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
          m_notifier(m_hChanged) {
        if (RegOpenKeyExW(HKEY_CURRENT_USER, KEY, 0, KEY_QUERY_VALUE | KEY_NOTIFY, &m_hKey) != ERROR_SUCCESS)
            m_hKey = nullptr;
        QObject::connect(&m_notifier, &QWinEventNotifier::activated, &m_notifier, [this] {
            Request();
            if (std::exchange(m_bDark, Read()) != m_bDark) m_fnChanged();
        });
        Request();
        m_bDark = Read();
    }
    ~CRegistryScheme() override {
        m_notifier.setEnabled(false);
        if (m_hKey) RegCloseKey(m_hKey);
        CloseHandle(m_hChanged);
    }
    std::optional<bool> IsDark() const override { return m_bDark; }

private:
    void Request() {
        if (m_hKey) RegNotifyChangeKeyValue(m_hKey, FALSE, REG_NOTIFY_CHANGE_LAST_SET, m_hChanged, TRUE);
    }
    std::optional<bool> Read() const {
        DWORD uLight = 0, uSize = sizeof uLight;
        if (!m_hKey ||
            RegGetValueW(m_hKey, nullptr, VALUE, RRF_RT_REG_DWORD, nullptr, &uLight, &uSize) != ERROR_SUCCESS)
            return std::nullopt;
        return uLight == 0;
    }

    const std::function<void()> m_fnChanged;
    const HANDLE m_hChanged;
    HKEY m_hKey = nullptr;
    std::optional<bool> m_bDark;
    QWinEventNotifier m_notifier;
};

} // namespace

std::unique_ptr<IDesktopScheme> WatchDesktopScheme(std::function<void()> fnChanged) {
    return std::make_unique<CRegistryScheme>(std::move(fnChanged));
}
