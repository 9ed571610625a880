// Long work in a recorded session: that the user cancelled it is written.
#pragma once

#include "core/Platform/Progress.h"

#include <boost/noncopyable.hpp>

class CRecord;

/// Forwards all calls to the platform and writes the line "cancel-work" after the line that began the work.
class CRecordProgress : public IProgressWindow, boost::noncopyable {
public:
    CRecordProgress(CRecord& record, IProgressWindow& window) : m_record(record), m_window(window) {}

    bool Begin(const TLongWork& work) override { return Note(m_window.Begin(work)); }
    bool Show(const TProgressState& state) override { return Note(m_window.Show(state)); }
    void End() override { m_window.End(); }

private:
    bool Note(bool bGoesOn);

    CRecord& m_record;
    IProgressWindow& m_window;
};
