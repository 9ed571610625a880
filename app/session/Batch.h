// One script over many pages, each page in a process of its own.
#pragma once

#include "app/session/Arguments.h"

/// A page of a batch.
struct TPage {
    std::filesystem::path pathIn;
    std::filesystem::path pathOut;
};

/// The pages that the pattern names, in the order of their names. Raises usage_error when there are none,
/// when two have one name, or when a result would fall on a page.
std::vector<TPage> FindPages(const std::string& strPattern, const std::filesystem::path& pathOutDir);

/// Plays the script over every page, several at a time; a page that fails does not keep the others from being
/// done. Tells on standard output how it goes. An interrupt ends the workers and begins no further page. True
/// when all pages are done. Raises usage_error, before anything is played, and std::runtime_error when no
/// process can be started.
bool RunBatch(const TArguments& arguments);
