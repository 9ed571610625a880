#include "session/seam/SessionLog.h"

#include "core/Base/Text.h"

#include <algorithm>

namespace {

std::string ErrorBoxReason(const std::wstring& strText) { return "error box: " + ToUtf8(strText); }

} // namespace

std::string CSessionLog::Describe(int nLine, const std::string& strReason) const {
    return m_strName + ":" + std::to_string(nLine) + ": " + strReason;
}

void CSessionLog::Fail(const std::string& strReason) {
    if (HasFailed()) return;
    // An earlier error box is the cause, the present failure its consequence.
    m_strFailure = m_deqErrors.empty()
                       ? Describe(m_nLine, strReason)
                       : Describe(m_deqErrors.front().nLine, ErrorBoxReason(m_deqErrors.front().strText));
}

std::string CSessionLog::GetFailure() const {
    if (HasFailed() || m_deqErrors.empty()) return m_strFailure;
    return Describe(m_deqErrors.front().nLine, ErrorBoxReason(m_deqErrors.front().strText));
}

void CSessionLog::FailOnError() {
    if (!m_deqErrors.empty()) Fail({});
}

const std::wstring* CSessionLog::GetBoxText() const {
    if (!m_deqErrors.empty()) return &m_deqErrors.front().strText;
    const auto it = std::find_if(m_vShown.rbegin(), m_vShown.rend(),
                                 [](const TShown& shown) { return shown.kind == TShown::EKind::Box; });
    return it == m_vShown.rend() ? nullptr : &it->strText;
}

void CSessionLog::AcceptError() {
    if (!m_deqErrors.empty()) m_deqErrors.pop_front();
}
