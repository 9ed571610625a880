// The command line and the output of a program.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdio>
#include <string>
#include <vector>

/// One for a program, for as long as main runs. Standard output and errors are UTF-8 while it lives.
class CConsole : boost::noncopyable {
public:
    CConsole(int nArguments, char** ppszArguments);
    ~CConsole();

    /// The arguments without the program's name, as UTF-8; where the system has bytes, these unchanged.
    const std::vector<std::string>& GetArguments() const { return m_vArguments; }
    /// Writes to one of the two streams. A program of windows that was started without them shows a box.
    void Say(std::FILE* pFile, const std::string& strText) const;

    /// True when the stream is shown by a terminal, which then also takes escape sequences.
    static bool IsTerminal(std::FILE* pFile);

private:
    std::vector<std::string> m_vArguments;
    unsigned m_uOldCodePage = 0; ///< of the terminal before, 0 for none
};
