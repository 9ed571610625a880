// What a played session showed, and what went wrong in it first.
#pragma once

#include <boost/noncopyable.hpp>

#include <deque>
#include <string>
#include <vector>

/// A modal window that opened.
struct TShown {
    enum class EKind { Box, FileDialog, Dialog };
    EKind kind = EKind::Box;
    std::wstring strTitle; ///< a dialog's class name, else the title or empty
    std::wstring strText;  ///< a box's text, a file dialog's suggested name
};

class CSessionLog : boost::noncopyable {
public:
    /// `strName` is how failures name the script.
    explicit CSessionLog(std::string strName) : m_strName(std::move(strName)) {}

    /// The line that plays from now on; it is named by failures.
    void Enter(int nLine) { m_nLine = nLine; }
    int GetLine() const { return m_nLine; }
    /// Keeps the session's first failure, with the script's name and the line before it.
    void Fail(const std::string& strReason);
    /// "FILE:LINE: reason".
    std::string Describe(int nLine, const std::string& strReason) const;
    bool HasFailed() const { return !m_strFailure.empty(); }
    /// "FILE:LINE: reason", empty for none. An error box that nothing has expected counts.
    std::string GetFailure() const;

    void Show(TShown shown) { m_vShown.push_back(std::move(shown)); }
    /// Everything that opened, in order.
    const std::vector<TShown>& GetShown() const { return m_vShown; }

    /// An error box was shown; the script has to expect it.
    void ShowError(const std::wstring& strText) { m_deqErrors.push_back({m_nLine, strText}); }
    /// True while an error box is not expected yet.
    bool HasErrors() const { return !m_deqErrors.empty(); }
    /// Turns an error box that the script should have expected by now into the failure.
    void FailOnError();
    /// The text that an expectation of a box is about: the oldest error box not yet expected, else the last
    /// box. Null when there was no box.
    const std::wstring* GetBoxText() const;
    /// The oldest error box was expected.
    void AcceptError();

    /// From now on the session only unwinds: questions without an answer get their default.
    void SetClosing() { m_bClosing = true; }
    bool IsClosing() const { return m_bClosing || HasFailed(); }

private:
    struct TError {
        int nLine;
        std::wstring strText;
    };

    std::string m_strName;
    int m_nLine = 0;
    std::string m_strFailure;
    std::vector<TShown> m_vShown;
    std::deque<TError> m_deqErrors;
    bool m_bClosing = false;
};
