#pragma once

#include <cstdint>

#include "platform/dialogs.h"
#include "platform/window.h"

namespace sorvel {

// The base of all dialogs. A dialog holds the values that it shows: the caller fills them in, runs it, and reads them
// when it was ended with OK. While a control has the focus, the status bar shows its help.
class Dialog {
 public:
  // From the controls to the fields, on OK. It can't refuse: values are made acceptable.
  virtual void ReadValues(platform::WindowHandle dialog) = 0;
  // From the fields to the controls.
  virtual void WriteValues(platform::WindowHandle dialog) = 0;
  // Commands of controls; what it gives is the answer to the message.
  virtual intptr_t OnControl(platform::WindowHandle dialog, int32_t code, int32_t id, platform::WindowHandle control);

  // Shows the dialog over its owner until it is ended. True for OK.
  bool Run(platform::WindowHandle owner);

  platform::WindowHandle statusBar;  // where the help goes
  int32_t templateId;

 protected:
  Dialog(platform::WindowHandle helpBar, int32_t resource) : statusBar(helpBar), templateId(resource) {}
  ~Dialog() = default;
};

// The dialog that is shown; null between dialogs. A dialog can't open another one.
extern Dialog* gCurrentDialog;

}  // namespace sorvel
