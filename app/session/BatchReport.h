// Progress of a batch: a bar on the terminal, and a line a page where standard output is none.
#pragma once

#include <boost/noncopyable.hpp>

#include <chrono>
#include <cstddef>
#include <string>

class CBatchReport : boost::noncopyable {
public:
    explicit CBatchReport(size_t nPages);

    /// Reports the end of a page; `strReason` is the reason of a failure, empty for success.
    void Tell(const std::string& strPage, const std::string& strReason);
    /// Reports the totals. True when all pages succeeded.
    bool Finish();

private:
    void ShowBar() const;
    void ClearBar() const;

    const size_t m_nPages;
    const bool m_bBar;   ///< standard error is a terminal
    const bool m_bLines; ///< standard output is none
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    size_t m_nDone = 0;
    size_t m_nFailed = 0;
};
