// Message boxes, file dialogs and dialogs that are answered from a queue.
#pragma once

#include "core/Platform/Dialogs.h"
#include "session/seam/ControlAct.h"
#include "session/seam/SessionLog.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <variant>

/// One queued answer to the next modal window.
struct TAnswer {
    enum class EKind { Box, File, Dialog, Cancel };
    using TValue = std::variant<bool, std::wstring>; ///< a check, or the text or number of another control

    EKind kind = EKind::Cancel;
    EBoxAnswer box = EBoxAnswer::Cancel;
    std::wstring strPath = {};
    std::string strDialog = {}; ///< class name
    std::map<std::string, TValue> mapFields = {};
    std::optional<TControlAct> act = {}; ///< in place of fields and OK
    bool bExtra = false;                 ///< the dialog's extra button is pressed before OK
    int nLine = 0;                       ///< where the script has it
};

/// Answers are taken in the order in which they were queued, for any kind of window; when the queue is
/// empty, a reply is requested. A window without an answer, or with one for another kind, is a failure and
/// is cancelled; once the session closes, boxes are answered No or OK and other windows are cancelled.
/// Error boxes need no answer: the script must expect them.
class CSessionDialogs : public IMessageBoxes, public IFileDialogs, public IDialogs, boost::noncopyable {
public:
    explicit CSessionDialogs(CSessionLog& log) : m_log(log) {}

    /// `fnReply` queues the reply that follows the current line; false when there is none.
    void SetReply(boost::function<bool()> fnReply) { m_fnReply = std::move(fnReply); }
    void Push(const TAnswer& answer) { m_deqAnswers.push_back(answer); }
    /// Queues an answer before all others.
    void PushFirst(const TAnswer& answer) { m_deqAnswers.push_front(answer); }
    size_t GetCount() const { return m_deqAnswers.size(); }
    void Clear() { m_deqAnswers.clear(); }

    EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                    EBoxKind kind) override;
    std::wstring Ask(IWindow* pOwner, const TFileDialog& dialog) override;
    /// A model that refuses its answer, and one of which only a control was changed, takes the next answer
    /// for it; when there is none, it is cancelled.
    bool Run(IWindow* pOwner, CDialogModel& dialog) override;

private:
    std::optional<TAnswer> Take(TAnswer::EKind kind, const std::string& strWhat);
    void Fail(const std::string& strReason);
    // False when the script is wrong; `bTaken` becomes false when the dialog failed to take a field.
    bool Fill(CDialogModel& dialog, const TAnswer& answer, bool& bTaken);
    bool Act(CDialogModel& dialog, const TAnswer& answer);

    CSessionLog& m_log;
    std::deque<TAnswer> m_deqAnswers;
    boost::function<bool()> m_fnReply;
};
