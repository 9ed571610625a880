#include "app/session/BatchReport.h"

#include "app/common/Console.h"

#include <cstdio>

namespace {

constexpr size_t BAR_WIDTH = 40;
constexpr char CLEAR_LINE[] = "\r\x1b[K";

} // namespace

CBatchReport::CBatchReport(size_t nPages)
    : m_nPages(nPages), m_bBar(CConsole::IsTerminal(stderr)), m_bLines(!CConsole::IsTerminal(stdout)) {
    ShowBar();
}

void CBatchReport::ShowBar() const {
    if (!m_bBar) return;
    const size_t nEnded = m_nDone + m_nFailed;
    const size_t nFull = BAR_WIDTH * nEnded / m_nPages;
    const std::string strBar = std::string(nFull, '#') + std::string(BAR_WIDTH - nFull, '.');
    std::fprintf(stderr, "%s[%s] %zu of %zu", CLEAR_LINE, strBar.c_str(), nEnded, m_nPages);
    if (m_nFailed > 0) std::fprintf(stderr, ", %zu failed", m_nFailed);
    std::fflush(stderr);
}

// The next line on standard output may go to the same terminal.
void CBatchReport::ClearBar() const {
    if (m_bBar) std::fputs(CLEAR_LINE, stderr);
}

void CBatchReport::Tell(const std::string& strPage, const std::string& strReason) {
    ++(strReason.empty() ? m_nDone : m_nFailed);
    if (!strReason.empty() && !m_bLines) ClearBar();
    if (!strReason.empty())
        std::printf("%s: failed: %s\n", strPage.c_str(), strReason.c_str());
    else if (m_bLines)
        std::printf("%s: done\n", strPage.c_str());
    std::fflush(stdout);
    ShowBar();
}

bool CBatchReport::Finish() {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
    if (m_bBar) std::fputc('\n', stderr);
    std::printf("%zu done, %zu failed, ", m_nDone, m_nFailed);
    if (const size_t nLeft = m_nPages - m_nDone - m_nFailed; nLeft > 0) std::printf("%zu not begun, ", nLeft);
    std::printf("%.1f seconds\n", elapsed.count());
    std::fflush(stdout);
    return m_nDone == m_nPages;
}
