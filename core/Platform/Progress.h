// Long work: how far it has come, the window that shows it, and that the user may cancel it.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <string>

class IClock;
class IWindow;
struct TPlatform;

/// Hears how far long work has come. Only the session's thread calls it. Both functions raise cancelled_error
/// when the user has cancelled the work.
class IProgress {
public:
    virtual ~IProgress() = default;
    /// A part of the work begins: a short text for the user and the number of its steps, 0 when it is
    /// unknown.
    virtual void Begin(const wchar_t* pszText, uint64_t uSteps) = 0;
    /// So many steps more are done.
    virtual void Advance(uint64_t uSteps = 1) = 0;
};

/// For work that nobody watches: does nothing.
IProgress& NoProgress();

/// Long work as a whole.
struct TLongWork {
    IWindow* pOwner = nullptr; ///< the window that it is done for; may be null
    std::wstring strTitle = {};
    bool bCancel = false; ///< nothing is lost when the user cancels it
};

/// The present part of long work.
struct TProgressState {
    static constexpr int UNKNOWN = -1;
    std::wstring strText = {};
    int nPermille = UNKNOWN; ///< 0 to 1000 of its steps
};

/// The window of the work that is being done; only one at a time. No function throws. Until End no message is
/// delivered to the application and no canvas is painted.
class IProgressWindow {
public:
    virtual ~IProgressWindow() = default;
    /// Work begins; nothing is shown yet. False when it is to be cancelled at once, as a script can require.
    virtual bool Begin(const TLongWork& work) = 0;
    /// Shows the window or brings it up to date, and handles its events. False when the user has cancelled.
    virtual bool Show(const TProgressState& state) = 0;
    virtual void End() = 0;
};

/// Work that the user watches: its window opens when it takes longer than a second.
class CLongWork : public IProgress, boost::noncopyable {
public:
    CLongWork(const TPlatform& platform, const TLongWork& work);
    ~CLongWork() override;

    void Begin(const wchar_t* pszText, uint64_t uSteps) override;
    void Advance(uint64_t uSteps = 1) override;

private:
    void Tell();

    IProgressWindow& m_window;
    IClock& m_clock;
    uint32_t m_uToldTick; ///< when the work began or the window was last brought up to date
    bool m_bShown = false;
    bool m_bCancelled;
    const wchar_t* m_pszText = L"";
    uint64_t m_uSteps = 0;
    uint64_t m_uDone = 0;
};
