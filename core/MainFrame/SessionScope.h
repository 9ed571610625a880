// Setup and teardown of a session: the platform, the codecs, the thread's message loop.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/Platform/Platform.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>

/// One session of the calling thread, from the first setup to the last teardown. Only one runs at a time.
class CSessionScope : boost::noncopyable {
public:
    /// Sets the platform, starts the codecs, registers a message loop. Raises bad_alloc, after which
    /// another session can start.
    explicit CSessionScope(const TPlatform& platform);
    /// Destroys windows that an exception left open, releases the frames, removes the loop, shuts the
    /// codecs down, clears the platform. Remaining references to the canvas or a frame may be released
    /// later.
    ~CSessionScope();

    /// Runs the message loop until the session ends.
    void Run();
    /// Marks a session that failed to start: the codecs stay started and the loop stays registered until
    /// the next session replaces it.
    void Abandon() { m_bAbandoned = true; }

private:
    // Clears the platform in every case, also when the session failed to start.
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
