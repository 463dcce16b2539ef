// The backend's side of the main queue (GtkMainQueue.h is the seam the other
// parts use): which thread is GTK's, and draining what is queued.
#pragma once

#include <cstdint>

namespace jtk::gtk {

// Names the calling thread as the main thread (installBackend's, which is
// GTK's). Until then it is the thread that loaded the backend.
void setMainThread();
// Runs what is queued now (main thread); returns how many items ran.
int drainMainQueue();
// A number of its own for the work item of the main queue running now
// (main thread), 0 outside one: what is read of the X server during one item
// (a search's frames) may be kept for the rest of it.
uint64_t mainQueueStep();

}  // namespace jtk::gtk
