#include "session/seam/ScriptValue.h"

#include "core/Base/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>

void CScriptValue::Refuse(const std::string& strReason) const {
    throw script_error(m_strName + ": " + strReason);
}

int64_t CScriptValue::Integer(int64_t nMin, int64_t nMax) const {
    // Numbers beyond 63 bits are kept unsigned and must not wrap into the range.
    const bool bFits = m_pValue->is_number_integer() &&
                       (!m_pValue->is_number_unsigned() || m_pValue->get<uint64_t>() <= INT64_MAX);
    const int64_t n = bFits ? m_pValue->get<int64_t>() : 0;
    if (!bFits || n < nMin || n > nMax)
        Refuse("must be a whole number from " + std::to_string(nMin) + " to " + std::to_string(nMax));
    return n;
}

bool CScriptValue::Flag() const {
    if (!m_pValue->is_boolean()) Refuse("must be true or false");
    return m_pValue->get<bool>();
}

std::string CScriptValue::Utf8() const {
    if (!m_pValue->is_string()) Refuse("must be a text");
    const auto& strText = m_pValue->get_ref<const std::string&>();
    if (strText.empty()) Refuse("must not be empty");
    return strText;
}

std::wstring CScriptValue::Text() const { return FromUtf8(Utf8()); }

std::wstring CScriptValue::TypedText() const {
    if (m_pValue->is_number_integer()) return FromUtf8(m_pValue->dump());
    if (!m_pValue->is_string()) Refuse("must be a text or a whole number");
    return FromUtf8(m_pValue->get_ref<const std::string&>());
}

const CScriptValue& CScriptValue::Object(std::initializer_list<const char*> lstKeys) const {
    if (!m_pValue->is_object()) Refuse("must be an object");
    for (const auto& [strKey, value] : m_pValue->items())
        if (std::find(lstKeys.begin(), lstKeys.end(), strKey) == lstKeys.end())
            Refuse("unknown key \"" + strKey + "\"");
    return *this;
}

bool CScriptValue::Has(const char* pszKey) const {
    return m_pValue->is_object() && m_pValue->contains(pszKey);
}

CScriptValue CScriptValue::At(const char* pszKey) const {
    if (!m_pValue->is_object()) Refuse("must be an object");
    const auto it = m_pValue->find(pszKey);
    if (it == m_pValue->end()) Refuse(std::string("\"") + pszKey + "\" is missing");
    return {*it, m_strName + "." + pszKey};
}
