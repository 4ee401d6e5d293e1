#pragma once

#include <cstdint>

#include "platform/dialogs.h"
#include "platform/window.h"

namespace sorvel {

// The base of all dialogs. A dialog object holds the values that the dialog shows. The caller sets them, calls Run()
// and reads them after OK. While a control has the focus, the status bar shows its help.
class Dialog {
 public:
  // Copies the controls to the fields, on OK. Values out of range are corrected, not refused.
  virtual void ReadValues(platform::WindowHandle dialog) = 0;
  // Copies the fields to the controls.
  virtual void WriteValues(platform::WindowHandle dialog) = 0;
  // Handles a notification of a control and returns the answer to the message.
  virtual intptr_t OnControl(platform::WindowHandle dialog, int32_t code, int32_t id, platform::WindowHandle control);

  // A timer of the dialog, which WriteValues() may have set.
  virtual void OnTimer(platform::WindowHandle) {}
  // Asked when a button would end the dialog.
  virtual bool MayEnd(platform::WindowHandle) { return true; }
  // Ends the dialog with OK or not, without reading its values.
  static void End(platform::WindowHandle dialog, bool isOk);

  // Shows the dialog, centred over its owner, until the user ends it. True for OK.
  bool Run(platform::WindowHandle owner);

  platform::WindowHandle statusBar;  // shows the help
  int32_t templateId;

 protected:
  Dialog(platform::WindowHandle helpBar, int32_t resource) : statusBar(helpBar), templateId(resource) {}
  ~Dialog() = default;
};

// The dialog that is shown; null if there is none. A dialog can't open another one.
extern Dialog* gCurrentDialog;

}  // namespace sorvel
