#include "session/seam/SessionDialogs.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Text.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <algorithm>

namespace {

const char* NameOf(TAnswer::EKind kind) {
    switch (kind) {
    case TAnswer::EKind::Box:
        return "a box";
    case TAnswer::EKind::File:
        return "a file dialog";
    case TAnswer::EKind::Dialog:
        return "a dialog";
    default:
        return "anything";
    }
}

bool Offers(EBoxKind kind, EBoxAnswer answer) {
    return (kind == EBoxKind::YesNoCancelWarning) == (answer != EBoxAnswer::Ok);
}

// None when the control has no such value.
std::optional<TMessage> Change(const TPanelControl& control, const TAnswer::TValue& value) {
    using enum TPanelControl::EKind;
    TMessage msg{nullptr, EMessage::PanelChange, control.nId, 0, {}};
    const bool* pChecked = std::get_if<bool>(&value);
    switch (control.kind) {
    case Check:
    case Radio:
    case Toggle:
        if (pChecked) msg.lParam = *pChecked;
        return pChecked ? std::optional(msg) : std::nullopt;
    case Text:
    case Number:
        if (!pChecked) msg.strText = std::get<std::wstring>(value);
        return pChecked ? std::nullopt : std::optional(msg);
    case Combo:
    case Slider:
    case List:
    case Tree:
    case Key: {
        int nValue = 0;
        if (pChecked != nullptr ||
            !boost::conversion::try_lexical_convert(std::get<std::wstring>(value), nValue))
            return std::nullopt;
        msg.lParam = nValue;
        return msg;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

void CSessionDialogs::Fail(const std::string& strReason) {
    m_log.Fail(strReason);
    m_deqAnswers.clear();
}

std::optional<TAnswer> CSessionDialogs::Take(TAnswer::EKind kind, const std::string& strWhat) {
    if (m_deqAnswers.empty() && m_fnReply && !m_log.IsClosing()) m_fnReply();
    const bool bFits = !m_deqAnswers.empty() && (m_deqAnswers.front().kind == kind ||
                                                 m_deqAnswers.front().kind == TAnswer::EKind::Cancel);
    if (bFits) {
        const TAnswer answer = m_deqAnswers.front();
        m_deqAnswers.pop_front();
        return answer;
    }
    if (m_log.IsClosing()) return std::nullopt;
    if (m_deqAnswers.empty())
        Fail(strWhat + ", but no answer was queued");
    else
        Fail(strWhat + ", but the answer of line " + std::to_string(m_deqAnswers.front().nLine) + " is for " +
             NameOf(m_deqAnswers.front().kind));
    return std::nullopt;
}

EBoxAnswer CSessionDialogs::Show(IWindow*, const std::wstring& strText, const std::wstring& strTitle,
                                 EBoxKind kind) {
    m_log.Show({TShown::EKind::Box, strTitle, strText});
    if (kind == EBoxKind::Error) {
        m_log.ShowError(strText);
        return EBoxAnswer::Ok;
    }
    const bool bQuestion = kind == EBoxKind::YesNoCancelWarning;
    const EBoxAnswer cancel = bQuestion ? EBoxAnswer::Cancel : EBoxAnswer::Ok;
    const bool bClosing = m_log.IsClosing();
    const auto answer = Take(TAnswer::EKind::Box, "the box \"" + ToUtf8(strText) + "\" opened");
    if (!answer) return bClosing && bQuestion ? EBoxAnswer::No : cancel;
    if (answer->kind == TAnswer::EKind::Cancel) return cancel;
    if (Offers(kind, answer->box)) return answer->box;
    Fail("the box \"" + ToUtf8(strText) + "\" does not offer the answer of line " +
         std::to_string(answer->nLine));
    return cancel;
}

std::wstring CSessionDialogs::Ask(IWindow*, const TFileDialog& dialog) {
    m_log.Show({TShown::EKind::FileDialog, {}, dialog.strName});
    const auto answer =
        Take(TAnswer::EKind::File, dialog.bSave ? "a save dialog opened" : "an open dialog opened");
    if (!answer || answer->kind == TAnswer::EKind::Cancel) return {};
    const bool bBare = ExtensionOf(answer->strPath).empty() && !dialog.strDefaultExtension.empty();
    return bBare ? answer->strPath + L'.' + dialog.strDefaultExtension : answer->strPath;
}

bool CSessionDialogs::Run(IWindow* pOwner, CDialogModel& dialog) {
    const std::string strName = dialog.GetName();
    m_log.Show({TShown::EKind::Dialog, FromUtf8(strName), dialog.GetTitle()});
    std::string strWhat = strName + " opened";
    for (;;) {
        const auto answer = Take(TAnswer::EKind::Dialog, strWhat);
        if (!answer || answer->kind == TAnswer::EKind::Cancel) return false;
        bool bTaken = true;
        if (!(answer->act ? Act(dialog, *answer) : Fill(dialog, *answer, bTaken))) return false;
        if (answer->act) {
            strWhat = strName + " stays open behind line " + std::to_string(answer->nLine);
            continue;
        }
        if (bTaken && answer->bExtra) dialog.OnExtra();
        if (bTaken && dialog.OnOk(pOwner)) return true;
        strWhat =
            strName + " refused the answer of line " + std::to_string(answer->nLine) + " and stays open";
    }
}

bool CSessionDialogs::Fill(CDialogModel& dialog, const TAnswer& answer, bool& bTaken) {
    const std::string strAnswer = "the answer of line " + std::to_string(answer.nLine);
    const std::string strName = dialog.GetName();
    if (answer.strDialog != strName) {
        Fail(strName + " opened, but " + strAnswer + " is for " + answer.strDialog);
        return false;
    }
    if (answer.bExtra && dialog.GetExtraButton().empty()) {
        Fail(strName + " has no extra button for " + strAnswer);
        return false;
    }
    for (const auto& [strField, value] : answer.mapFields) {
        const auto it = std::ranges::find(dialog.m_vControls, strField, &TPanelControl::strName);
        std::optional<TMessage> msg;
        if (it != dialog.m_vControls.end()) msg = Change(*it, value);
        if (!msg) {
            Fail(strName + " has no such field as \"" + strField + "\" in " + strAnswer);
            return false;
        }
        bTaken = Guarded([&] { dialog.OnControlMessage(*msg); }) && bTaken;
    }
    return true;
}

bool CSessionDialogs::Act(CDialogModel& dialog, const TAnswer& answer) {
    const std::string strName = dialog.GetName();
    const TControlAct& act = *answer.act;
    const int nView = PackedView(act.wParam);
    const int nId = nView ? nView : static_cast<int>(act.wParam);
    const bool bKnown =
        std::ranges::find(dialog.m_vControls, nId, &TPanelControl::nId) != dialog.m_vControls.end();
    if (answer.strDialog != strName || !bKnown) {
        Fail(strName + " is open, but line " + std::to_string(answer.nLine) + " is for control " +
             std::to_string(nId) + " of " + answer.strDialog);
        return false;
    }
    if (act.szView.cx > 0) PaintView(dialog.m_vControls, nView, act.szView);
    Guarded([&] {
        if (act.report)
            dialog.OnPen(nView, *act.report);
        else
            dialog.OnControlMessage(act.ToMessage(nullptr));
    });
    return true;
}
