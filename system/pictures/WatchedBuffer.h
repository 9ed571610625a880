// Bytes in memory for Qt's codecs, with their progress reported.
#pragma once

#include <QBuffer>
#include <QIODevice>

class IProgress;

/// Not a QBuffer itself, since a codec takes the bytes of one without reading them. After the user has
/// cancelled nothing more can be read and writing fails, which ends the codec: exceptions must not pass
/// through it.
class CWatchedBuffer : public QIODevice {
public:
    /// Reads and writes `bytes`, open already. Steps of `progress` are the bytes passed for the first time.
    CWatchedBuffer(QByteArray& bytes, IProgress& progress);

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_buffer.size(); }
    bool seek(qint64 nPos) override { return QIODevice::seek(nPos) && m_buffer.seek(nPos); }
    /// Raises cancelled_error when the user has cancelled.
    void RaiseCancel() const;

protected:
    qint64 readData(char* pTo, qint64 nMax) override;
    qint64 writeData(const char* pFrom, qint64 nLength) override;

private:
    bool Tell();

    QBuffer m_buffer;
    IProgress& m_progress;
    qint64 m_nPassed = 0;
    bool m_bCancelled = false;
};
