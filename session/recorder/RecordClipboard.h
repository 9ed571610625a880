// A clipboard whose pictures are recorded.
#pragma once

#include "core/Platform/System.h"

#include <boost/noncopyable.hpp>

class CRecord;

/// Forwards all calls, and notifies the record of what the application copies. A picture of another program
/// is recorded before the application receives it.
class CRecordClipboard : public IClipboard, boost::noncopyable {
public:
    CRecordClipboard(CRecord& record, IClipboard& clipboard) : m_record(record), m_clipboard(clipboard) {}

    void SetText(const std::wstring& strText) override;
    void SetBlock(const TDibBytes& spBlock) override;
    bool SetPicture(IBitmap& bitmap) override;
    bool HasPicture() override;
    TLoadedPicture GetPicture() override;
    TDibBytes GetBlock() override;
    void SetStrokes(const TStrokeForms& forms) override;
    bool HasStrokes() override;
    TStrokeBytes GetStrokes() override;
    uint32_t GetChangeCount() override { return m_clipboard.GetChangeCount(); }

private:
    CRecord& m_record;
    IClipboard& m_clipboard;
};
