// The failure model: every failure is an exception derived from std::exception, caught and reported at a
// few fixed places. The application's own classes use no error codes among themselves.
#pragma once

#include "core/Base/FileFailure.h"

#include <exception>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeindex>
#include <typeinfo>

/// The application's own logic has a fault.
struct defect_logic {};
/// The data contain a value or state that should be impossible.
struct illegal_data {};
/// A function was called with an argument that violates its contract.
struct invalid_argument {};

/// A failed self-check. `expression` is the condition's source text; `file` is empty and `line` 0 in every
/// build, so that reports do not depend on the build.
struct constraint_violation : std::exception {
    std::wstring expression;
    std::wstring file;
    int line;

    constraint_violation(std::wstring strExpression, std::wstring strFile, int nLine)
        : expression(std::move(strExpression)), file(std::move(strFile)), line(nLine) {}
    /// True when this violation is of the kind that the tag type names.
    virtual bool is(const std::type_info& tag) const = 0;
};

/// A self-check of kind `T`, one of the three tags above.
template <class T>
struct constraint_violation_as : constraint_violation {
    using constraint_violation::constraint_violation;
    bool is(const std::type_info& tag) const override { return tag == typeid(T); }
};

/// A failure that is not a simple condition: a missing object, a failed call. `message` names the
/// operation, a colon and the cause.
struct internal_error : std::runtime_error {
    std::wstring message;
    explicit internal_error(std::wstring strMessage)
        : std::runtime_error("INTERNAL_ERROR"), message(std::move(strMessage)) {}
};

/// The request exceeds what a document can hold. Nothing has changed; `message` tells the user the cause
/// and the remedy in Japanese.
struct refused_error : std::runtime_error {
    std::wstring message;
    explicit refused_error(std::wstring strMessage)
        : std::runtime_error("REFUSED_ERROR"), message(std::move(strMessage)) {}
};

/// The user cancelled long work. Nothing has changed, and nothing is to be reported.
struct cancelled_error : std::runtime_error {
    cancelled_error() : std::runtime_error("CANCELLED_ERROR") {}
};

/// The bytes are not a valid document. `message` may state the cause.
struct deserialize_error : std::runtime_error {
    std::wstring message;
    explicit deserialize_error(std::wstring strMessage = L"DESERIALIZE_ERROR")
        : std::runtime_error("DESERIALIZE_ERROR"), message(std::move(strMessage)) {}
};

/// A file could not be opened or written; `message` is its name.
struct fileopen_error : std::runtime_error {
    std::wstring message;
    EFileFailure failure;
    explicit fileopen_error(std::wstring strPath, EFileFailure why = EFileFailure::Unknown)
        : std::runtime_error("FILEOPEN_ERROR"), message(std::move(strPath)), failure(why) {}
};

/// The file is not a readable picture; `message` is its name.
struct loadimage_error : std::runtime_error {
    std::wstring message;
    EFileFailure failure;
    explicit loadimage_error(std::wstring strPath, EFileFailure why = EFileFailure::Unknown)
        : std::runtime_error("LOADIMAGE_ERROR"), message(std::move(strPath)), failure(why) {}
};

/// Throws constraint_violation_as<Kind> with the given expression text. Out of line, so that a check costs
/// only a branch and a call.
template <class Kind>
[[noreturn]] void ThrowViolation(const char* pszExpression);
extern template void ThrowViolation<defect_logic>(const char*);
extern template void ThrowViolation<illegal_data>(const char*);
extern template void ThrowViolation<invalid_argument>(const char*);

/// Throws constraint_violation_as<Kind> with the condition's source text when the condition is false.
#define SELF_CHECK(Kind, ...) ((__VA_ARGS__) ? void() : ThrowViolation<Kind>(#__VA_ARGS__))

/// The text of the report for a caught exception, chosen by its dynamic type. May throw std::bad_alloc.
std::wstring DescribeException(const std::exception& e);

/// Replaces %1%, %2% and so on (boost format placeholders, each once, up to nine) by the arguments. Throws
/// std::bad_alloc; never returns a partial text.
std::wstring FormatText(const wchar_t* pszFormat, std::initializer_list<std::wstring_view> vArguments);
inline std::wstring FormatText(const wchar_t* pszFormat, std::wstring_view str1) {
    return FormatText(pszFormat, {str1});
}
