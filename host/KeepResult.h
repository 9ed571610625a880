// Keeps the result of a session that its host could not take.
#pragma once

#include <string>

class IHostImage;
class ISnapshotStore;

/// Stores the image's pixels as a document of one layer where the next session offers unsaved documents. The
/// image provides them by `Read`, in the rectangle and the channels of the ended session. Returns false when
/// that cannot be written; throws what the creation of a document throws.
bool KeepResult(IHostImage& image, const std::wstring& strTitle, ISnapshotStore& snapshots);
