#include "session/recorder/RecordClipboard.h"

#include "session/recorder/Record.h"

void CRecordClipboard::SetText(const std::wstring& strText) {
    m_clipboard.SetText(strText);
    m_record.KnowClipboard(false);
}

void CRecordClipboard::SetBlock(const TDibBytes& spBlock) {
    m_clipboard.SetBlock(spBlock);
    m_record.KnowClipboard(true);
}

bool CRecordClipboard::SetPicture(IBitmap& bitmap) {
    const bool bSet = m_clipboard.SetPicture(bitmap);
    if (bSet) m_record.KnowClipboard(true);
    return bSet;
}

bool CRecordClipboard::HasPicture() {
    m_record.FollowClipboard();
    return m_clipboard.HasPicture();
}

TLoadedPicture CRecordClipboard::GetPicture() {
    m_record.FollowClipboard();
    return m_clipboard.GetPicture();
}

TDibBytes CRecordClipboard::GetBlock() {
    m_record.FollowClipboard();
    return m_clipboard.GetBlock();
}

void CRecordClipboard::SetStrokes(const TStrokeForms& forms) {
    m_clipboard.SetStrokes(forms);
    m_record.KnowClipboard(true);
}

bool CRecordClipboard::HasStrokes() {
    m_record.FollowClipboard();
    return m_clipboard.HasStrokes();
}

TStrokeBytes CRecordClipboard::GetStrokes() {
    m_record.FollowClipboard();
    return m_clipboard.GetStrokes();
}
