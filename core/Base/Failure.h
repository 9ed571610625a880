// The failure model: every failure is an exception derived from std::exception, caught at a few fixed places
// that report it and go on. There are no error codes between the application's own classes.
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
/// A value or state that should be impossible was found in the data at hand.
struct illegal_data {};
/// A function was called with an argument outside its contract.
struct invalid_argument {};

/// A self-check that failed. `expression` is the condition's source text; `file` is empty and `line` 0 in
/// every build, so that reports are the same wherever they were made.
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

/// A condition that is no simple expression: a missing object, a failed call. `message` names the operation,
/// a colon and what went wrong.
struct internal_error : std::runtime_error {
    std::wstring message;
    explicit internal_error(std::wstring strMessage)
        : std::runtime_error("INTERNAL_ERROR"), message(std::move(strMessage)) {}
};

/// The user asked for something that a document cannot hold. Nothing has changed; `message` says so in the
/// user's language, with what to do instead.
struct refused_error : std::runtime_error {
    std::wstring message;
    explicit refused_error(std::wstring strMessage)
        : std::runtime_error("REFUSED_ERROR"), message(std::move(strMessage)) {}
};

/// Bytes that are no document. `message` may say what was wrong with them.
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

/// A file is no picture that can be read; `message` is its name.
struct loadimage_error : std::runtime_error {
    std::wstring message;
    EFileFailure failure;
    explicit loadimage_error(std::wstring strPath, EFileFailure why = EFileFailure::Unknown)
        : std::runtime_error("LOADIMAGE_ERROR"), message(std::move(strPath)), failure(why) {}
};

/// Throws constraint_violation_as<Kind> with the given expression text. Out of line, so that a check costs
/// its caller a branch and a call.
template <class Kind>
[[noreturn]] void ThrowViolation(const char* pszExpression);
extern template void ThrowViolation<defect_logic>(const char*);
extern template void ThrowViolation<illegal_data>(const char*);
extern template void ThrowViolation<invalid_argument>(const char*);

/// Throws constraint_violation_as<Kind> with the condition's source text when the condition is false.
#define SELF_CHECK(Kind, ...) ((__VA_ARGS__) ? void() : ThrowViolation<Kind>(#__VA_ARGS__))

/// The text of the report for a caught exception, chosen by its dynamic type. May throw std::bad_alloc.
std::wstring DescribeException(const std::exception& e);

/// The format with %1%, %2% and so on (boost format placeholders, each once, up to nine) replaced by the
/// arguments. Throws std::bad_alloc rather than to answer a part of it.
std::wstring FormatText(const wchar_t* pszFormat, std::initializer_list<std::wstring_view> vArguments);
inline std::wstring FormatText(const wchar_t* pszFormat, std::wstring_view str1) {
    return FormatText(pszFormat, {str1});
}
