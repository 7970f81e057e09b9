#ifndef MORVANE_HOST_MEL_AFTERCOMMAND_H_
#define MORVANE_HOST_MEL_AFTERCOMMAND_H_

namespace host::mel {

// What is to run after every command that no scene file runs, for what follows from the scene to
// keep up with it; null for nothing.
void setAfterCommand(void (*action)());

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_AFTERCOMMAND_H_
