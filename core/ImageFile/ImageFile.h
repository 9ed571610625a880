// Loading and saving of documents and pictures.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"

class IImageCodecs;

/// True when the name has the project file's extension, in any case.
bool IsProjectFile(const std::wstring& strPath);

/// Opens a project file or a picture, chosen by the name. A picture becomes one raster layer with its
/// transparency. Raises fileopen_error, loadimage_error or deserialize_error.
boost::shared_ptr<CCanvasBuffer> OpenDocument(const std::wstring& strPath, IFileStore& files,
                                              IImageCodecs& codecs);

/// Parses a project file's bytes into a document without a path. Raises deserialize_error, or
/// fileopen_error with `strName` when there is no reader or it fails.
boost::shared_ptr<CCanvasBuffer> ReadProject(TOpenedFile upReader, const std::wstring& strName);

/// Writes the document to a temporary project file that is renamed over the old one. The document takes
/// path and title from it and counts as saved. On fileopen_error the old file and the document are
/// unchanged.
void SaveDocument(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files);

/// Writes the picture in the format of the name: PSD with its layers, else flattened; PNG keeps alpha where
/// there is any, others are flattened on white. Raises fileopen_error when the format is unknown or the
/// file cannot be written, and the exceptions of ExportPsd.
void ExportImage(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs);

/// The type lists of the two file dialogs, in their order.
std::vector<TFileFilter> GetOpenFilters();
std::vector<TFileFilter> GetSaveFilters();
