#pragma once
// Copy and paste of drawing items through the system clipboard, in the binary
// drawing stream under the format "CF_VECTORDRAWINGCLIPBRD".

#include "VectorDrawingItem.h"

#include <memory>
#include <vector>

extern const char* const CF_VECTORDRAWINGCLIPBRD;

// Nothing happens for an empty list.
void CopyToClipboard(const std::vector<TVectorDrawingItem*>& AItems);
// Empties AItems, then fills it with free copies (no owner, no layer, IDs kept).
// A clipboard without the format leaves it empty; a damaged payload raises EVDEError.
void PasteFromClipboard(std::vector<std::unique_ptr<TVectorDrawingItem>>& AItems);
