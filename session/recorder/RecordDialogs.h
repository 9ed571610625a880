// Message boxes, file dialogs and dialogs whose answers are recorded.
#pragma once

#include "core/Platform/Dialogs.h"

#include <boost/noncopyable.hpp>

class CRecord;
struct TPlatform;

/// Forwards all calls to the platform and writes the user's answers: the lines "reply" after the line that
/// opened the window, and an expectation for an error box.
class CRecordDialogs : public IMessageBoxes, public IFileDialogs, public IDialogs, boost::noncopyable {
public:
    CRecordDialogs(CRecord& record, const TPlatform& platform) : m_record(record), m_platform(platform) {}

    EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                    EBoxKind kind) override;
    std::wstring Ask(IWindow* pOwner, const TFileDialog& dialog) override;
    bool Run(IWindow* pOwner, CDialogModel& dialog) override;

private:
    CRecord& m_record;
    const TPlatform& m_platform;
};
