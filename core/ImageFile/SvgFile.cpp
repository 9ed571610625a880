#include "core/ImageFile/SvgFile.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/SvgLayers.h"
#include "core/Platform/Files.h"

bool IsSvgFile(const std::wstring& strPath) { return EqualNoCase(ExtensionOf(strPath), L".svg"); }

void ExportSvg(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs,
               IProgress& progress) {
    canvas.FlushCanvasUpdates();
    const std::string strText = WriteSvg(canvas, strPath, codecs, progress);
    progress.Begin(L"ファイルに書いています", 0);
    const CFileOutcome outcome = files.Replace(strPath, strText);
    if (!outcome) throw fileopen_error(strPath, outcome.GetFailure());
}
