// Conversion of chunks and documents to and from the bytes of a file.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include "TestPaths.h"

#include <boost/make_shared.hpp>

#include <fstream>
#include <sstream>

/// The bytes of a file that holds one chunk.
inline TBytes FileOf(const CSerializer& chunk) {
    CSerializer file;
    file.WriteTop(chunk);
    return file.GetPayload();
}

inline CDeserializer OpenChunk(const TBytes& vFile) {
    CDeserializer file(boost::make_shared<TBytes>(vFile)), top;
    file.ReadTop(top);
    return top;
}

inline TBytes SaveToBytes(const CCanvasBuffer& canvas) { return FileOf(canvas.Serialize()); }

inline boost::shared_ptr<CCanvasBuffer> LoadFromBytes(const TBytes& vBytes) {
    CDeserializer top = OpenChunk(vBytes);
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Deserialize(top, L"page.vlm");
    return spCanvas;
}

/// Parses the hexadecimal listings of a document's section, up to 16 bytes in a line before two blanks.
inline TBytes ListedBytes(const std::string& strSection) {
    std::ifstream in(VELLUM_SOURCE "/docs/project-file.md");
    TBytes vBytes;
    bool bIn = false;
    for (std::string strLine; std::getline(in, strLine);) {
        if (strLine.starts_with("#")) bIn = strLine.substr(strLine.find(' ') + 1) == strSection;
        if (!bIn || !strLine.starts_with("    ")) continue;
        std::istringstream hex(strLine.substr(4, strLine.find("  ", 4) - 4));
        for (std::string str; hex >> str;)
            vBytes.push_back(static_cast<uint8_t>(std::stoi(str, nullptr, 16)));
    }
    return vBytes;
}
