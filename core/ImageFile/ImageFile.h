// Documents and pictures in files.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"

class IImageCodecs;

/// True when the name has the project file's ending, in any case.
bool IsProjectFile(const std::wstring& strPath);

/// Opens a project file or a picture, by name alone. A picture becomes one raster layer with its
/// transparency. Raises fileopen_error, loadimage_error or deserialize_error and leaves no canvas.
boost::shared_ptr<CCanvasBuffer> OpenDocument(const std::wstring& strPath, IFileStore& files,
                                              IImageCodecs& codecs);

/// The document of a project file's bytes, without a file of its own. Raises deserialize_error, or
/// fileopen_error with `strName` when there is no reader or it fails.
boost::shared_ptr<CCanvasBuffer> ReadProject(TOpenedFile upReader, const std::wstring& strName);

/// Writes the document as a project file beside the old one and renames it over that. The document takes path
/// and title from it and counts as saved. Raises fileopen_error with the old file whole and the document as
/// it was.
void SaveDocument(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files);

/// Writes the picture in the format of the name: PSD with its layers, else flattened; PNG keeps alpha where
/// there is any, others lie on white. Raises fileopen_error when the format is unknown or the file cannot be
/// written, and what ExportPsd does.
void ExportImage(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs);

/// The type lists of the two file dialogs, in their order.
std::vector<TFileFilter> GetOpenFilters();
std::vector<TFileFilter> GetSaveFilters();
