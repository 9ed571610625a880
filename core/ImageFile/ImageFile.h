// Loading and saving of documents and pictures.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"

/// True when the name has the project file's extension, in any case.
bool IsProjectFile(const std::wstring& strPath);

/// Opens a project file or a picture, chosen by the name. A picture becomes one raster layer with its
/// transparency. Raises fileopen_error, loadimage_error, deserialize_error or cancelled_error.
boost::shared_ptr<CCanvasBuffer> OpenDocument(const std::wstring& strPath, IFileStore& files,
                                              IImageCodecs& codecs, IProgress& progress = NoProgress());

/// Parses a project file's bytes into a document without a path. Raises deserialize_error, or
/// fileopen_error with `strName` when there is no reader or it fails, or cancelled_error.
boost::shared_ptr<CCanvasBuffer> ReadProject(TOpenedFile upReader, const std::wstring& strName,
                                             IProgress& progress = NoProgress());

/// Whether a file holds the samples of pen strokes (TInkSamples).
enum class EInkSamples { Kept, LeftOut };

/// Writes the document to a temporary project file that is renamed over the old one. The document takes
/// path and title from it and counts as saved, and keeps its samples. On fileopen_error and cancelled_error
/// the old file and the document are unchanged.
void SaveDocument(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files,
                  IProgress& progress = NoProgress(), EInkSamples samples = EInkSamples::Kept);

/// True when the name has the extension of a format that ExportImage writes, in any case.
bool CanExport(const std::wstring& strPath, IImageCodecs& codecs);

/// Writes the picture in the format of the name: PSD and SVG with its layers, else flattened; PNG keeps alpha
/// where there is any, others are flattened on white. Raises fileopen_error when the format is unknown or the
/// file cannot be written, cancelled_error, after which the old file is unchanged, and the exceptions of
/// ExportPsd and ExportSvg.
void ExportImage(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs,
                 const TPictureEncoding& encoding = {}, IProgress& progress = NoProgress());

/// The flattened picture as a bitmap, with its alpha. Raises bad_alloc and cancelled_error.
CBitmapSession MakePicture(CCanvasBuffer& canvas, IImageCodecs& codecs, IProgress& progress = NoProgress());

/// The type lists of the file dialogs, in their order; an export is a save without the project.
std::vector<TFileFilter> GetOpenFilters();
std::vector<TFileFilter> GetSaveFilters();
std::vector<TFileFilter> GetExportFilters();
