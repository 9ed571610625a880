// A clipboard whose pictures are recorded.
#pragma once

#include "core/Platform/System.h"

#include <boost/noncopyable.hpp>

class CRecord;

/// Hands everything on, and tells the record what the application itself puts there. A picture of another
/// program stands in the record before the application learns of it.
class CRecordClipboard : public IClipboard, boost::noncopyable {
public:
    CRecordClipboard(CRecord& record, IClipboard& clipboard) : m_record(record), m_clipboard(clipboard) {}

    void SetText(const std::wstring& strText) override;
    bool SetPicture(IBitmap& bitmap) override;
    bool HasPicture() override;
    boost::shared_ptr<IBitmap> GetPicture() override;
    uint32_t GetChangeCount() override { return m_clipboard.GetChangeCount(); }

private:
    CRecord& m_record;
    IClipboard& m_clipboard;
};
