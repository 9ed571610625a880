// What must hold of a document and of the boxes after something has failed.
#pragma once

#include "tests/faults/Played.h"

#include <boost/shared_ptr.hpp>

#include <vector>

class CCanvasBuffer;
class IFileStore;
class IImageCodecs;

class CDocumentCheck {
public:
    CDocumentCheck(IFileStore& files, IImageCodecs& codecs) : m_files(files), m_codecs(codecs) {}

    /// Takes the document of the active frame.
    void Begin();
    /// The document goes through all that a user could still do with it: undo to the beginning, redo, the
    /// file that it was saved to, another save. All of `vNames` that are project files can be opened.
    void End(const std::vector<std::wstring>& vNames);
    /// Error boxes say that there is no memory, or that a file cannot be used; only the latter unless
    /// `bMemory`.
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
