#include "system/files/Worker.h"

#include "system/files/QuietThread.h"

#include <system_error>

CWorker::~CWorker() {
    {
        const std::lock_guard lock(m_mtx);
        m_bEnd = true;
    }
    m_cond.notify_one();
    if (m_thread.joinable()) m_thread.join();
}

void CWorker::Add(std::function<void()> fnJob) {
    if (!m_thread.joinable()) {
        try {
            m_thread = StartQuietThread([this] { Run(); });
        } catch (const std::system_error&) {
        }
        if (!m_thread.joinable()) return fnJob();
    }
    {
        const std::lock_guard lock(m_mtx);
        m_deqJobs.push_back(std::move(fnJob));
    }
    m_cond.notify_one();
}

bool CWorker::IsBusy() {
    const std::lock_guard lock(m_mtx);
    return !m_deqJobs.empty();
}

void CWorker::Run() {
    std::unique_lock lock(m_mtx);
    for (;;) {
        m_cond.wait(lock, [this] { return m_bEnd || !m_deqJobs.empty(); });
        if (m_deqJobs.empty()) return;
        // The job stays in the queue while it runs; new jobs are appended after it.
        std::function<void()>& fnJob = m_deqJobs.front();
        lock.unlock();
        fnJob();
        fnJob = nullptr; // freeing what it held may take long
        lock.lock();
        m_deqJobs.pop_front();
    }
}
