// The windows that a played session showed, and its first failure.
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
    /// `strName` names the script in failure messages.
    explicit CSessionLog(std::string strName) : m_strName(std::move(strName)) {}

    /// Sets the current line for failure messages.
    void Enter(int nLine) { m_nLine = nLine; }
    int GetLine() const { return m_nLine; }
    /// Stores the session's first failure, prefixed with the script's name and line.
    void Fail(const std::string& strReason);
    /// "FILE:LINE: reason".
    std::string Describe(int nLine, const std::string& strReason) const;
    bool HasFailed() const { return !m_strFailure.empty(); }
    /// "FILE:LINE: reason", empty for none. An unexpected error box counts.
    std::string GetFailure() const;

    void Show(TShown shown) { m_vShown.push_back(std::move(shown)); }
    /// All windows that opened, in order.
    const std::vector<TShown>& GetShown() const { return m_vShown; }

    /// Records an error box, which the script must expect.
    void ShowError(const std::wstring& strText) { m_deqErrors.push_back({m_nLine, strText}); }
    /// True while there is an error box that was not expected yet.
    bool HasErrors() const { return !m_deqErrors.empty(); }
    /// Fails on an error box that the script should have expected by now.
    void FailOnError();
    /// The text that an expectation of a box is compared with: the oldest error box not yet expected, else
    /// the last box. Null when there was no box.
    const std::wstring* GetBoxText() const;
    /// Marks the oldest error box as expected.
    void AcceptError();

    /// From now on the session is closing: questions without an answer get their default.
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
