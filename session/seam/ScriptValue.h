// Strict reading of the JSON values of a session script.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>

/// An invalid script: what() is "FILE:LINE: reason" (only the reason while a line is being read).
struct script_error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One value of a script's line. All members raise script_error, which names the value by its path in the
/// line's object. The JSON outlives the value.
class CScriptValue {
public:
    CScriptValue(const nlohmann::json& value, std::string strName)
        : m_pValue(&value), m_strName(std::move(strName)) {}

    /// A whole number within the range.
    int64_t Integer(int64_t nMin, int64_t nMax) const;
    bool Flag() const;
    /// Text that is not empty.
    std::wstring Text() const;
    std::string Utf8() const;
    /// Text, or a whole number as its decimal digits; may be empty.
    std::wstring TypedText() const;
    /// Checks that the value is an object with no other keys than these.
    const CScriptValue& Object(std::initializer_list<const char*> lstKeys) const;
    bool Has(const char* pszKey) const;
    /// A member of an object.
    CScriptValue At(const char* pszKey) const;

    const nlohmann::json& GetJson() const { return *m_pValue; }
    const std::string& GetName() const { return m_strName; }
    /// Raises script_error with the value's name and the reason.
    [[noreturn]] void Refuse(const std::string& strReason) const;

private:
    const nlohmann::json* m_pValue;
    std::string m_strName;
};
