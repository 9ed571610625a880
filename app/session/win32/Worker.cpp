#include "app/session/Worker.h"

#include "app/common/win32/SystemText.h"
#include "app/session/win32/CommandText.h"
#include "system/files/FilePath.h"
#include "system/files/win32/FileHandle.h"

#include <condition_variable>
#include <cstdio>
#include <deque>
#include <map>
#include <mutex>
#include <stdexcept>

namespace {

constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD FIRST_EXCEPTION = 0xC0000000;
constexpr DWORD INTERRUPTED = 0xC000013A;

// The ends of processes in their order. The system's threads wait for them, so there may be any number.
class CEnds : boost::noncopyable {
public:
    void Watch(HANDLE hProcess) {
        HANDLE hWait = nullptr;
        if (!RegisterWaitForSingleObject(&hWait, hProcess, &CEnds::OnEnd, hProcess, INFINITE,
                                         WT_EXECUTEONLYONCE))
            throw std::runtime_error("waiting for a page: " + DescribeSystemError(GetLastError()));
        const std::lock_guard lock(m_mutex);
        m_mapWaits[hProcess] = hWait;
    }
    HANDLE Take() {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [&] { return !m_lstEnded.empty(); });
        const HANDLE hProcess = m_lstEnded.front();
        m_lstEnded.pop_front();
        const HANDLE hWait = m_mapWaits.extract(hProcess).mapped();
        lock.unlock();
        UnregisterWaitEx(hWait, INVALID_HANDLE_VALUE);
        return hProcess;
    }

private:
    static void CALLBACK OnEnd(void* pProcess, BOOLEAN);

    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::deque<HANDLE> m_lstEnded;
    std::map<HANDLE, HANDLE> m_mapWaits; ///< by process
} g_Ends;

void CALLBACK CEnds::OnEnd(void* pProcess, BOOLEAN) {
    const std::lock_guard lock(g_Ends.m_mutex);
    g_Ends.m_lstEnded.push_back(pProcess);
    g_Ends.m_ended.notify_one();
}

// A file for a process to be started.
COpenHandle OpenForWorker(const std::filesystem::path& path, DWORD uAccess, DWORD uCreation) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    COpenHandle handle(
        CreateFileW(LongPathOf(path).c_str(), uAccess, SHARED, &inherited, uCreation, 0, nullptr));
    if (!handle.IsOpen()) throw std::runtime_error(Utf8Of(path) + ": " + DescribeSystemError(GetLastError()));
    return handle;
}

// The attribute by which a process inherits these handles and no others.
class CInherited : boost::noncopyable {
public:
    explicit CInherited(std::vector<HANDLE> vHandles) : m_vHandles(std::move(vHandles)) {
        SIZE_T uBytes = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &uBytes);
        m_vBytes.resize(uBytes);
        InitializeProcThreadAttributeList(Get(), 1, 0, &uBytes);
        UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_vHandles.data(),
                                  m_vHandles.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~CInherited() { DeleteProcThreadAttributeList(Get()); }
    LPPROC_THREAD_ATTRIBUTE_LIST Get() {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_vBytes.data());
    }

private:
    std::vector<HANDLE> m_vHandles;
    std::vector<uint8_t> m_vBytes;
};

} // namespace

TProcessId StartWorker(const std::vector<std::string>& vCommand, const std::filesystem::path& pathSaid) {
    const COpenHandle in = OpenForWorker("NUL", GENERIC_READ, OPEN_EXISTING);
    const COpenHandle out = OpenForWorker(pathSaid, FILE_APPEND_DATA | SYNCHRONIZE, OPEN_ALWAYS);
    CInherited inherited({in.Get(), out.Get()});
    STARTUPINFOEXW start{};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = in.Get();
    start.StartupInfo.hStdOutput = start.StartupInfo.hStdError = out.Get();
    start.lpAttributeList = inherited.Get();
    // A worker that crashes must not wait for an answer to a box; it inherits this mode.
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    // In the batch's terminal an interrupt reaches the worker too. Without one the system would open a
    // window.
    const DWORD uConsole = GetConsoleCP() != 0 ? 0 : CREATE_NO_WINDOW;
    std::wstring strCommand = CommandText(vCommand);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(PathOf(vCommand.front()).c_str(), strCommand.data(), nullptr, nullptr, TRUE,
                        EXTENDED_STARTUPINFO_PRESENT | uConsole, nullptr, nullptr, &start.StartupInfo,
                        &process))
        throw std::runtime_error(vCommand.front() + ": " + DescribeSystemError(GetLastError()));
    CloseHandle(process.hThread);
    g_Ends.Watch(process.hProcess);
    return reinterpret_cast<TProcessId>(process.hProcess);
}

TEnded WaitForWorker() {
    const HANDLE hProcess = g_Ends.Take();
    TEnded ended{reinterpret_cast<TProcessId>(hProcess), 0, {}};
    DWORD uCode = 0;
    GetExitCodeProcess(hProcess, &uCode);
    CloseHandle(hProcess);
    ended.nCode = static_cast<int>(uCode);
    if (uCode >= FIRST_EXCEPTION) {
        char szCode[16];
        std::snprintf(szCode, sizeof szCode, "%08lx", uCode);
        ended.strCrashed =
            uCode == INTERRUPTED ? "ended by an interrupt" : std::string("ended by exception ") + szCode;
    }
    return ended;
}
