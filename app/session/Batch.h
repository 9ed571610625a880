// Runs one script over many pages, each page in a separate process.
#pragma once

#include "app/session/Arguments.h"

/// A page of a batch.
struct TPage {
    std::filesystem::path pathIn;
    std::filesystem::path pathOut;
};

/// The pages that match the pattern, sorted by name. Raises usage_error when there are none, when two results
/// have the same name, or when one would overwrite a page.
std::vector<TPage> FindPages(const TArguments& arguments);

/// Plays the script over every page, several in parallel; a failed page does not stop the others. Reports
/// the pages on standard output and the progress on standard error, where that is a terminal. An interrupt
/// ends the workers and starts no further page. True when all pages succeeded. Raises usage_error, before
/// anything is played, and std::runtime_error when no process can be started.
bool RunBatch(const TArguments& arguments);
