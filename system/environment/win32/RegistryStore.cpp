#include "system/environment/win32/RegistryStore.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniText.h"

#include <boost/noncopyable.hpp>

#include <sstream>
#include <vector>

#include <windows.h>

namespace {

constexpr DWORD WAIT_MS = 5000;
constexpr wchar_t MUTEX[] = L"Local\\Vellumcraft registry";
constexpr size_t LONGEST_NAME = 256;

class CKey : boost::noncopyable {
public:
    CKey(const std::wstring& strKey, REGSAM rights) {
        const bool bWrites = (rights & KEY_SET_VALUE) != 0;
        const LSTATUS status = bWrites ? RegCreateKeyExW(HKEY_CURRENT_USER, strKey.c_str(), 0, nullptr, 0,
                                                         rights, nullptr, &m_hKey, nullptr)
                                       : RegOpenKeyExW(HKEY_CURRENT_USER, strKey.c_str(), 0, rights, &m_hKey);
        if (status != ERROR_SUCCESS) m_hKey = nullptr;
    }
    ~CKey() {
        if (m_hKey) RegCloseKey(m_hKey);
    }
    bool IsOpen() const { return m_hKey != nullptr; }

    std::vector<std::wstring> ListNames() const {
        std::vector<std::wstring> vNames;
        std::wstring strName(LONGEST_NAME, L'\0');
        for (DWORD uIndex = 0;; ++uIndex) {
            DWORD uLength = static_cast<DWORD>(strName.size());
            if (RegEnumValueW(m_hKey, uIndex, strName.data(), &uLength, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS)
                return vNames;
            vNames.emplace_back(strName.data(), uLength);
        }
    }
    std::wstring Read(const std::wstring& strName) const {
        DWORD uNumber = 0, uSize = sizeof uNumber;
        if (RegGetValueW(m_hKey, nullptr, strName.c_str(), RRF_RT_REG_DWORD, nullptr, &uNumber, &uSize) ==
            ERROR_SUCCESS)
            return std::to_wstring(uNumber);
        uSize = 0;
        if (RegGetValueW(m_hKey, nullptr, strName.c_str(), RRF_RT_REG_SZ, nullptr, nullptr, &uSize) !=
            ERROR_SUCCESS)
            return {};
        std::wstring strText(uSize / sizeof(wchar_t), L'\0');
        if (RegGetValueW(m_hKey, nullptr, strName.c_str(), RRF_RT_REG_SZ, nullptr, strText.data(), &uSize) !=
            ERROR_SUCCESS)
            return {};
        return strText.c_str();
    }
    bool Write(const std::wstring& strName, const std::wstring& strValue) {
        if (!strValue.empty() && strValue.find_first_not_of(L"0123456789") == std::wstring::npos) {
            const DWORD uNumber = static_cast<DWORD>(std::stoul(strValue));
            return RegSetValueExW(m_hKey, strName.c_str(), 0, REG_DWORD,
                                  reinterpret_cast<const BYTE*>(&uNumber), sizeof uNumber) == ERROR_SUCCESS;
        }
        return RegSetValueExW(m_hKey, strName.c_str(), 0, REG_SZ,
                              reinterpret_cast<const BYTE*>(strValue.c_str()),
                              static_cast<DWORD>((strValue.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
    }
    void Delete(const std::wstring& strName) { RegDeleteValueW(m_hKey, strName.c_str()); }

private:
    HKEY m_hKey = nullptr;
};

// Held by one program at a time; a program that ends gives it back.
class CTurn : boost::noncopyable {
public:
    CTurn() : m_hMutex(CreateMutexW(nullptr, FALSE, MUTEX)) {
        const DWORD uResult = m_hMutex ? WaitForSingleObject(m_hMutex, WAIT_MS) : WAIT_FAILED;
        m_bHeld = uResult == WAIT_OBJECT_0 || uResult == WAIT_ABANDONED;
    }
    ~CTurn() {
        if (m_bHeld) ReleaseMutex(m_hMutex);
        if (m_hMutex) CloseHandle(m_hMutex);
    }
    bool IsHeld() const { return m_bHeld; }

private:
    const HANDLE m_hMutex;
    bool m_bHeld = false;
};

} // namespace

TFileBytes CRegistryStore::Read(const std::wstring&) {
    const CKey key(m_strKey, KEY_QUERY_VALUE);
    if (!key.IsOpen()) return EFileFailure::Missing;
    std::wstring strText = L"[" + m_strKey + L"]\r\n";
    for (const std::wstring& strName : key.ListNames())
        strText += strName + L"=" + key.Read(strName) + L"\r\n";
    return ToUtf8(strText);
}

bool CRegistryStore::Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) {
    const CTurn turn;
    std::string strText = Read(strPath).value_or(std::string());
    if (!turn.IsHeld() || !edit(strText)) return false;
    CKey key(m_strKey, KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (!key.IsOpen()) return false;
    std::vector<std::wstring> vOld = key.ListNames();
    std::istringstream stream(strText);
    bool bWhole = true;
    for (std::string strLine; std::getline(stream, strLine);) {
        while (strLine.ends_with('\r')) strLine.pop_back();
        const size_t nEquals = strLine.find('=');
        if (nEquals == std::string::npos) continue;
        const std::string strBytes = strLine.substr(0, nEquals);
        const std::wstring strName = FromUtf8(strBytes);
        const auto strValue = FindIniValue(strText, ToUtf8(m_strKey), strBytes);
        bWhole = key.Write(strName, FromUtf8(strValue.value_or(std::string()))) && bWhole;
        std::erase(vOld, strName);
    }
    for (const std::wstring& strName : vOld) key.Delete(strName);
    return bWhole;
}
