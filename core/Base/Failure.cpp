#include "core/Base/Failure.h"

#include "core/Base/Text.h"

#include <boost/format.hpp>

#include <new>

template <class Kind>
void ThrowViolation(const char* pszExpression) {
    throw constraint_violation_as<Kind>(FromUtf8(pszExpression), std::wstring(), 0);
}
template void ThrowViolation<defect_logic>(const char*);
template void ThrowViolation<illegal_data>(const char*);
template void ThrowViolation<invalid_argument>(const char*);

std::wstring FormatText(const wchar_t* pszFormat, const std::wstring& str1) {
    return (boost::wformat(pszFormat) % str1).str();
}

std::wstring DescribeException(const std::exception& e) {
    if (dynamic_cast<const std::bad_alloc*>(&e)) return L"メモリが足りません。\nexception: bad_alloc";
    if (const auto* pViolation = dynamic_cast<const constraint_violation*>(&e)) {
        std::wstring strText = L"自己診断違反が発生しました。\nType: ";
        if (pViolation->is(typeid(defect_logic))) strText += L"DEFECT_LOGIC";
        if (pViolation->is(typeid(illegal_data))) strText += L"ILLEGAL_DATA";
        strText += L"\n";
        strText += L"Expression: " + pViolation->expression + L"\n";
        strText += L"File: " + pViolation->file + L":" + std::to_wstring(pViolation->line) + L"\n";
        return strText;
    }
    if (const auto* pInternal = dynamic_cast<const internal_error*>(&e))
        return FormatText(L"内部エラー\nexception: internal_error('%1%')", pInternal->message);
    return FormatText(L"予期せぬエラーが発生しました。\nexception: exception('%1%')", FromUtf8(e.what()));
}
