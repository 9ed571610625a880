// The clipboard of a played session.
#pragma once

#include "core/Platform/System.h"

/// A private clipboard of the session. Nobody in it reads text.
class CSessionClipboard : public IClipboard {
public:
    void SetText(const std::wstring& strText) override;
    void SetBlock(const TDibBytes& spBlock) override;
    bool SetPicture(IBitmap& bitmap) override;
    bool HasPicture() override { return m_spBlock || m_spPicture; }
    TLoadedPicture GetPicture() override;
    TDibBytes GetBlock() override;
    void SetStrokes(const TStrokeForms& forms) override;
    bool HasStrokes() override { return m_forms.spStrokes != nullptr; }
    TStrokeBytes GetStrokes() override { return m_forms.spStrokes; }
    uint32_t GetChangeCount() override { return m_uChanges; }

private:
    // The clipboard holds a picture in one form, or strokes with their block.
    TDibBytes m_spBlock;
    boost::shared_ptr<IBitmap> m_spPicture;
    TStrokeForms m_forms;
    uint32_t m_uChanges = 0;
};
