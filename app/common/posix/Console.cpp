#include "app/common/Console.h"

#include <unistd.h>

CConsole::CConsole(int nArguments, char** ppszArguments)
    : m_vArguments(ppszArguments + 1, ppszArguments + nArguments) {}

CConsole::~CConsole() = default;

void CConsole::Say(std::FILE* pFile, const std::string& strText) const { std::fputs(strText.c_str(), pFile); }

bool CConsole::IsTerminal(std::FILE* pFile) { return isatty(fileno(pFile)) == 1; }
