#include "core/ImageFile/PsdFile.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/PsdBytes.h"
#include "core/ImageFile/PsdPixels.h"
#include "core/ImageFile/PsdRecords.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/Files.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int32_t MAX_PSD_SIDE = 30000;
constexpr size_t MAX_PSD_RECORDS = std::numeric_limits<int16_t>::max();
constexpr size_t MAX_PASCAL = 255;
constexpr size_t CHANNEL_ENTRY = 6; ///< bytes of a channel's id and length

// Constants of the format.
constexpr uint16_t DEPTH = 8;
constexpr uint16_t COLORMODE_RGB = 3;
constexpr uint16_t COMPRESSION_NONE = 0;
constexpr uint8_t FLAG_HIDDEN = 2;
constexpr uint32_t SECTION_OPEN_FOLDER = 1;
constexpr uint32_t SECTION_BOUNDING = 3;

bool HasPixels(const TPsdRecord& record) {
    return record.kind == EPsdRecord::Content || record.kind == EPsdRecord::Picture;
}

void WriteHeader(CPsdBytes& file, CSize sz) {
    file.WriteText("8BPS");
    file.WriteInt16(1);
    file.Extend(6, 0);
    file.WriteInt16(3); // channels of the flattened picture
    file.WriteInt32(static_cast<uint32_t>(sz.cy));
    file.WriteInt32(static_cast<uint32_t>(sz.cx));
    file.WriteInt16(DEPTH);
    file.WriteInt16(COLORMODE_RGB);
    file.WriteInt32(0); // colour mode data
    file.WriteInt32(0); // image resources
}

void WriteExtra(CPsdBytes& file, const TPsdRecord& record, IImageCodecs& codecs) {
    const std::wstring strName =
        record.kind == EPsdRecord::GroupEnd ? L"</Layer group>" : record.pLayer->GetName();
    const size_t nExtra = file.BeginLength();
    file.WriteInt32(0); // mask
    file.WriteInt32(0); // blending ranges
    file.WritePascal(codecs.EncodeCodePage932(strName, MAX_PASCAL));
    file.WriteText("8BIMluni");
    const size_t nUnicode = file.BeginLength();
    CSerializer text;
    text.WriteString(strName);
    file.WriteText({reinterpret_cast<const char*>(text.GetPayload().data()), text.GetPayload().size()});
    file.EndLength(nUnicode, 4);
    if (!HasPixels(record)) {
        file.WriteText("8BIMlsct");
        const size_t nSection = file.BeginLength();
        file.WriteInt32(record.kind == EPsdRecord::GroupEnd ? SECTION_BOUNDING : SECTION_OPEN_FOLDER);
        file.WriteText("8BIMpass"); // children paint directly onto what lies under the group
        file.EndLength(nSection);
    }
    file.EndLength(nExtra);
}

// Rows of pixels in all records.
uint64_t CountPsdRows(const std::vector<TPsdRecord>& vRecords) {
    uint64_t uRows = 0;
    for (const TPsdRecord& record : vRecords)
        if (HasPixels(record)) uRows += static_cast<uint64_t>(record.pLayer->GetSize().cy);
    return uRows;
}

// Returns the offset of the record's channel entries, whose lengths are still 0.
size_t WriteRecord(CPsdBytes& file, const TPsdRecord& record, IImageCodecs& codecs) {
    const CSize sz = HasPixels(record) ? record.pLayer->GetSize() : CSize{};
    file.WriteInt32(0);
    file.WriteInt32(0);
    file.WriteInt32(static_cast<uint32_t>(sz.cy));
    file.WriteInt32(static_cast<uint32_t>(sz.cx));
    file.WriteInt16(4);
    const size_t nEntries = file.GetSize();
    for (const int nId : {-1, 0, 1, 2}) { // A, R, G, B
        file.WriteInt16(static_cast<uint16_t>(nId));
        file.WriteInt32(0);
    }
    file.WriteText("8BIMnorm");
    // A set's opacity is stored but not applied here; a reader would apply it.
    file.WriteByte(HasPixels(record) ? record.pLayer->GetOpacity() : 255);
    file.WriteByte(record.bClipped ? 1 : 0);
    file.WriteByte(record.bVisible ? 0 : FLAG_HIDDEN);
    file.WriteByte(0);
    WriteExtra(file, record, codecs);
    return nEntries;
}

void WriteChannels(CPsdBytes& file, const TPsdRecord& record, size_t nEntries, IProgress& progress) {
    std::array<std::string, 4> channels;
    channels.fill(std::string(2, '\0')); // only a compression word
    if (HasPixels(record)) channels = PackPsdChannels(record, progress);
    for (size_t n = 0; n < channels.size(); ++n) {
        file.SetInt32(nEntries + n * CHANNEL_ENTRY + 2, static_cast<uint32_t>(channels[n].size()));
        file.WriteText(channels[n]);
    }
}

void WriteLayers(CPsdBytes& file, const std::vector<TPsdRecord>& vRecords, IImageCodecs& codecs,
                 IProgress& progress) {
    const size_t nSection = file.BeginLength();
    if (vRecords.empty()) return; // some readers reject a count of 0, none an empty section
    const size_t nInfo = file.BeginLength();
    file.WriteInt16(static_cast<uint16_t>(vRecords.size()));
    std::vector<size_t> vEntries;
    for (const TPsdRecord& record : vRecords) vEntries.push_back(WriteRecord(file, record, codecs));
    progress.Begin(L"レイヤーをまとめています", CountPsdRows(vRecords));
    for (size_t n = 0; n < vRecords.size(); ++n) WriteChannels(file, vRecords[n], vEntries[n], progress);
    file.EndLength(nInfo, 2);
    file.WriteInt32(0); // global mask
    file.EndLength(nSection);
}

void WritePicture(CPsdBytes& file, CCanvasBuffer& canvas, IProgress& progress) {
    const CSize sz = canvas.GetSize();
    file.WriteInt16(COMPRESSION_NONE);
    ResolvePsdPicture(canvas, file.Extend(3 * static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy), 255),
                      progress);
}

} // namespace

bool IsPsdFile(const std::wstring& strPath) { return EqualNoCase(ExtensionOf(strPath), L".psd"); }

void ExportPsd(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs,
               IProgress& progress) {
    const CSize sz = canvas.GetSize();
    if (std::max(sz.cx, sz.cy) > MAX_PSD_SIDE)
        throw refused_error(L"PSD ファイルは縦も横も30000ピクセルまでです。\n\n"
                            L"画像を縮めるか、別の形式で保存してください。");
    const std::vector<TPsdRecord> vRecords = ListPsdRecords(canvas.GetRoot());
    if (vRecords.size() > MAX_PSD_RECORDS)
        throw refused_error(L"PSD ファイルに入るレイヤーは32767枚までです（レイヤーセットは2枚分）。\n\n"
                            L"レイヤーを結合するか、別の形式で保存してください。");
    canvas.FlushCanvasUpdates();
    CPsdBytes file;
    WriteHeader(file, sz);
    WriteLayers(file, vRecords, codecs, progress);
    WritePicture(file, canvas, progress);
    progress.Begin(L"ファイルに書いています", 0);
    const CFileOutcome outcome = files.Replace(strPath, file.GetBytes());
    if (!outcome) throw fileopen_error(strPath, outcome.GetFailure());
}
