// What stands around a session, whoever began it: the platform on loan, the codecs, the thread's message
// loop.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/Platform/Platform.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>

/// One session of the calling thread, from the first set-up to the last tear-down. Only one runs at a time.
class CSessionScope : boost::noncopyable {
public:
    /// Lends the platform to the application, starts the codecs, registers a message loop. Raises bad_alloc;
    /// another session can begin then.
    explicit CSessionScope(const TPlatform& platform);
    /// Destroys windows that an exception left open, lets go of the frames, removes the loop, shuts the
    /// codecs down, takes the platform back. Whoever still holds the canvas or a frame may release it after
    /// this.
    ~CSessionScope();

    /// Runs the message loop to the session's end.
    void Run();
    /// The session never began: the codecs stay started and the table keeps its entry, which the next session
    /// replaces.
    void Abandon() { m_bAbandoned = true; }

private:
    // Gives the platform back however the session ends, also when it never began.
    struct CLoan : boost::noncopyable {
        explicit CLoan(const TPlatform& platform);
        ~CLoan();
    };

    const TPlatform& m_platform;
    boost::shared_ptr<CMessageLoop> m_spLoop;
    const CLoan m_loan;
    uintptr_t m_uCodecs;
    bool m_bAbandoned = false;
};
