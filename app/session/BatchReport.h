// What a batch tells of itself: a bar on a terminal, else a line a page.
#pragma once

#include <boost/noncopyable.hpp>

#include <chrono>
#include <cstddef>
#include <string>

class CBatchReport : boost::noncopyable {
public:
    explicit CBatchReport(size_t nPages);

    /// A page has ended; `strReason` says why it failed, empty when it is done.
    void Tell(const std::string& strPage, const std::string& strReason);
    /// Tells the sum. True when all pages are done.
    bool Finish();

private:
    void ShowBar() const;

    const size_t m_nPages;
    const bool m_bTerminal;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    size_t m_nDone = 0;
    size_t m_nFailed = 0;
};
