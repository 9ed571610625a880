// All failures are reported to the user by these functions.
#pragma once

#include "core/Base/FileFailure.h"

#include <exception>
#include <string>
#include <type_traits>

/// Shows a modal box titled "Vellumcraft - Error" with the error icon, owned by the main frame while there is
/// one. Without a session it does nothing.
void ShowErrorBox(const std::wstring& strText);

/// Reports a caught exception by its dynamic type; a cancelled_error is what the user wanted and no failure.
/// Never throws: when there is no memory for the text, a
/// fixed text is shown.
void ReportException(const std::exception& e) noexcept;

/// The text that ReportFileFailure shows: the sentence, the file's name (if any) on its own line, then the
/// cause and the remedy. May throw std::bad_alloc.
std::wstring DescribeFileFailure(const std::wstring& strSentence, const std::wstring& strPath,
                                 EFileFailure failure);
/// Reports a file that could not be used. Without memory for the text, shows the sentence alone.
void ReportFileFailure(const std::wstring& strSentence, const std::wstring& strPath,
                       EFileFailure failure) noexcept;

/// Reports why a file could not be opened or written, with its name where the kind of failure allows it;
/// other exceptions as ReportException does.
void ReportFileException(const std::exception& e, const std::wstring& strPath) noexcept;

/// Error texts of the file commands. Built when the module loads, because memory may be short later.
extern const std::wstring g_strFileNotOpened;
extern const std::wstring g_strImageNotOpened;
extern const std::wstring g_strFileDamaged;
extern const std::wstring g_strSnapshotNotWritten;

/// Runs a handler's body. An exception is reported and ends the body. Returns the body's result, true for a
/// void body, false after an exception.
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
