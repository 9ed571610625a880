// The last events of a pen, and what can be told of it from them.
#pragma once

#include "core/Platform/Dialogs.h"

#include <deque>
#include <string>

class CPenTrace {
public:
    static constexpr size_t MOST = 200;

    void Add(const TPenReport& report);
    const std::deque<TPenReport>& GetReports() const { return m_deqReports; }
    /// Reports in a second while the pen moved without a pause; 0 while that is not known.
    int GetRate() const;
    /// A session script that creates a document of this size, in pixels, and draws the events in it.
    std::string FormatScript(IPen& pen, CSize szView) const;

private:
    std::deque<TPenReport> m_deqReports;
};
