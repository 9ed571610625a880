// A thread for work that must not block the session.
#pragma once

#include <boost/noncopyable.hpp>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// Runs jobs one after the other in the order in which they were added. The first job starts the thread;
/// the destructor waits until the last one has finished.
class CWorker : boost::noncopyable {
public:
    ~CWorker();
    /// `fnJob` runs on the thread and must not throw. If no thread can be started it runs at once.
    void Add(std::function<void()> fnJob);
    /// True until every job has finished.
    bool IsBusy();

private:
    void Run();

    std::mutex m_mtx;
    std::condition_variable m_cond;
    std::deque<std::function<void()>> m_deqJobs; ///< the first one is running
    bool m_bEnd = false;
    std::thread m_thread;
};
