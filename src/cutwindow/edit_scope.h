#pragma once

#include "document/undo_history.h"

namespace sorvel {

class CutWindow;
class CutWindowHost;

// What happens to the drawings while it lives is one step of their undo.
//
// Every window that may change an open cut has one for each message that it handles:
//
//   const EditScope edit(host, cut);
//
// That is all there is to do: tools, commands and dialogs change the cut as they like, and when the scope ends, the cut
// finds out what is different. Nothing different makes no step. Scopes nest, as messages do, and only the outermost one
// ends the step. Of a message of the mouse over a drawing nothing is recorded while a button is held: a gesture is one
// step from its press to its release. A gesture in another window that changes the cut more than once keeps a scope
// from press to release.
//
// Frames that the cut handed out must not be changed through the same pointers after the outermost scope has ended: the
// cut doesn't look for that. Take them from the cut again.
//
// Whoever lets the user type first and stores it later, as the panels and the time sheet do, calls
// CutWindow::RecordStep() after storing, so that this is a step of its own. That needs no scope.
class EditScope {
 public:
  // `cut` is what may change; null for none. It may be gone at the end of the scope. The host may not.
  EditScope(CutWindowHost* editHost, CutWindow* cut, UndoHistory::Origin origin = UndoHistory::Origin::kCommand);
  EditScope(const EditScope&) = delete;
  EditScope& operator=(const EditScope&) = delete;
  ~EditScope();

 private:
  CutWindowHost* host;
  UndoHistory::Origin origin;
};

}  // namespace sorvel
