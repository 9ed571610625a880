#include "session/SessionDialogs.h"

#include "core/Base/Text.h"

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
        if (!Fill(dialog, *answer)) return false;
        if (answer->bExtra) dialog.OnExtra();
        if (dialog.OnOk(pOwner)) return true;
        strWhat =
            strName + " refused the answer of line " + std::to_string(answer->nLine) + " and stays open";
    }
}

bool CSessionDialogs::Fill(CDialogModel& dialog, const TAnswer& answer) {
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
        const auto it = std::find_if(dialog.m_vFields.begin(), dialog.m_vFields.end(),
                                     [&](const TDialogField& field) { return field.strName == strField; });
        const bool* pChecked = std::get_if<bool>(&value);
        const auto kind = pChecked ? TDialogField::EKind::Check : TDialogField::EKind::Integer;
        if (it == dialog.m_vFields.end() || it->kind != kind) {
            Fail(strName + " has no such field as \"" + strField + "\" in " + strAnswer);
            return false;
        }
        if (pChecked)
            it->bChecked = *pChecked;
        else
            it->strText = std::get<std::wstring>(value);
    }
    return true;
}
