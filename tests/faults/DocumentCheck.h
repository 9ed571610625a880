// Conditions that a document and the boxes must meet after a failure.
#pragma once

#include "tests/faults/Apart.h"

#include <boost/shared_ptr.hpp>

#include <vector>

class CCanvasBuffer;
class IFileStore;
class IImageCodecs;

class CDocumentCheck {
public:
    CDocumentCheck(IFileStore& files, IImageCodecs& codecs) : m_files(files), m_codecs(codecs) {}

    /// Stores the document of the active frame.
    void Begin();
    /// Runs everything that a user could still do with the document: undo to the beginning, redo, load the
    /// saved file, save again. Checks that all of `vNames` that are project files can be opened.
    void End(const std::vector<std::wstring>& vNames);
    /// Checks that error boxes report missing memory or an unusable file; only the latter unless `bMemory`.
    void CheckBoxes(const std::vector<std::wstring>& vErrors, bool bMemory);
    void Complain(const std::string& str) { m_played.strWrong += str + "\n"; }

    TPlayed m_played;

private:
    void CheckFiles(CCanvasBuffer& canvas, const std::vector<std::wstring>& vNames);

    IFileStore& m_files;
    IImageCodecs& m_codecs;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    std::string m_strBegin;
};
