#include "core/ConfigDialog/PenPage.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Failure.h"
#include "core/Platform/Files.h"
#include "core/Platform/Platform.h"
#include "core/Platform/System.h"

#include <algorithm>

namespace {

enum EField : int {
    FIELD_PAGE,
    FIELD_DEVICE,
    FIELD_LAST,
    FIELD_TRACE,
    FIELD_SAVE,
    FIELD_FIT,
    FIELD_END,
    FIELD_STATUS,
    FIELD_HISTOGRAM,
    FIELD_TAKE,
};

constexpr uint32_t COLLECT_MS = 10000;
constexpr uint32_t MOUSE_ECHO_MS = 1000; ///< some drivers move the mouse beside the pen
constexpr wchar_t HINT[] = L"ボタンを押してから 10 秒間、ふだんの強さで描きます。";

std::wstring Degrees(int32_t nTenths) { return std::to_wstring((std::abs(nTenths) + 5) / 10) + L"°"; }

} // namespace

CPenPage::CPenPage(const TConfigOutside& outside)
    : CConfigPage(outside), m_range(outside.platform.pen.GetPressureAxis()), m_fitted(outside.curve),
      m_shown(outside.curve), m_strStatus(HINT), m_viewTrace(m_trace, outside.platform.pen, m_shown) {}

std::vector<TPanelControl> CPenPage::MakeControls() {
    using enum TPanelControl::EKind;
    return {{.kind = Page, .nId = FIELD_PAGE, .strText = L"ペン", .strName = "Page_EnvPen"},
            {.kind = Label, .nId = FIELD_DEVICE},
            {.kind = Label, .nId = FIELD_LAST},
            {.kind = View, .nId = FIELD_TRACE, .bPen = true, .szView = {420, 170}, .pView = &m_viewTrace},
            {.kind = Button, .nId = FIELD_SAVE, .strText = L"記録として保存..."},
            {.kind = Button, .nId = FIELD_FIT, .strText = L"筆圧を手に合わせる"},
            {.kind = Button, .nId = FIELD_END, .strText = L"ここまでで合わせる", .bSameLine = true},
            {.kind = Label, .nId = FIELD_STATUS},
            {.kind = View, .nId = FIELD_HISTOGRAM, .szView = {420, 90}, .pView = &m_viewHistogram},
            {.kind = Check,
             .nId = FIELD_TAKE,
             .strText = L"合わせた曲線を使う",
             .nValue = m_shown != TPenCurve(),
             .strName = "penCurve"}};
}

std::wstring CPenPage::DescribeDevice() const {
    IPen& pen = GetOutside().platform.pen;
    if (!pen.IsPresent()) return L"ペンタブレットはありません。";
    const TPenDevice device = pen.GetDevice();
    if (device.strName.empty()) return FormatText(L"ペンはまだ見つかっていません（%1%）。", device.strSystem);
    std::wstring strAxes;
    for (const auto& [bHas, pszName] : {std::pair(device.bPressure, L"筆圧"),
                                        std::pair(device.bTilt, L"傾き"), std::pair(device.bTwist, L"回転")})
        if (bHas) strAxes += (strAxes.empty() ? L"" : L"・") + std::wstring(pszName);
    return FormatText(L"%1%（%2%）　%3%", {device.strName, device.strSystem, strAxes});
}

std::wstring CPenPage::DescribeLast() const {
    if (m_trace.GetReports().empty()) return L"下の枠にペンで描くと、ペンの知らせる値が出ます。";
    const TPenPacket& packet = m_trace.GetReports().back().packet;
    const int nRate = m_trace.GetRate();
    return FormatText(
        L"筆圧 %1%　傾き %2%　向き %3%　回転 %4%　毎秒 %5% 回",
        {std::to_wstring(uint64_t{m_range.Above(packet.uPressure)} * 100 / m_range.GetRange()) + L"%",
         Degrees(packet.nAltitude), Degrees(packet.nAzimuth), Degrees(packet.nTwist),
         nRate > 0 ? std::to_wstring(nRate) : std::wstring(L"-")});
}

void CPenPage::Show() {
    const bool bOffers = m_fitted != TPenCurve();
    Find(FIELD_TAKE).bEnabled = bOffers;
    if (!bOffers) Find(FIELD_TAKE).nValue = 0;
    m_shown = Find(FIELD_TAKE).nValue ? m_fitted : TPenCurve();
    Find(FIELD_DEVICE).strText = DescribeDevice();
    Find(FIELD_LAST).strText = DescribeLast();
    Find(FIELD_STATUS).strText = m_strStatus;
    Find(FIELD_SAVE).bEnabled = !m_trace.GetReports().empty();
    Find(FIELD_END).bEnabled = m_bCollecting && m_histogram.GetCount() > 0;
}

void CPenPage::OnControl(TPanelControl& control) {
    switch (control.nId % IDS) {
    case FIELD_SAVE:
        SaveTrace();
        break;
    case FIELD_FIT:
        Begin();
        break;
    case FIELD_END:
        if (m_bCollecting) End();
        break;
    default:
        break;
    }
    Show();
}

void CPenPage::OnPointer(EMessage id, CPoint pt) {
    IPen& pen = GetOutside().platform.pen;
    TPenReport report;
    report.uTime = GetOutside().platform.clock.GetTickCount();
    if (m_uPenTick && report.uTime - *m_uPenTick < MOUSE_ECHO_MS) return;
    report.packet.x = pt.x * pen.GetUnitsPerPixel();
    report.packet.y = pt.y * pen.GetUnitsPerPixel();
    report.packet.uCursor = 1;
    report.packet.nAltitude = pen.GetAltitudeAxis().nMax;
    const TPenAxis axis = pen.GetPressureAxis();
    report.packet.uPressure = static_cast<uint32_t>(id == EMessage::LButtonUp ? axis.nMin : axis.nMax);
    m_trace.Add(report);
    Show();
}

void CPenPage::OnPen(const TPenReport& report) {
    m_uPenTick = GetOutside().platform.clock.GetTickCount();
    m_trace.Add(report);
    if (m_bCollecting) Collect(report);
    Show();
}

void CPenPage::Begin() {
    m_histogram = {};
    m_bCollecting = true;
    m_strStatus = L"上の枠に、弱い線から強い線まで 10 秒間描いてください。";
}

void CPenPage::Collect(const TPenReport& report) {
    const uint32_t uPressure = m_range.Above(report.packet.uPressure);
    if (m_histogram.GetCount() == 0) m_uStart = report.uTime;
    // The reports' own times: a session that is played must end at the same report.
    const uint32_t uPassed = report.uTime - m_uStart;
    if (m_histogram.GetCount() > 0 && uPassed >= COLLECT_MS) return End();
    if (uPressure > 0) m_histogram.Add(uPressure, m_range.GetRange());
    if (m_histogram.GetCount() > 0)
        m_strStatus =
            FormatText(L"描いてください。あと %1% 秒", std::to_wstring((COLLECT_MS - uPassed + 999) / 1000));
}

void CPenPage::End() {
    m_bCollecting = false;
    const auto curve = m_histogram.Fit();
    m_strStatus = curve ? L"合わせました。線を描いて確かめ、使うかどうかを選んでください。"
                        : L"合わせられませんでした。弱い線と強い線を、もう少し長く描いてください。";
    if (!curve) return;
    m_fitted = *curve;
    Find(FIELD_TAKE).nValue = 1;
}

void CPenPage::SaveTrace() {
    const TPlatform& platform = GetOutside().platform;
    const std::wstring strPath = platform.fileDialogs.Ask(
        GetOutside().pOwner, {true, L"pen.jsonl", L"jsonl", {{L"セッションの記録 (*.jsonl)", L"*.jsonl"}}});
    if (strPath.empty()) return;
    const std::string strScript = m_trace.FormatScript(platform.pen, m_viewTrace.GetSize());
    if (const auto outcome = platform.files.Replace(strPath, strScript); !outcome)
        ReportFileFailure(L"記録を保存できませんでした。", strPath, outcome.GetFailure());
}

void CPenPage::Apply() {
    if (m_shown == GetOutside().curve) return;
    GetOutside().curve = m_shown;
    m_shown.Write(GetOutside().settings);
}
