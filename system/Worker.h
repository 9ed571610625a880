// A thread for work that must not hold up the session.
#pragma once

#include <boost/noncopyable.hpp>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// Does jobs one after the other in the order of their coming. The thread is made with the first job; the
/// destructor waits until the last one is done.
class CWorker : boost::noncopyable {
public:
    ~CWorker();
    /// `fnJob` runs on the thread and must not throw. Without a thread it runs at once.
    void Add(std::function<void()> fnJob);
    /// True until every job is done.
    bool IsBusy();

private:
    void Run();

    std::mutex m_mtx;
    std::condition_variable m_cond;
    std::deque<std::function<void()>> m_deqJobs; ///< the first one is at work
    bool m_bEnd = false;
    std::thread m_thread;
};
