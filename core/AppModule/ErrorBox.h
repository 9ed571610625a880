// The one way a failure reaches the user.
#pragma once

#include "core/Base/FileFailure.h"

#include <exception>
#include <string>
#include <type_traits>

/// Shows a modal box titled "Vellumcraft - Error" with the error icon, owned by the main frame while there is
/// one. Without a session it does nothing.
void ShowErrorBox(const std::wstring& strText);

/// Reports a caught exception by its dynamic type. Never throws: when memory runs out even for the text, a
/// fixed text is shown.
void ReportException(const std::exception& e) noexcept;

/// The text that ReportFileFailure shows: the sentence, the file's name, if there is one, in a line of its
/// own, and below what happened to it and what to do. May throw std::bad_alloc.
std::wstring DescribeFileFailure(const std::wstring& strSentence, const std::wstring& strPath,
                                 EFileFailure failure);
/// Tells of a file that could not be used. Without memory for the text the sentence alone.
void ReportFileFailure(const std::wstring& strSentence, const std::wstring& strPath,
                       EFileFailure failure) noexcept;

/// What file commands say. Made when the module loads: there may be no memory for them later.
extern const std::wstring g_strFileNotOpened;
extern const std::wstring g_strImageNotOpened;
extern const std::wstring g_strFileDamaged;
extern const std::wstring g_strSnapshotNotWritten;

/// Runs a handler's body; an exception is reported and the body's remainder skipped. Returns what the body
/// returned, true for a body without a result, false after an exception.
template <class Body>
bool Guarded(Body&& body) {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Body>>)
            return body(), true;
        else
            return body();
    } catch (const std::exception& e) {
        ReportException(e);
        return false;
    }
}
