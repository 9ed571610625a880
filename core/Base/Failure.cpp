#include "core/Base/Failure.h"

#include "core/Base/Text.h"

#include <boost/format.hpp>

#include <cwchar>
#include <new>

namespace {

constexpr size_t PLACEHOLDER = 3; ///< characters of the placeholder "%1%"

} // namespace

template <class Kind>
void ThrowViolation(const char* pszExpression) {
    throw constraint_violation_as<Kind>(FromUtf8(pszExpression), std::wstring(), 0);
}
template void ThrowViolation<defect_logic>(const char*);
template void ThrowViolation<illegal_data>(const char*);
template void ThrowViolation<invalid_argument>(const char*);

std::wstring FormatText(const wchar_t* pszFormat, std::initializer_list<std::wstring_view> vArguments) {
    boost::wformat format(pszFormat);
    size_t nLength = std::wcslen(pszFormat);
    for (const std::wstring_view str : vArguments) {
        format % str;
        nLength = nLength - PLACEHOLDER + str.size();
    }
    std::wstring strText = format.str();
    // The streams inside do not throw when memory runs out.
    if (strText.size() != nLength) throw std::bad_alloc();
    return strText;
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
    if (const auto* pRefused = dynamic_cast<const refused_error*>(&e)) return pRefused->message;
    if (const auto* pInternal = dynamic_cast<const internal_error*>(&e))
        return FormatText(L"内部エラー\nexception: internal_error('%1%')", pInternal->message);
    return FormatText(L"予期せぬエラーが発生しました。\nexception: exception('%1%')", FromUtf8(e.what()));
}
