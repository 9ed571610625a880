// Progress of a batch: a bar on a terminal, else a line per page.
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

    const size_t m_nPages;
    const bool m_bTerminal;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    size_t m_nDone = 0;
    size_t m_nFailed = 0;
};
