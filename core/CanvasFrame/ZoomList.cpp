#include "core/CanvasFrame/ZoomList.h"

#include <algorithm>

namespace {

constexpr TZoomEntry g_aZooms[] = {
    {L"1600%", 768}, {L"1200%", 576}, {L"1000%", 480}, {L"800%", 384}, {L"700%", 336},
    {L"600%", 288},  {L"500%", 240},  {L"400%", 192},  {L"300%", 144}, {L"200%", 96},
    {L"等角", 48},   {L"2/3", 32},    {L"1/2", 24},    {L"1/3", 16},   {L"1/4", 12},
    {L"1/6", 8},     {L"1/8", 6},     {L"1/12", 4},    {L"1/16", 3},
};

} // namespace

std::span<const TZoomEntry> GetZoomList() { return g_aZooms; }

int FindZoomLine(uint16_t uZoom) {
    const auto it = std::find_if(std::begin(g_aZooms), std::end(g_aZooms),
                                 [&](const TZoomEntry& entry) { return entry.uZoom == uZoom; });
    return it == std::end(g_aZooms) ? -1 : static_cast<int>(it - std::begin(g_aZooms));
}

uint16_t StepZoom(uint16_t uZoom, int nStep) {
    const auto nCount = static_cast<int>(std::size(g_aZooms));
    int nLine = 0;
    while (nLine < nCount && g_aZooms[nLine].uZoom > uZoom) ++nLine;
    const int nNew = nStep < 0 || FindZoomLine(uZoom) >= 0 ? nLine + nStep : nLine;
    return nNew >= 0 && nNew < nCount ? g_aZooms[nNew].uZoom : uint16_t{0};
}

std::wstring FormatPercent(uint16_t uZoom) { return std::to_wstring(uZoom * 100 / 48) + L"%"; }
std::wstring FormatScale(uint16_t uZoom) { return L"Scale: " + FormatPercent(uZoom); }
