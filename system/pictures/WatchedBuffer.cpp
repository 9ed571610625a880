#include "system/pictures/WatchedBuffer.h"

#include "core/Base/Failure.h"
#include "core/Platform/Progress.h"

CWatchedBuffer::CWatchedBuffer(QByteArray& bytes, IProgress& progress)
    : m_buffer(&bytes), m_progress(progress) {
    m_buffer.open(ReadWrite | Unbuffered);
    open(ReadWrite | Unbuffered);
}

void CWatchedBuffer::RaiseCancel() const {
    if (m_bCancelled) throw cancelled_error();
}

bool CWatchedBuffer::Tell() {
    const qint64 nPos = m_buffer.pos();
    if (m_bCancelled || nPos <= m_nPassed) return !m_bCancelled;
    try {
        m_progress.Advance(static_cast<uint64_t>(nPos - m_nPassed));
    } catch (const cancelled_error&) {
        m_bCancelled = true;
    }
    m_nPassed = nPos;
    return !m_bCancelled;
}

qint64 CWatchedBuffer::readData(char* pTo, qint64 nMax) {
    const qint64 nRead = m_buffer.read(pTo, nMax);
    // As at the end of the bytes: libtiff would add the -1 of a failure to its place in memory.
    return Tell() ? nRead : 0;
}

qint64 CWatchedBuffer::writeData(const char* pFrom, qint64 nLength) {
    const qint64 nWritten = m_buffer.write(pFrom, nLength);
    return Tell() ? nWritten : -1;
}
